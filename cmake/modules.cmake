# The kinds of targets in this house. A static library may use symbols that only the plug-in, a program or a
# test provides (the three facilities, the client): it links the *_api targets, which carry headers alone.

# zx_library(name SOURCES ... INCLUDE dir... LINK target...)
function(zx_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;INCLUDE;LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${ARG_INCLUDE})
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE zx_options)
endfunction()

# zx_shared(name SOURCES ... INCLUDE dir... LINK target...): <name> is the shared library, <name>_api its headers.
function(zx_shared name)
    cmake_parse_arguments(ARG "" "" "SOURCES;INCLUDE;LINK" ${ARGN})
    add_library(${name}_api INTERFACE)
    target_include_directories(${name}_api INTERFACE ${ARG_INCLUDE})
    add_library(${name} SHARED ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC ${name}_api PRIVATE ${ARG_LINK} zx_options)
    target_compile_definitions(${name} PRIVATE ZX_BUILDING_${name})
endfunction()

# zx_program(name SOURCES ... LINK target...)
function(zx_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LINK} zx_options)
endfunction()
