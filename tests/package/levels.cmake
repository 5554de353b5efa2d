# Nothing that a linker could merge lies outside the levels' namespaces: a weak function of one level would serve all of
# them, on processors that cannot run it.
# LIBRARY, NM
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${NM} -C --defined-only ${LIBRARY} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+ [VWuvw] [^\n]+" weak "${output}")
list(FILTER weak EXCLUDE REGEX "pxk_(baseline|v3|v4)::")
if(weak)
    list(JOIN weak "\n" weak)
    message(SEND_ERROR "${LIBRARY} holds functions that levels could share:\n${weak}")
endif()
