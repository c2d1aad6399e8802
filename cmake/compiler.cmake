# What every target of ours is compiled with: linked as zx_options by zx_library, zx_program and zx_test.
add_library(zx_options INTERFACE)
target_link_libraries(zx_options INTERFACE Threads::Threads)
if(MSVC)
    # The language as the standard has it, texts in UTF-8; the C library's own names are no mistake.
    target_compile_options(zx_options INTERFACE /W4 /WX /permissive- /utf-8 /EHsc /Zc:__cplusplus /Zc:preprocessor)
    target_compile_definitions(zx_options INTERFACE _CRT_SECURE_NO_WARNINGS _CRT_NONSTDC_NO_WARNINGS)
else()
    target_compile_options(zx_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ 12 sees overlapping copies in the assignment of a literal to a std::string, where there are none.
    target_compile_options(zx_options INTERFACE -Wno-restrict)
elseif(CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND NOT MSVC)
    target_compile_options(zx_options INTERFACE -Wthread-safety)
endif()
if(ZX_SANITIZE)
    add_compile_options(-fsanitize=${ZX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
    add_link_options(-fsanitize=${ZX_SANITIZE})
endif()
if(ZX_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(WIN32)
    # Windows 10 and later; its headers without the macros min and max; formats and numbers of the C library as
    # the standard has them, so that they print alike everywhere.
    add_compile_definitions(_WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX)
    if(MINGW)
        add_compile_definitions(__USE_MINGW_ANSI_STDIO=1)
        # Asio takes other classes for its threads when <pthread.h> was included before it: one choice for everyone,
        # as their objects would be taken for each other.
        add_compile_definitions(ASIO_HAS_THREADS=1 ASIO_HAS_PTHREADS=1)
    endif()
endif()
