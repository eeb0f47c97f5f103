# Where an installation puts what, and the CMake package that tells other projects about it. Each folder
# installs what is its own.

set(CMAKE_INSTALL_DOCDIR "share/doc/veltra4-configurations" CACHE PATH "Documents")
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(VELTRA4_INSTALL_MODULEDIR "${CMAKE_INSTALL_LIBDIR}/veltra4/modules")
set(VELTRA4_INSTALL_HEADERDIR "${CMAKE_INSTALL_INCLUDEDIR}/veltra4")
set(VELTRA4_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/Veltra4Modules")

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/Veltra4ModulesConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/generated/Veltra4ModulesConfig.cmake"
    INSTALL_DESTINATION "${VELTRA4_INSTALL_CMAKEDIR}"
    PATH_VARS VELTRA4_INSTALL_MODULEDIR
    NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/generated/Veltra4ModulesConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(
    FILES
        "${PROJECT_BINARY_DIR}/generated/Veltra4ModulesConfig.cmake"
        "${PROJECT_BINARY_DIR}/generated/Veltra4ModulesConfigVersion.cmake"
    DESTINATION "${VELTRA4_INSTALL_CMAKEDIR}")
install(EXPORT Veltra4Modules
    NAMESPACE Veltra4::
    FILE Veltra4ModulesTargets.cmake
    DESTINATION "${VELTRA4_INSTALL_CMAKEDIR}")

install(DIRECTORY docs/ DESTINATION "${CMAKE_INSTALL_DOCDIR}"
    FILES_MATCHING PATTERN "*.md" PATTERN "*.png")
install(DIRECTORY examples DESTINATION "${CMAKE_INSTALL_DOCDIR}")
