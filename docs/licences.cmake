# SPDX-License-Identifier: BSD-2-Clause
# Fails unless every source under ROOT names its licence in one of the first two lines.
cmake_minimum_required(VERSION 3.25)

set(patterns "")
foreach(folder IN ITEMS apps bench cmake docs examples fuzz include scripts src tests)
    foreach(kind IN ITEMS *.c *.cpp *.h *.hpp *.cmake *.py *.sh *.in CMakeLists.txt)
        list(APPEND patterns ${ROOT}/${folder}/${kind})
    endforeach()
endforeach()
file(GLOB_RECURSE sources ${patterns})
foreach(source IN LISTS sources)
    file(STRINGS ${source} lines LIMIT_COUNT 2)
    if(NOT "${lines}" MATCHES "SPDX-License-Identifier: BSD-2-Clause")
        message(SEND_ERROR "${source} does not name its licence: its first line is to say SPDX-License-Identifier: BSD-2-Clause")
    endif()
endforeach()
