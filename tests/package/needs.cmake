# SPDX-License-Identifier: BSD-2-Clause
# At run time the library needs the C library and libm; on Windows the kernel, the box and the C runtime.
# LIBRARY, READELF, OBJDUMP
cmake_minimum_required(VERSION 3.25)

if(LIBRARY MATCHES "\\.dll$")
    execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "DLL Name: [^\r\n]+" needed "${output}")
    list(TRANSFORM needed REPLACE "^DLL Name: " "")
    list(TRANSFORM needed TOLOWER)
    set(allowed kernel32.dll user32.dll msvcrt.dll)
else()
    execute_process(COMMAND ${READELF} -d ${LIBRARY} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "\\(NEEDED\\)[^\n]*" needed "${output}")
    list(TRANSFORM needed REPLACE "^.*\\[([^ ]*)\\].*$" "\\1") # (NEEDED) Shared library: [libm.so.6]
    list(FILTER needed EXCLUDE REGEX "^ld-linux") # thread-local variables of the C library's own loader
    set(allowed libc.so.6 libm.so.6)
endif()

if(NOT needed)
    message(SEND_ERROR "${LIBRARY}: its needs could not be read")
endif()
foreach(name IN LISTS needed)
    if(NOT name IN_LIST allowed)
        message(SEND_ERROR "${LIBRARY} needs ${name}")
    endif()
endforeach()
