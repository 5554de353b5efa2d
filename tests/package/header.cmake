# SPDX-License-Identifier: BSD-2-Clause
# The headers compile alone, without a warning, in every dialect that they promise.
# C_COMPILER, C_FLAGS, CXX_COMPILER, CXX_FLAGS, INCLUDE, FOLDER (for the one-line sources)
cmake_minimum_required(VERSION 3.25)

separate_arguments(c_flags UNIX_COMMAND "${C_FLAGS}")
separate_arguments(cxx_flags UNIX_COMMAND "${CXX_FLAGS}")
file(WRITE ${FOLDER}/alone.c "#include \"pxk/pxk.h\"\nint pxkIsC(void);\nint pxkIsC(void) { return PXK_StsOk; }\n")
file(WRITE ${FOLDER}/alone.cpp "#include \"pxk/pxk.h\"\nint pxkIsCxx() { return PXK_StsOk; }\n")
file(WRITE ${FOLDER}/classes.cpp
     "#include \"pxk/pxk.hpp\"\nint value(const pxk::View& view) { return view.at<unsigned char>(0, 0); }\n")

set(warnings -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
foreach(source IN ITEMS c89/alone.c c99/alone.c c++98/alone.cpp c++17/alone.cpp c++17/classes.cpp c++20/classes.cpp)
    cmake_path(GET source PARENT_PATH dialect)
    cmake_path(GET source FILENAME file)
    set(command ${CXX_COMPILER} ${cxx_flags})
    if(file STREQUAL "alone.c")
        set(command ${C_COMPILER} ${c_flags})
    endif()
    execute_process(COMMAND ${command} -std=${dialect} ${FOLDER}/${file} -fsyntax-only ${warnings} -I${INCLUDE}
                    RESULT_VARIABLE result ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        message(SEND_ERROR "${source}:\n${errors}")
    endif()
endforeach()
