# The header compiles alone, without a warning, in every dialect that it promises.
# C_COMPILER, C_FLAGS, CXX_COMPILER, CXX_FLAGS, HEADER, FOLDER (for the one-line sources)
cmake_minimum_required(VERSION 3.25)

separate_arguments(c_flags UNIX_COMMAND "${C_FLAGS}")
separate_arguments(cxx_flags UNIX_COMMAND "${CXX_FLAGS}")
get_filename_component(include ${HEADER}/../.. ABSOLUTE)
file(WRITE ${FOLDER}/alone.c "#include \"pxk/pxk.h\"\nint pxkIsC(void);\nint pxkIsC(void) { return PXK_StsOk; }\n")
file(WRITE ${FOLDER}/alone.cpp "#include \"pxk/pxk.h\"\nint pxkIsCxx() { return PXK_StsOk; }\n")

foreach(dialect IN ITEMS c89 c99 c++98 c++17)
    if(dialect MATCHES "\\+")
        set(command ${CXX_COMPILER} ${cxx_flags} -std=${dialect} ${FOLDER}/alone.cpp)
    else()
        set(command ${C_COMPILER} ${c_flags} -std=${dialect} ${FOLDER}/alone.c)
    endif()
    execute_process(COMMAND ${command} -fsyntax-only -Wall -Wextra -Wpedantic -Werror -I${include}
                    RESULT_VARIABLE result ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        message(SEND_ERROR "${dialect}:\n${errors}")
    endif()
endforeach()
