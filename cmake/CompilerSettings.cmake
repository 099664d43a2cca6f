# Compiler settings: C++17 (a room may set an older standard), ccache if it is installed, and the sanitizer of the preset.
# Warnings are errors, except in builds for Maya, whose compilers are not all tested.
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
        # False alarms in optimised code around std::variant and std::optional.
        add_compile_options(-Wno-maybe-uninitialized)
        if(CMAKE_UNITY_BUILD)
            # The warning takes a source file of a unity build for a header. It stays on in the debug preset.
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
