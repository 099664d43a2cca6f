# Warnings are errors, except with the compilers of Maya's generations, which are not all tried; a sanitizer is chosen by the presets; ccache is used when it is there.
# C++17, but for what a host of the plug-in's generation compiles.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

option(VELLIX_WARNINGS_AS_ERRORS "Warnings end the build" ${VELLIX_BUILD_LIGHTBOX})
if(MSVC)
    add_compile_options(/W4 /permissive- /utf-8 $<$<BOOL:${VELLIX_WARNINGS_AS_ERRORS}>:/WX>)
else()
    add_compile_options(-Wall -Wextra -Wpedantic $<$<BOOL:${VELLIX_WARNINGS_AS_ERRORS}>:-Werror>)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # Optimised code around std::variant and std::optional sets this one off where nothing is wrong.
        add_compile_options(-Wno-maybe-uninitialized)
        if(CMAKE_UNITY_BUILD)
            # It takes a source file that is compiled with others for a header. The debug preset keeps it.
            add_compile_options(-Wno-subobject-linkage)
        endif()
    endif()
endif()

set(VELLIX_SANITIZE "" CACHE STRING "Sanitizers to build with, as given to -fsanitize=")
if(VELLIX_SANITIZE)
    add_compile_options(-fsanitize=${VELLIX_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${VELLIX_SANITIZE})
endif()
add_compile_definitions(QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)
