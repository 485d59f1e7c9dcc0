# The kit for plugins of others: find_package(ToolGpioHost) gives the targets ToolGpioHost::plugin_management and
# ToolGpioHost::utilities, and in ToolGpioHost_PLUGIN_DIR where the bench looks for plugins by their names.
include(CMakePackageConfigHelpers)
set(kit ${PROJECT_BINARY_DIR}/ToolGpioHost)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ToolGpioHostConfig.cmake.in ${kit}/ToolGpioHostConfig.cmake
    INSTALL_DESTINATION ${kit_folder}
    PATH_VARS plugin_folder)
write_basic_package_version_file(${kit}/ToolGpioHostConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${kit}/ToolGpioHostConfig.cmake ${kit}/ToolGpioHostConfigVersion.cmake DESTINATION ${kit_folder})
install(EXPORT ToolGpioHostTargets NAMESPACE ToolGpioHost:: DESTINATION ${kit_folder})
