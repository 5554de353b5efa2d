# SPDX-License-Identifier: BSD-2-Clause
cmake_minimum_required(VERSION 3.25)

# Opens a page in headless Chromium and looks at it as people do, at the width of a phone and of a screen, light and
# dark: cmake -DPAGE=folder -DFOLDER=folder -DPROBE=probe.html -P browser.cmake
find_program(CHROMIUM NAMES chromium chromium-browser google-chrome)
if(NOT CHROMIUM)
    message("SKIPPED: no Chromium here. Run next: apt-get install chromium")
    return()
endif()
# A snap of Chromium sees only what lies in the home folder, and no profile elsewhere.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
file(READ ${PROBE} probe)
string(REPLACE "PAGE" "file://${PAGE}/index.html" probe "${probe}")
file(WRITE ${FOLDER}/probe.html "${probe}")
foreach(look IN ITEMS "390 0" "1400 1") # a dark phone, a light screen
    separate_arguments(look)
    list(GET look 0 width)
    list(GET look 1 scheme)
    execute_process(
        COMMAND ${CHROMIUM} --headless --no-sandbox --disable-gpu --allow-file-access-from-files
                --user-data-dir=${FOLDER}/profile --blink-settings=preferredColorScheme=${scheme}
                --window-size=1600,1000 --virtual-time-budget=60000 --dump-dom "file://${FOLDER}/probe.html?${width}"
        OUTPUT_VARIABLE dom ERROR_VARIABLE log RESULT_VARIABLE status)
    if(NOT dom MATCHES "<pre id=\"found\">([^<]*)</pre>")
        message(FATAL_ERROR "Chromium gave no answer (${status}):\n${log}")
    endif()
    message("${width} pixels: ${CMAKE_MATCH_1}")
    if(NOT CMAKE_MATCH_1 MATCHES "^looked at")
        message(SEND_ERROR "The page has faults")
    endif()
endforeach()
