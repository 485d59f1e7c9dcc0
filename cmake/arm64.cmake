# Builds for 64-bit ARM with the compiler and the libraries that Debian has for it; what is built runs emulated.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static)
set(PKG_CONFIG_EXECUTABLE aarch64-linux-gnu-pkg-config)
