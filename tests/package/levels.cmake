# SPDX-License-Identifier: BSD-2-Clause
# Nothing that a linker could merge lies outside the higher levels' namespaces: a weak function of one level would serve
# all of them, on processors that cannot run it.
# OBJECTS, NM
cmake_minimum_required(VERSION 3.25)

file(STRINGS ${OBJECTS} objects)
execute_process(COMMAND ${NM} -C --defined-only ${objects} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+ [VWuvw] [^\n]+" weak "${output}")
list(FILTER weak EXCLUDE REGEX "pxk_v[34]::")
if(NOT objects OR weak)
    list(JOIN weak "\n" weak)
    message(SEND_ERROR "Functions that levels could share:\n${weak}")
endif()
