# 32-bit x86 Linux: scalar integer code with conditional moves and x87 floating point.
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
set(flags "-m32 -march=pentiumpro -mfpmath=387 -fno-tree-vectorize")
set(CMAKE_C_FLAGS_INIT "${flags}")
set(CMAKE_CXX_FLAGS_INIT "${flags}")
