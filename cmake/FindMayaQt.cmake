# FindMayaQt: finds the Qt 5 of the Maya that FindMaya found. Its targets have the names of Qt's own package (Qt5::Core,
# Qt5::Gui, Qt5::Widgets), so that no other Qt on the machine gets into the plug-in.
#
# The headers are an archive in the developer kit (include/qt-5.6.1-include.tar.gz or similar; a zip on Windows).
# Searches for them unpacked beside the archive, or in the folder MAYA_QT_INCLUDE_DIR.

if(NOT MAYA_FOUND)
    message(FATAL_ERROR "Call find_package(Maya) before find_package(MayaQt).")
endif()

set(_qt_roots ${_maya_roots} "${MAYA_INCLUDE_DIR}/..")
file(GLOB _qt_unpacked "${MAYA_INCLUDE_DIR}/qt*5*" "${MAYA_INCLUDE_DIR}/Qt*")
find_path(MAYA_QT_INCLUDE_DIR QtCore/qglobal.h PATHS ${_qt_unpacked} "${MAYA_INCLUDE_DIR}" ${_qt_roots}
    PATH_SUFFIXES include Qt include/Qt NO_DEFAULT_PATH)
set(_qt_needed MAYA_QT_INCLUDE_DIR)
foreach(module Core Gui Widgets)
    # A framework on macOS, a library elsewhere.
    find_library(MAYA_QT_${module}_LIBRARY NAMES Qt5${module} Qt${module} PATHS ${_qt_roots}
        PATH_SUFFIXES lib MacOS Frameworks NO_DEFAULT_PATH)
    list(APPEND _qt_needed MAYA_QT_${module}_LIBRARY)
    mark_as_advanced(MAYA_QT_${module}_LIBRARY)
endforeach()
# If Maya has no moc and rcc, any of Qt 5 will do: their output is the same throughout Qt 5.
foreach(tool moc rcc)
    find_program(MAYA_QT_${tool} ${tool} PATHS ${_qt_roots} PATH_SUFFIXES bin MacOS NO_DEFAULT_PATH)
    find_program(MAYA_QT_${tool} NAMES ${tool}-qt5 ${tool} PATHS /usr/lib/qt5/bin)
    list(APPEND _qt_needed MAYA_QT_${tool})
    mark_as_advanced(MAYA_QT_${tool})
endforeach()

if(MAYA_QT_INCLUDE_DIR)
    # The header that defines the version differs within Qt 5.
    foreach(header qconfig.h qglobal.h)
        if(NOT MAYA_QT_VERSION AND EXISTS "${MAYA_QT_INCLUDE_DIR}/QtCore/${header}")
            file(STRINGS "${MAYA_QT_INCLUDE_DIR}/QtCore/${header}" _qt_line REGEX "#define QT_VERSION_STR +\"")
            string(REGEX MATCH "[0-9]+\\.[0-9]+\\.[0-9]+" MAYA_QT_VERSION "${_qt_line}")
        endif()
    endforeach()
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(MayaQt REQUIRED_VARS ${_qt_needed} MAYA_QT_VERSION VERSION_VAR MAYA_QT_VERSION
    REASON_FAILURE_MESSAGE "Unpack the Qt headers of Maya's developer kit, the archive qt*-include in its folder include, beside it, or set MAYA_QT_INCLUDE_DIR to the folder that holds QtCore")
if(NOT MayaQt_FOUND)
    return()
endif()

# AUTOMOC and AUTORCC need these.
string(REGEX MATCH "^([0-9]+)\\.([0-9]+)" _qt_ignored "${MAYA_QT_VERSION}")
set(Qt5Core_VERSION_MAJOR ${CMAKE_MATCH_1})
set(Qt5Core_VERSION_MINOR ${CMAKE_MATCH_2})
set(Qt5Core_VERSION ${MAYA_QT_VERSION})
foreach(tool moc rcc)
    if(NOT TARGET Qt5::${tool})
        add_executable(Qt5::${tool} IMPORTED)
        set_target_properties(Qt5::${tool} PROPERTIES IMPORTED_LOCATION "${MAYA_QT_${tool}}")
    endif()
endforeach()
foreach(module Core Gui Widgets)
    if(NOT TARGET Qt5::${module})
        string(TOUPPER ${module} _qt_upper)
        add_library(Qt5::${module} INTERFACE IMPORTED)
        set_target_properties(Qt5::${module} PROPERTIES
            INTERFACE_INCLUDE_DIRECTORIES "${MAYA_QT_INCLUDE_DIR};${MAYA_QT_INCLUDE_DIR}/Qt${module}"
            INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${MAYA_QT_INCLUDE_DIR};${MAYA_QT_INCLUDE_DIR}/Qt${module}"
            INTERFACE_COMPILE_DEFINITIONS "QT_${_qt_upper}_LIB"
            INTERFACE_LINK_LIBRARIES "${MAYA_QT_${module}_LIBRARY}")
    endif()
endforeach()
set_property(TARGET Qt5::Gui APPEND PROPERTY INTERFACE_LINK_LIBRARIES Qt5::Core)
set_property(TARGET Qt5::Widgets APPEND PROPERTY INTERFACE_LINK_LIBRARIES Qt5::Gui)
