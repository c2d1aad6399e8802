# What every target of ours is compiled with: linked as zx_options by zx_library, zx_program and zx_test.
add_library(zx_options INTERFACE)
target_compile_options(zx_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
target_link_libraries(zx_options INTERFACE Threads::Threads)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ 12 sees overlapping copies in the assignment of a literal to a std::string, where there are none.
    target_compile_options(zx_options INTERFACE -Wno-restrict)
elseif(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(zx_options INTERFACE -Wthread-safety)
endif()
if(ZX_SANITIZE)
    add_compile_options(-fsanitize=${ZX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
    add_link_options(-fsanitize=${ZX_SANITIZE})
endif()
