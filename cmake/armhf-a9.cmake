# Toolchain: Linux on Cortex-A9 with NEON, hard float, as Debian's g++-arm-linux-gnueabihf makes it. What this builds runs here in
# QEMU's user mode. The presets armhf-a9 and aarch64 use these files; `./dev target` runs both.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_C_FLAGS_INIT "-mcpu=cortex-a9 -mfpu=neon -mfloat-abi=hard")
set(CMAKE_CXX_FLAGS_INIT "-mcpu=cortex-a9 -mfpu=neon -mfloat-abi=hard")

set(CMAKE_FIND_ROOT_PATH /usr/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# With the processor named: QEMU's own choice also runs instructions that a Cortex-A9 does not have.
set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-arm;-cpu;cortex-a9;-L;/usr/arm-linux-gnueabihf")
