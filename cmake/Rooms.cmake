# Rooms: the folders of plugin/ and lightbox/, each a library that sees its own headers, those of the rooms that it knows, and those
# of the rooms that these know.
#
# room(TARGET FOLDER [KNOWS TARGET...] [EXCEPT FILE...])
#     An OBJECT library of the files in FOLDER (relative to the current one, without the folders below it, which may be
#     rooms of their own). An include of "scene/Host.h" is found only where `scene` may be known: each room has an
#     include folder in the build tree with one header for each of its own, which includes it.
# check_rooms(PAGE SIDE)
#     Ends the configuration unless the list of rooms in PAGE names the rooms of SIDE in the order of their room() calls,
#     each with the rooms that it knows. A line of the list: "SIDE/FOLDER   what it is for   folder, folder".

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
endfunction()

function(check_rooms page side)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${page}")
    file(STRINGS "${page}" lines REGEX "^${side}/[a-z/]+   *[^ ]")
    set(written)
    foreach(line IN LISTS lines)
        if(NOT line MATCHES "^(${side}/[a-z/]+)  +(.*[^ ])   *([-a-z/, ]*)$")
            message(FATAL_ERROR "${page}: this line of the list of rooms has not three columns: ${line}")
        endif()
        set(room "${CMAKE_MATCH_1}")
        string(REGEX REPLACE "^-$" "" knows "${CMAKE_MATCH_3}")
        list(APPEND written "${room}: ${knows}")
    endforeach()
    get_property(built GLOBAL PROPERTY ROOMS_OF_${side})
    if(NOT written STREQUAL built)
        list(JOIN written "\n  " written)
        list(JOIN built "\n  " built)
        message(FATAL_ERROR "The rooms are not those of ${page}.\nAs built, from the ground up:\n  ${built}\n"
            "As written there:\n  ${written}")
    endif()
endfunction()
