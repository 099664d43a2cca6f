# Lightbox as a Unix program: everything finds the rest relative to the executable, so that the tree can lie anywhere.
#   bin/lightbox                      the program
#   lib/lightbox/host/                the host library; deep enough for no package to tell ldconfig of it
#   lib/lightbox/plug-ins/            Vellix 2
#   share/lightbox/demo/              the demo
#   share/...                         menu entry, icon, file types, manual page, completion, documentation
set(private lib/lightbox)

if(APPLE)
    set(origin "@loader_path")
else()
    set(origin "$ORIGIN")
endif()
set_target_properties(lightbox PROPERTIES INSTALL_RPATH "${origin}/../${private}/host")
set_target_properties(vellix2 PROPERTIES INSTALL_RPATH "${origin}/../host")

install(TARGETS lightbox RUNTIME DESTINATION bin)
# Windows looks for libraries beside the program only.
install(TARGETS lightbox_host RUNTIME DESTINATION bin LIBRARY DESTINATION ${private}/host)
install(TARGETS vellix2 LIBRARY DESTINATION ${private}/plug-ins)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/demo DESTINATION share/lightbox USE_SOURCE_PERMISSIONS)
# Not the pages about the source.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION share/doc/lightbox
    FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.py"
    PATTERN "building.md" EXCLUDE PATTERN "developing.md" EXCLUDE PATTERN "style.md" EXCLUDE PATTERN "openmaya-checklist.md" EXCLUDE)

set(here ${CMAKE_CURRENT_LIST_DIR})
install(FILES ${here}/copyright DESTINATION share/doc/lightbox)
install(FILES ${here}/lightbox.desktop DESTINATION share/applications)
install(FILES ${here}/lightbox.svg DESTINATION share/icons/hicolor/scalable/apps)
install(FILES ${here}/lightbox-scene.svg DESTINATION share/icons/hicolor/scalable/mimetypes)
install(FILES ${here}/lightbox.xml DESTINATION share/mime/packages)
install(FILES ${here}/lightbox.bash-completion DESTINATION share/bash-completion/completions RENAME lightbox)
# Manual pages and the list of changes are kept compressed, and the same on every machine.
configure_file(${here}/lightbox.1.in lightbox.1 @ONLY)
configure_file(${here}/changelog.in changelog @ONLY)
find_program(GZIP gzip)
if(GZIP)
    foreach(page lightbox.1 changelog)
        execute_process(COMMAND ${GZIP} -9nc ${page} OUTPUT_FILE ${page}.gz
            WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR} COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/lightbox.1.gz DESTINATION share/man/man1)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz DESTINATION share/doc/lightbox)
endif()

set(CPACK_PACKAGE_NAME lightbox)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "sketch 2D animation over a 3D view")
set(CPACK_PACKAGE_DESCRIPTION
    "Lightbox is a small host for the plug-in Vellix 2, with which an animator
sketches 2D drawings over the 3D viewport: layers of keyed drawings for every
camera, onion skin, pencil, brush, shapes and text. It reads and writes Maya
ASCII scenes, speaks MEL, and runs with a window or as a batch program.")
set(CPACK_GENERATOR TGZ)
find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
# CPack looks with it for the binaries whose libraries the package depends on.
find_program(FILE_TYPES file)
if(DPKG_SHLIBDEPS AND FILE_TYPES)
    list(APPEND CPACK_GENERATOR DEB)
endif()
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "ffmpeg, fonts-dejavu-core, libgl1-mesa-dri")
# A staged tree is group-writable where the builder's umask says so; a package is not.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
