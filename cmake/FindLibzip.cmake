# FindLibzip: finds libzip. Its own CMake package in Debian 12 asks for programs that come in another package.
#
# Sets Libzip_FOUND and adds the target Libzip::Libzip.
find_package(PkgConfig QUIET)
pkg_check_modules(PC_LIBZIP QUIET libzip)
find_path(LIBZIP_INCLUDE_DIR zip.h HINTS ${PC_LIBZIP_INCLUDE_DIRS})
find_path(LIBZIP_CONFIG_DIR zipconf.h HINTS ${PC_LIBZIP_INCLUDE_DIRS} "${LIBZIP_INCLUDE_DIR}/../lib/libzip/include")
find_library(LIBZIP_LIBRARY NAMES zip libzip HINTS ${PC_LIBZIP_LIBRARY_DIRS})
mark_as_advanced(LIBZIP_INCLUDE_DIR LIBZIP_CONFIG_DIR LIBZIP_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Libzip REQUIRED_VARS LIBZIP_LIBRARY LIBZIP_INCLUDE_DIR LIBZIP_CONFIG_DIR)
if(Libzip_FOUND AND NOT TARGET Libzip::Libzip)
    add_library(Libzip::Libzip UNKNOWN IMPORTED)
    set_target_properties(Libzip::Libzip PROPERTIES
        IMPORTED_LOCATION "${LIBZIP_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${LIBZIP_INCLUDE_DIR};${LIBZIP_CONFIG_DIR}")
endif()
