# The component `sdk`: headers, one static library for the host's side, and what CMake and pkg-config find them by.

# Everything of ours that a host links: the channel and its catalogue, the interface's own code, and what these
# stand on, but for the archives, which no host's code reaches. The three facilities stay shared
# libraries, as a process has one log and one trace, for host and plug-in together.
add_library(m2zendrix_host STATIC
    $<TARGET_OBJECTS:machine_interface> $<TARGET_OBJECTS:zendrix_commands>
    $<FILTER:$<TARGET_OBJECTS:zendrix_machine>,EXCLUDE,zipper>
    $<TARGET_OBJECTS:msl> $<TARGET_OBJECTS:os>)
set_target_properties(m2zendrix_host PROPERTIES LINKER_LANGUAGE CXX)
if(CMAKE_STRIP)  # a debug build's paths are nobody else's business
    add_custom_command(TARGET m2zendrix_host POST_BUILD
        COMMAND ${CMAKE_STRIP} --strip-debug $<TARGET_FILE:m2zendrix_host> VERBATIM)
endif()
install(TARGETS m2zendrix_host ARCHIVE DESTINATION lib COMPONENT sdk)

# Flat, as the headers name each other; `os` is the one folder among them.
install(DIRECTORY machine_interface/ platform/errorlog/inc/ platform/errortrace/inc/ platform/trace/inc/ serverdll/inc/
    DESTINATION include/m2zendrix COMPONENT sdk FILES_MATCHING PATTERN "*.h")
install(FILES zendrix/server/commands/src/append_number.h zendrix/server/commands/src/messagecatalogue.h
    zendrix/server/commands/src/moutputchannel.h DESTINATION include/m2zendrix COMPONENT sdk)
install(FILES platform/os/inc/os/library.h platform/os/inc/os/mutex.h platform/os/inc/os/printf_format.h DESTINATION include/m2zendrix/os COMPONENT sdk)
install(DIRECTORY examples/host DESTINATION share/m2zendrix/examples COMPONENT sdk)

set(plugin_file ${CMAKE_SHARED_LIBRARY_PREFIX}m2zendrix${CMAKE_SHARED_LIBRARY_SUFFIX})

# What the static library needs of the system.
if(WIN32)
    set(system_libraries ws2_32 advapi32)
else()
    set(system_libraries ${CMAKE_DL_LIBS} pthread)
endif()
list(TRANSFORM system_libraries PREPEND "-l" OUTPUT_VARIABLE pkgconfig_system_libraries)
list(JOIN pkgconfig_system_libraries " " pkgconfig_system_libraries)

include(CMakePackageConfigHelpers)
set(package_folder lib/cmake/m2zendrix)
configure_package_config_file(cmake/m2zendrixConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/sdk/m2zendrixConfig.cmake
    INSTALL_DESTINATION ${package_folder} NO_CHECK_REQUIRED_COMPONENTS_MACRO)
# Classes and containers cross the boundary: another minor release may have other ones.
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/sdk/m2zendrixConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/sdk/m2zendrixConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/sdk/m2zendrixConfigVersion.cmake DESTINATION ${package_folder} COMPONENT sdk)
configure_file(cmake/m2zendrix.pc.in ${CMAKE_CURRENT_BINARY_DIR}/sdk/m2zendrix.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/sdk/m2zendrix.pc DESTINATION lib/pkgconfig COMPONENT sdk)
