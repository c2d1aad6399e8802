# How cpack packs the two components.
set(CPACK_PACKAGE_NAME m2zendrix)
set(CPACK_PACKAGE_VENDOR m2zendrix)
set(CPACK_PACKAGE_CONTACT "m2zendrix maintainers <maintainers@m2zendrix.invalid>")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/packages)

if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_COMPONENTS_ALL tools)
    set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
    set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
    set(CPACK_PACKAGE_FILE_NAME m2zendrix-${PROJECT_VERSION}-windows-x64)
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_COMPONENTS_ALL tools sdk)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
    set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

    set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME m2zendrix-tools)
    set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION science)
    set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
    set(CPACK_COMPONENT_TOOLS_DESCRIPTION "Machine driver plug-in, host tool and simulated machine
The plug-in m2zendrix for measuring applications, zxhost, which drives a
measuring machine from the command line, and zendrix-sim, a machine server
that simulates a machine.")

    set(CPACK_DEBIAN_SDK_PACKAGE_NAME m2zendrix-dev)
    set(CPACK_DEBIAN_SDK_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_SDK_PACKAGE_DEPENDS "m2zendrix-tools (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
    set(CPACK_COMPONENT_SDK_DESCRIPTION "Headers and library for hosts of the machine driver m2zendrix
What a measuring application compiles and links to use the plug-in m2zendrix:
headers, a static library, files for CMake and pkg-config, and an example.")
endif()
include(CPack)
