# SPDX-License-Identifier: BSD-2-Clause
# What the library exports is what the list says: no name less, no name more.
# LIBRARY, LIST, NM, OBJDUMP
cmake_minimum_required(VERSION 3.25)

if(LIBRARY MATCHES "\\.dll$")
    execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE "^.*\\[Ordinal/Name Pointer\\] Table" "" output "${output}")
    string(REGEX MATCHALL "\n\t\\[ *[0-9]+\\] [^ \r\n]+" exported "${output}")
    list(TRANSFORM exported REPLACE "^.*\\] " "")
else()
    execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "[^\n]+" exported "${output}")
    list(FILTER exported EXCLUDE REGEX " A ") # the name of the version itself
    list(TRANSFORM exported REPLACE "^.* ([^ @]+)(@.*)?$" "\\1")
endif()
file(STRINGS ${LIST} wanted)

set(sorted ${wanted})
list(SORT sorted)
list(REMOVE_DUPLICATES sorted)
if(NOT "${sorted}" STREQUAL "${wanted}")
    message(SEND_ERROR "${LIST}: not sorted, or a name twice")
endif()

set(missing ${wanted})
list(REMOVE_ITEM missing ${exported})
set(surplus ${exported})
list(REMOVE_ITEM surplus ${wanted})
if(missing OR surplus)
    list(JOIN missing " " missing)
    list(JOIN surplus " " surplus)
    message(SEND_ERROR "${LIBRARY}\nin the list, not exported: ${missing}\nexported, not in the list: ${surplus}")
endif()
