# What `cmake --install` puts where, and the packages that `cpack` makes of it: three components.

include(CMakePackageConfigHelpers)

install(TARGETS pxk EXPORT pxkTargets
        RUNTIME COMPONENT runtime
        LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development)
install(TARGETS pxk_static EXPORT pxkTargets ARCHIVE COMPONENT development)
install(FILES include/pxk/pxk.h include/pxk/pxk.hpp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/pxk COMPONENT development)

# --- for CMake
set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/pxk)
install(EXPORT pxkTargets NAMESPACE pxk:: DESTINATION ${cmake_folder} COMPONENT development)
configure_package_config_file(cmake/pxkConfig.cmake.in pxkConfig.cmake INSTALL_DESTINATION ${cmake_folder})
write_basic_package_version_file(pxkConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/pxkConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/pxkConfigVersion.cmake
        DESTINATION ${cmake_folder} COMPONENT development)

# --- for pkg-config: folders are counted from the file itself, so that an installation can be moved
set(pc_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
string(REPLACE " " "\\ " PXK_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
if(NOT IS_ABSOLUTE "${pc_folder}")
    string(REGEX REPLACE "[^/]+" ".." PXK_PC_PREFIX "${pc_folder}")
    string(PREPEND PXK_PC_PREFIX "\${pcfiledir}/")
endif()
foreach(name IN ITEMS INCLUDEDIR LIBDIR)
    set(folder "\${prefix}")
    cmake_path(APPEND folder "${CMAKE_INSTALL_${name}}") # which may be absolute
    string(REPLACE " " "\\ " PXK_PC_${name} "${folder}")
endforeach()
get_target_property(PXK_PC_PRIVATE_LIBS pxk_static INTERFACE_LINK_LIBRARIES)
configure_file(cmake/pxk.pc.in pxk.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/pxk.pc DESTINATION ${pc_folder} COMPONENT development)

# --- for linkers that don't read MinGW's import library; the module definition makes one for any of them
if(WIN32)
    install(FILES ${PXK_MODULE_DEFINITION} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
    if(PXK_IMPORT_LIBRARY)
        install(FILES ${PXK_IMPORT_LIBRARY} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
    endif()
endif()

# --- to read; pages where the target `docs` has made them
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(FILES README.md CHANGELOG.md SECURITY.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT documentation
        FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.jpg" PATTERN "*.svg" PATTERN reference EXCLUDE)
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT documentation
        FILES_MATCHING PATTERN "*.c" PATTERN "*.cpp")
install(DIRECTORY ${PROJECT_BINARY_DIR}/docs/html DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation OPTIONAL)
install(DIRECTORY ${PROJECT_BINARY_DIR}/docs/man/ DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT documentation OPTIONAL
        FILES_MATCHING PATTERN "*.3")

# --- packages
set(CPACK_PACKAGE_NAME pxk)
set(CPACK_PACKAGE_VENDOR "the pxk authors")
set(CPACK_PACKAGE_CONTACT "the pxk authors <pxk@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_RESOURCE_FILE_README ${PROJECT_SOURCE_DIR}/README.md)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL runtime development documentation)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
    math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
    set(CPACK_PACKAGE_FILE_NAME pxk-${PROJECT_VERSION}-win${bits})
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_STRIP_FILES ON)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
        set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE i386)
    endif()
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libpxk2)
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
    find_program(PXK_SHLIBDEPS dpkg-shlibdeps DOC "Finds the libc6 that a package needs (Debian package dpkg-dev)")
    if(PXK_SHLIBDEPS AND NOT CPACK_DEBIAN_PACKAGE_ARCHITECTURE)
        set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
    else()
        set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS libc6)
    endif()
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libpxk-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libpxk2 (= ${PROJECT_VERSION})")
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS libpxk-doc)
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME libpxk-doc)
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
endif()
include(CPack)
cpack_add_component(runtime DESCRIPTION "The shared library.")
cpack_add_component(development DEPENDS runtime
                    DESCRIPTION "Headers for C and C++, the static library, and what CMake and pkg-config need.")
cpack_add_component(documentation DESCRIPTION "The reference, guides and examples.")
