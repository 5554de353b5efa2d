# SPDX-License-Identifier: BSD-2-Clause
cmake_minimum_required(VERSION 3.25)

# Every exported function has an exhibit: cmake -DLIST=exports.txt -DEXHIBITS=folder -P exports.cmake
#
# But those that make no picture and have nothing to say on a page of pictures:
set(without
    pxkdMalloc pxkiMalloc pxksMalloc pxkwMalloc # as pxkMalloc
    pxkAllocateImage pxkAllocateImageFP         # stand in try.h, with which every exhibit begins
    pxkDeallocateImage pxkGetErrMode pxkGetKestriumCounter pxkGetLibVersion pxkError
    pxkSetErrMode pxkStdErrReport               # stand in try.h
    pxkGuiBoxReport)                            # waits for an answer

file(GLOB files ${EXHIBITS}/*.c)
set(code "")
foreach(file IN LISTS files)
    file(READ ${file} text)
    string(APPEND code "${text}")
endforeach()
file(STRINGS ${LIST} exports)
set(missing "")
foreach(name IN LISTS exports)
    if(NOT code MATCHES "${name}\\(" AND NOT code MATCHES "\\(${name}\\)" AND NOT name IN_LIST without)
        list(APPEND missing ${name})
    elseif(code MATCHES "[^a-zA-Z]${name}\\(" AND name IN_LIST without)
        message(SEND_ERROR "${name} has an exhibit: take it off the list of those that have none")
    endif()
endforeach()
if(missing)
    message(FATAL_ERROR "In no exhibit: ${missing}")
endif()
