# find_package(minizip): the target minizip::minizip. Debian's package brings no CMake files of its own.
find_path(MINIZIP_INCLUDE_DIR minizip/zip.h)
find_library(MINIZIP_LIBRARY minizip)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(minizip REQUIRED_VARS MINIZIP_LIBRARY MINIZIP_INCLUDE_DIR)
if(minizip_FOUND AND NOT TARGET minizip::minizip)
    add_library(minizip::minizip UNKNOWN IMPORTED)
    set_target_properties(minizip::minizip PROPERTIES
        IMPORTED_LOCATION ${MINIZIP_LIBRARY} INTERFACE_INCLUDE_DIRECTORIES ${MINIZIP_INCLUDE_DIR})
endif()
