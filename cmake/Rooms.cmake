# Rooms: each folder of plugin/ and lightbox/ is a library. It can include its own headers, those of the rooms that it
# KNOWS, and those of the rooms that these know.
#
# room(TARGET FOLDER [KNOWS TARGET...] [EXCEPT FILE...])
#     Adds an OBJECT library of the files in FOLDER (relative to the current folder). Folders below FOLDER are not
#     included; they may be rooms themselves. Enforces KNOWS by an include folder per room in the build tree, with one
#     forwarding header for each header of the room: "scene/Host.h" is found only in rooms that know `scene`.
# check_rooms(PAGE SIDE)
#     Checks the list of rooms in PAGE, and stops the configuration with an error if it differs from the room() calls of
#     SIDE: the same rooms in the same order, each with the rooms that it knows. A line of the list has the form
#     "SIDE/FOLDER   purpose   folder, folder".

function(room target folder)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "KNOWS;EXCEPT")
    file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h ${folder}/*.qrc)
    foreach(file IN LISTS arg_EXCEPT)
        list(REMOVE_ITEM sources "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/${file}")
    endforeach()
    add_library(${target} OBJECT ${sources})
    string(REPLACE "/" "." name "${folder}")
    set(includes "${CMAKE_CURRENT_BINARY_DIR}/rooms/${name}")
    foreach(header IN LISTS sources)
        if(header MATCHES "\\.h$")
            get_filename_component(file "${header}" NAME)
            file(RELATIVE_PATH path "${includes}/${folder}" "${header}")
            file(CONFIGURE OUTPUT "${includes}/${folder}/${file}" CONTENT "#pragma once\n#include \"${path}\"\n")
        endif()
    endforeach()
    target_include_directories(${target} PUBLIC "${includes}")
    target_link_libraries(${target} PUBLIC ${arg_KNOWS})
    set_target_properties(${target} PROPERTIES ROOM_FOLDER "${folder}")

    set(known)
    foreach(other IN LISTS arg_KNOWS)
        get_target_property(other_folder ${other} ROOM_FOLDER)
        if(other_folder)
            list(APPEND known "${other_folder}")
        endif()
    endforeach()
    list(JOIN known ", " known)
    get_filename_component(side "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
    set_property(GLOBAL APPEND PROPERTY ROOMS_OF_${side} "${side}/${folder}: ${known}")
    set_property(GLOBAL APPEND PROPERTY ROOM_TARGETS_OF_${side} ${target})
endfunction()

function(check_rooms page side)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${page}")
    file(STRINGS "${page}" lines REGEX "^${side}/[a-z/]+  +[^ ]")
    set(written)
    foreach(line IN LISTS lines)
        if(NOT line MATCHES "^(${side}/[a-z/]+)  +(.*[^ ])  +([-a-z/, ]+)$")
            message(FATAL_ERROR "${page}: this line of the list of rooms does not have three columns: ${line}")
        endif()
        set(room "${CMAKE_MATCH_1}")
        string(REGEX REPLACE "^-$" "" knows "${CMAKE_MATCH_3}")
        list(APPEND written "${room}: ${knows}")
    endforeach()
    get_property(built GLOBAL PROPERTY ROOMS_OF_${side})
    if(NOT written STREQUAL built)
        list(JOIN written "\n  " written)
        list(JOIN built "\n  " built)
        message(FATAL_ERROR "The rooms differ from the list in ${page}.\nAs built, from the ground up:\n  ${built}\n"
            "In the list:\n  ${written}")
    endif()
endfunction()
