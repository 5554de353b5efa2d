# Linux with the C library musl (Debian package musl-tools). The library wants nothing of the C++ runtime but headers, and
# those are GCC's own, in front of musl's.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER musl-gcc)
set(CMAKE_CXX_COMPILER g++)
execute_process(COMMAND g++ -dumpversion OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE)
execute_process(COMMAND g++ -print-file-name=include OUTPUT_VARIABLE own OUTPUT_STRIP_TRAILING_WHITESPACE)
set(flags "-nostdinc \"-D__GLIBC_PREREQ(a,b)=0\"") # which GCC's headers ask, whatever the C library
foreach(folder IN ITEMS /usr/include/c++/${version} /usr/include/x86_64-linux-gnu/c++/${version}
                        /usr/include/x86_64-linux-musl ${own})
    string(APPEND flags " -isystem ${folder}")
endforeach()
set(CMAKE_CXX_FLAGS_INIT "${flags}")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY) # no program in C++ can be linked
