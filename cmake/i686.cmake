# 32-bit x86 Linux: scalar integer code with conditional moves and x87 floating point.
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
set(flags "-m32 -march=pentiumpro -mfpmath=387 -fno-tree-vectorize")
if(NOT EXISTS /usr/include/asm) # which only Debian's gcc-multilib has, and that can't stand beside other cross compilers
    string(APPEND flags " -idirafter /usr/include/x86_64-linux-gnu")
endif()
set(CMAKE_C_FLAGS_INIT "${flags}")
set(CMAKE_CXX_FLAGS_INIT "${flags}")
