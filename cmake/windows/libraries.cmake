# The libraries of the Windows build. Those that are headers alone are Debian's own packages, taken one by one,
# as the folder around them holds the headers of this system too. The rest is built from source.

enable_language(C)

set(ZX_WINDOWS_SOURCES ${CMAKE_BINARY_DIR}/sources)
execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/sources ${ZX_WINDOWS_SOURCES}
    COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)

set(ZX_WINDOWS_HEADERS ${CMAKE_BINARY_DIR}/headers)
foreach(header asio asio.hpp CLI eigen3 fmt nlohmann spdlog)
    if(NOT EXISTS /usr/include/${header})
        message(FATAL_ERROR "/usr/include/${header} is missing: ./test --windows installs what this build needs")
    endif()
    file(MAKE_DIRECTORY ${ZX_WINDOWS_HEADERS})
    file(CREATE_LINK /usr/include/${header} ${ZX_WINDOWS_HEADERS}/${header} SYMBOLIC)
endforeach()

# zx_found(NAME...): find_package(NAME) succeeds, with the targets that stand here.
function(zx_found)
    foreach(name ${ARGN})
        file(WRITE ${CMAKE_FIND_PACKAGE_REDIRECTS_DIR}/${name}-config.cmake "# stands in cmake/windows\n")
    endforeach()
endfunction()

# zx_header_library(TARGET [DEFINITION...])
function(zx_header_library target)
    add_library(${target} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${target} SYSTEM INTERFACE ${ZX_WINDOWS_HEADERS})
    target_compile_definitions(${target} INTERFACE ${ARGN})
endfunction()

zx_header_library(CLI11::CLI11)
zx_header_library(fmt::fmt-header-only FMT_HEADER_ONLY=1)
zx_header_library(nlohmann_json::nlohmann_json)
zx_header_library(spdlog::spdlog_header_only SPDLOG_FMT_EXTERNAL FMT_HEADER_ONLY=1)
# Nothing else stands in its folder.
add_library(Eigen3::Eigen INTERFACE IMPORTED GLOBAL)
target_include_directories(Eigen3::Eigen SYSTEM INTERFACE /usr/include/eigen3)
zx_found(cli11 eigen3 fmt nlohmann_json spdlog)
set(ZX_ASIO_INCLUDE ${ZX_WINDOWS_HEADERS} CACHE PATH "Where asio.hpp stands")

# zlib is Debian's own DLL for Windows; minizip stands in zlib's sources.
find_package(ZLIB REQUIRED)
set(minizip ${ZX_WINDOWS_SOURCES}/zlib/contrib/minizip)
add_library(minizip STATIC ${minizip}/ioapi.c ${minizip}/iowin32.c ${minizip}/unzip.c ${minizip}/zip.c)
target_link_libraries(minizip PUBLIC ZLIB::ZLIB)
target_compile_options(minizip PRIVATE -w)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/minizip_headers)
file(CREATE_LINK ${minizip} ${CMAKE_BINARY_DIR}/minizip_headers/minizip SYMBOLIC)
target_include_directories(minizip SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/minizip_headers)
add_library(minizip::minizip ALIAS minizip)
zx_found(minizip)

if(ZX_BUILD_TESTS)
    set(BUILD_GMOCK OFF)
    set(INSTALL_GTEST OFF)
    add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
    file(GLOB_RECURSE rapidcheck_sources ${ZX_WINDOWS_SOURCES}/rapidcheck/src/*.cpp)
    add_library(rapidcheck STATIC EXCLUDE_FROM_ALL ${rapidcheck_sources})
    target_compile_options(rapidcheck PRIVATE -w)
    target_include_directories(rapidcheck SYSTEM PUBLIC ${ZX_WINDOWS_SOURCES}/rapidcheck/include
        ${ZX_WINDOWS_SOURCES}/rapidcheck/extras/gtest/include)
    zx_found(gtest rapidcheck)
endif()

# The linker looks through each library once, in order; ours need the facilities, whose import libraries are
# named before them.
foreach(rule LINK_EXECUTABLE CREATE_SHARED_LIBRARY CREATE_SHARED_MODULE)
    string(REPLACE "<LINK_LIBRARIES>" "-Wl,--start-group <LINK_LIBRARIES> -Wl,--end-group"
        CMAKE_CXX_${rule} "${CMAKE_CXX_${rule}}")
endforeach()

# An exception may cross from one module to another, so they share the compiler's run-time libraries, which lie
# beside them.
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libstdc++-6.dll
    OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
get_filename_component(runtime ${runtime} DIRECTORY)
file(MAKE_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
set(ZX_WINDOWS_RUNTIME)
foreach(file ${runtime}/libstdc++-6.dll ${runtime}/libgcc_s_seh-1.dll ${CMAKE_FIND_ROOT_PATH}/lib/libwinpthread-1.dll
        ${CMAKE_FIND_ROOT_PATH}/lib/zlib1.dll)
    get_filename_component(name ${file} NAME)
    list(APPEND ZX_WINDOWS_RUNTIME ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name})
    # Without what only debuggers read, nine tenths of it.
    execute_process(COMMAND ${CMAKE_STRIP} -o ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name} ${file}
        COMMAND_ERROR_IS_FATAL ANY)
endforeach()
