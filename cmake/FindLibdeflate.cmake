# FindLibdeflate: finds libdeflate. Its own CMake package is newer than the versions that systems of our time have.
#
# Sets Libdeflate_FOUND and adds the target Libdeflate::Libdeflate.
find_path(LIBDEFLATE_INCLUDE_DIR libdeflate.h)
find_library(LIBDEFLATE_LIBRARY NAMES deflate libdeflate)
mark_as_advanced(LIBDEFLATE_INCLUDE_DIR LIBDEFLATE_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Libdeflate REQUIRED_VARS LIBDEFLATE_LIBRARY LIBDEFLATE_INCLUDE_DIR)
if(Libdeflate_FOUND AND NOT TARGET Libdeflate::Libdeflate)
    add_library(Libdeflate::Libdeflate UNKNOWN IMPORTED)
    set_target_properties(Libdeflate::Libdeflate PROPERTIES
        IMPORTED_LOCATION "${LIBDEFLATE_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${LIBDEFLATE_INCLUDE_DIR}")
endif()
