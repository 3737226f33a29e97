# SPDX-License-Identifier: GPL-3.0-or-later
# Builds for 64-bit ARM with Debian's cross compiler, and runs what is built by qemu's user mode.
# The libraries are those of the architecture arm64, beside the machine's own.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(PKG_CONFIG_EXECUTABLE aarch64-linux-gnu-pkg-config)
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/bin/qemu-aarch64)
