# SPDX-License-Identifier: BSD-2-Clause
# As a part of another project the library brings its targets and nothing else: no rules to install, no tests, no options
# of the project changed.
# PXK; what use.cmake asks for
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/use.cmake)

file(REMOVE_RECURSE ${FOLDER})
set(arguments -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_CXX_COMPILER=${CXX_COMPILER})
if(TOOLCHAIN)
    set(arguments -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
endif()
run_quietly(${CMAKE_COMMAND} -S ${SOURCE}/../parent -B ${FOLDER}/build -G ${GENERATOR} -DPXK=${PXK} ${arguments})
run_quietly(${CMAKE_COMMAND} --install ${FOLDER}/build --prefix ${FOLDER}/prefix)
file(GLOB_RECURSE installed ${FOLDER}/prefix/*)
if(installed)
    message(SEND_ERROR "installed: ${installed}")
endif()
