# Toolchain: Cortex-A9 with NEON and nothing below the program, as Debian's gcc-arm-none-eabi and newlib make it. Start-up code,
# memory layout and drivers are those of board/; what this builds runs on QEMU's vexpress-a9 (board/qemu-a9).
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-none-eabi-gcc)
set(CMAKE_CXX_COMPILER arm-none-eabi-g++)
set(CMAKE_ASM_COMPILER arm-none-eabi-gcc)
foreach(language IN ITEMS C CXX ASM)
    set(CMAKE_${language}_FLAGS_INIT "-mcpu=cortex-a9 -mfpu=neon -mfloat-abi=hard -marm -ffunction-sections -fdata-sections")
endforeach()
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)  # there is nothing to link a trial program with yet

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../board/qemu-a9")

# Says to every folder that there is no operating system.
set(KANVO_BARE ON)
