# A Maya module, for ~/maya/modules or any folder on MAYA_MODULE_PATH. Builds for several versions and systems are
# installed into the same folder one after the other, and the module file then speaks of all that are there.
#   vellix2.mod
#   vellix2/plug-ins/linux-2018/vellix2.so
#   vellix2/docs/
install(TARGETS vellix2
    LIBRARY DESTINATION vellix2/plug-ins/${MAYA_PLATFORM}-${MAYA_VERSION}
    RUNTIME DESTINATION vellix2/plug-ins/${MAYA_PLATFORM}-${MAYA_VERSION})
# The pages for those who draw and script, and what they refer to; not those about the source.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION vellix2/docs
    FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.py"
    PATTERN "building.md" EXCLUDE PATTERN "developing.md" EXCLUDE PATTERN "style.md" EXCLUDE PATTERN "openmaya-checklist.md" EXCLUDE)
install(CODE "set(VELLIX_VERSION ${PROJECT_VERSION})")
install(SCRIPT ${CMAKE_CURRENT_LIST_DIR}/WriteModuleFile.cmake)

set(CPACK_PACKAGE_NAME vellix2)
set(CPACK_PACKAGE_FILE_NAME vellix2-${PROJECT_VERSION}-maya${MAYA_VERSION}-${MAYA_PLATFORM})
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
else()
    set(CPACK_GENERATOR TGZ)
endif()
