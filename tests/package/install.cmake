# SPDX-License-Identifier: BSD-2-Clause
# An installation in a folder with blanks in its name, and moved since, serves strangers.
# BUILD; what use.cmake asks for
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/use.cmake)

file(REMOVE_RECURSE ${FOLDER})
run_quietly(${CMAKE_COMMAND} --install ${BUILD} --config ${CONFIG} --prefix "${FOLDER}/first place")
file(RENAME "${FOLDER}/first place" "${FOLDER}/second place")
use_installation("${FOLDER}/second place")

foreach(file IN ITEMS LICENSE CHANGELOG.md README.md examples/readme.c examples/cplusplus.cpp)
    if(NOT EXISTS "${FOLDER}/second place/share/doc/pxk/${file}")
        message(SEND_ERROR "${file} was not installed")
    endif()
endforeach()
