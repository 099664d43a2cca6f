# Run by the installation: the module file names every version that lies in the module's folder by now.
set(prefix "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")
file(GLOB builds RELATIVE "${prefix}/vellix2/plug-ins" "${prefix}/vellix2/plug-ins/*-*")
list(SORT builds)
set(text "")
foreach(build IN LISTS builds)
    string(REGEX MATCH "^([a-z0-9]+)-([0-9]+)$" matched "${build}")
    if(matched)
        string(APPEND text "+ MAYAVERSION:${CMAKE_MATCH_2} PLATFORM:${CMAKE_MATCH_1} Vellix2 ${VELLIX_VERSION} vellix2\n"
            "plug-ins: plug-ins/${build}\n\n")
    endif()
endforeach()
message(STATUS "Writing: ${prefix}/vellix2.mod")
file(WRITE "${prefix}/vellix2.mod" "${text}")
