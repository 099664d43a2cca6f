# FindMaya: finds the Maya to build a plug-in for, 2018 to 2024, on Linux, Windows and macOS.
#
# Reads these cache entries or environment variables:
#   MAYA_LOCATION   the installation: /usr/autodesk/maya2018, C:/Program Files/Autodesk/Maya2018,
#                   /Applications/Autodesk/maya2018 (or the Maya.app/Contents in it)
#   MAYA_DEVKIT     the developer kit (the folder devkitBase), if the headers are not in the installation
#
# Sets:
#   MAYA_FOUND, MAYA_VERSION (2018), MAYA_API_VERSION (201800), MAYA_INCLUDE_DIR, MAYA_LIBRARIES
#   MAYA_CXX_STANDARD   the C++ standard that the headers need
#   MAYA_PLATFORM       linux, win64 or mac, as in module files
#   Maya::Maya          headers, libraries and flags for a plug-in
#   maya_plugin(TARGET) turns a MODULE library into a plug-in: sets its suffix and exports its entry points
#
# The flags come from the build pages of the developer documentation and from the kit's own build files.

foreach(place MAYA_LOCATION MAYA_DEVKIT)
    set(${place} "$ENV{${place}}" CACHE PATH "See cmake/FindMaya.cmake")
    if(${place})
        file(TO_CMAKE_PATH "${${place}}" ${place})
    endif()
endforeach()

# Searches only the given folders, so that another SDK on the machine does not get into the build.
set(_maya_roots)
foreach(root IN ITEMS "${MAYA_DEVKIT}" "${MAYA_LOCATION}")
    if(root)
        list(APPEND _maya_roots "${root}")
        if(APPLE)
            list(APPEND _maya_roots "${root}/../.." "${root}/Maya.app/Contents")
        endif()
    endif()
endforeach()

find_path(MAYA_INCLUDE_DIR maya/MTypes.h PATHS ${_maya_roots} PATH_SUFFIXES include devkit/include NO_DEFAULT_PATH)
set(MAYA_LIBRARIES)
set(_maya_needed MAYA_INCLUDE_DIR)
foreach(name OpenMaya OpenMayaUI OpenMayaAnim OpenMayaRender Foundation)
    find_library(MAYA_${name}_LIBRARY ${name} PATHS ${_maya_roots} PATH_SUFFIXES lib MacOS NO_DEFAULT_PATH)
    list(APPEND MAYA_LIBRARIES "${MAYA_${name}_LIBRARY}")
    list(APPEND _maya_needed MAYA_${name}_LIBRARY)
    mark_as_advanced(MAYA_${name}_LIBRARY)
endforeach()
mark_as_advanced(MAYA_INCLUDE_DIR)

# MAYA_API_VERSION is 201800 in Maya 2018, and of the form 20190000 from 2019 on.
if(MAYA_INCLUDE_DIR)
    file(STRINGS "${MAYA_INCLUDE_DIR}/maya/MTypes.h" _maya_line REGEX "#define[ \t]+MAYA_API_VERSION[ \t]+[0-9]+")
    string(REGEX MATCH "[0-9]+$" MAYA_API_VERSION "${_maya_line}")
    string(SUBSTRING "${MAYA_API_VERSION}" 0 4 MAYA_VERSION)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Maya REQUIRED_VARS ${_maya_needed} MAYA_VERSION VERSION_VAR MAYA_VERSION
    REASON_FAILURE_MESSAGE "Set MAYA_LOCATION to the folder of Maya, and MAYA_DEVKIT to the folder of its developer kit. The headers are in include/maya, the libraries in lib (on macOS in Maya.app/Contents/MacOS)")
if(NOT Maya_FOUND)
    return()
endif()
set(MAYA_FOUND TRUE)
if(MAYA_VERSION LESS 2018 OR MAYA_VERSION GREATER 2024)
    message(FATAL_ERROR "Maya ${MAYA_VERSION} in ${MAYA_INCLUDE_DIR}: the plug-in is for Maya 2018 to 2024, "
        "which come with Qt 5. Name another with MAYA_LOCATION and MAYA_DEVKIT.")
endif()

if(MAYA_VERSION LESS 2023)
    set(MAYA_CXX_STANDARD 14)
else()
    set(MAYA_CXX_STANDARD 17)
endif()

# Maya up to 2022 uses the C++ library's string and list ABI from before C++11. For 2023 the symbols in its libraries
# decide; from 2024 on it is the C++11 ABI.
function(_maya_cxx11_abi result)
    set(abi 0)
    if(MAYA_VERSION GREATER 2022)
        file(STRINGS "${MAYA_Foundation_LIBRARY}" newer REGEX "__cxx11" LIMIT_COUNT 1)
        if(newer OR MAYA_VERSION GREATER 2023)
            set(abi 1)
        endif()
    endif()
    set(${result} ${abi} PARENT_SCOPE)
endfunction()

set(_maya_definitions REQUIRE_IOSTREAM)
set(_maya_options)
if(WIN32)
    set(MAYA_PLATFORM win64)
    list(APPEND _maya_definitions NT_PLUGIN _WINDOWS WIN32 _USRDLL _CRT_SECURE_NO_DEPRECATE)
elseif(APPLE)
    set(MAYA_PLATFORM mac)
    list(APPEND _maya_definitions _BOOL MAC_PLUGIN OSMac_ OSMacOSX_ OSMac_MachO_ CC_GNU_)
    list(APPEND _maya_options -fno-gnu-keywords)
else()
    set(MAYA_PLATFORM linux)
    _maya_cxx11_abi(_maya_abi)
    list(APPEND _maya_definitions _BOOL LINUX LINUX_64 UNIX Bits64_ FUNCPROTO _GNU_SOURCE
        _GLIBCXX_USE_CXX11_ABI=${_maya_abi})
    list(APPEND _maya_options -fno-strict-aliasing)
endif()

if(NOT TARGET Maya::Maya)
    add_library(Maya::Maya INTERFACE IMPORTED)
    # System headers, to silence their warnings.
    set_target_properties(Maya::Maya PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES "${MAYA_INCLUDE_DIR}"
        INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${MAYA_INCLUDE_DIR}"
        INTERFACE_COMPILE_DEFINITIONS "${_maya_definitions}"
        INTERFACE_COMPILE_OPTIONS "${_maya_options}"
        INTERFACE_LINK_LIBRARIES "${MAYA_LIBRARIES}")
endif()

function(maya_plugin target)
    set_target_properties(${target} PROPERTIES PREFIX "")
    if(WIN32)
        set_target_properties(${target} PROPERTIES SUFFIX .mll)
        target_link_options(${target} PRIVATE /export:initializePlugin /export:uninitializePlugin)
    elseif(APPLE)
        # Maya also looks up MApiVersion, which MFnPlugin.h defines, so all visible symbols stay exported.
        set_target_properties(${target} PROPERTIES SUFFIX .bundle)
    else()
        set_target_properties(${target} PROPERTIES SUFFIX .so)
    endif()
endfunction()
