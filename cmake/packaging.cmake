# What people install: the component `tools` for those who measure and integrate, and `sdk` for makers of hosts. cpack
# makes a .deb of each, or one zip of the tools for Windows.
#
# Programs and libraries lie beside each other in one folder, as they do in the build: that is how a program finds
# the plug-in, the plug-in its libraries, and a client the machine for its own process. No installed file holds
# a path of its place, so the whole may be moved.
set(shared_libraries m2zendrix serverdll errorlog errortrace trace zendrix_sim_library)
if(WIN32)
    set(program_folder bin)
    set(library_folder bin)
    set(shared_folder .)
    set(docs_folder docs)
else()
    set(program_folder lib/m2zendrix)
    set(library_folder lib/m2zendrix)
    set(shared_folder share/m2zendrix)
    set(docs_folder share/doc/m2zendrix-tools)
endif()

install(TARGETS zxhost zendrix-sim ${shared_libraries}
    RUNTIME DESTINATION ${program_folder} COMPONENT tools
    LIBRARY DESTINATION ${library_folder} COMPONENT tools
    ARCHIVE DESTINATION lib COMPONENT sdk)
install(DIRECTORY machines DESTINATION ${shared_folder} COMPONENT tools FILES_MATCHING PATTERN "*.ini")
install(DIRECTORY docs/ DESTINATION ${docs_folder} COMPONENT tools FILES_MATCHING PATTERN "*.md")

if(WIN32)
    install(FILES ${ZX_WINDOWS_RUNTIME} DESTINATION ${program_folder} COMPONENT tools)
    if(MSVC)
        set(CMAKE_INSTALL_SYSTEM_RUNTIME_DESTINATION ${program_folder})
        set(CMAKE_INSTALL_SYSTEM_RUNTIME_COMPONENT tools)
        include(InstallRequiredSystemLibraries)
    endif()
else()
    # What is typed at a shell: links, as the loader and the programs look beside the file that a link leads to.
    foreach(program zxhost zendrix-sim)
        set(link ${CMAKE_CURRENT_BINARY_DIR}/links/${program})
        file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/links)
        file(CREATE_LINK ../${program_folder}/${program} ${link} SYMBOLIC)
        install(FILES ${link} DESTINATION bin COMPONENT tools)
    endforeach()
endif()

include(cmake/sdk.cmake)
include(cmake/cpack.cmake)
