# SPDX-License-Identifier: BSD-2-Clause
# One library for every processor: all sources are compiled once a level. Those of the higher levels are in a namespace
# each, so that no inline function of one can serve another. What keeps state is compiled once. An exported function is
# a jump through a table that is filled when the library is loaded (src/platform/ownprocessor.h).
#
# A level's copy of pxkAdd is pxkAdd_v3 to the linker and pxkAdd to its own source.

set(PXK_LEVEL_NAMES baseline v3 v4)
set(PXK_LEVEL_FLAGS_baseline "")
set(PXK_LEVEL_FLAGS_v3 -march=x86-64-v3)
set(PXK_LEVEL_FLAGS_v4 -march=x86-64-v4)

# Names of the list that are defined in some sources.
function(pxk_exports_of RESULT SOURCES)
    set(found "")
    foreach(source IN LISTS SOURCES)
        file(READ ${source} text)
        foreach(name IN LISTS PXK_EXPORTS)
            if(text MATCHES "\n[A-Za-z][^\n;={}()]*[ *]${name}\\(")
                list(APPEND found ${name})
            endif()
        endforeach()
    endforeach()
    set(${RESULT} ${found} PARENT_SCOPE)
endfunction()

# The thunk of one export from its prototype: the same arguments, passed on by their names.
function(pxk_thunk RESULT NAME HEADER_TEXT)
    if(NOT HEADER_TEXT MATCHES "PXK_API ([^;()]*[ *]${NAME}\\(([^;()]*)\\))[ \n]*;")
        message(FATAL_ERROR "${NAME} is in the list of exports, but has no prototype in pxk.h")
    endif()
    set(prototype "${CMAKE_MATCH_1}")
    string(REGEX REPLACE "[ \n]+" " " parameters "${CMAKE_MATCH_2}")
    string(REGEX REPLACE "\\[[^]]*\\]" "" parameters "${parameters}")
    string(REPLACE ", " ";" parameters "${parameters}")
    set(arguments "")
    foreach(parameter IN LISTS parameters)
        if(NOT parameter STREQUAL "void")
            string(REGEX MATCH "[A-Za-z0-9_]+$" argument "${parameter}")
            list(APPEND arguments ${argument})
        endif()
    endforeach()
    list(JOIN arguments ", " arguments)
    set(${RESULT} "${prototype}\n{\n    return ownExports.${NAME}(${arguments});\n}\n\n" PARENT_SCOPE)
endfunction()

# Writes the table and the thunks.
function(pxk_write_thunks FILE NAMES)
    file(READ ${PROJECT_SOURCE_DIR}/include/pxk/pxk.h header)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/pxk/pxk.h)
    set(copies "")
    set(members "")
    set(thunks "")
    foreach(name IN LISTS NAMES)
        list(TRANSFORM PXK_LEVEL_NAMES PREPEND ${name}_ OUTPUT_VARIABLE level_names)
        list(JOIN level_names ", " level_names)
        string(APPEND copies "extern decltype(::${name}) ${level_names};\n")
        string(APPEND members "    decltype(&::${name}) ${name};\n")
        pxk_thunk(thunk ${name} "${header}")
        string(APPEND thunks "${thunk}")
    endforeach()
    set(tables "")
    foreach(level IN LISTS PXK_LEVEL_NAMES)
        list(TRANSFORM NAMES APPEND _${level} OUTPUT_VARIABLE level_names)
        list(JOIN level_names ",\n    " level_names)
        string(APPEND tables "static const OwnExports ownExports_${level} = {\n    ${level_names},\n};\n\n")
    endforeach()
    list(TRANSFORM NAMES APPEND _baseline OUTPUT_VARIABLE level_names)
    list(JOIN level_names ",\n    " level_names)
    file(CONFIGURE OUTPUT ${FILE} @ONLY CONTENT "// Made by cmake/levels.cmake.
#include \"pxk/pxk.h\"

#include \"platform/ownprocessor.h\"

extern \"C\" {
@copies@}

struct OwnExports {
@members@};

@tables@// Calls that come before the library chose, from another library's start, get the level that runs everywhere.
static OwnExports ownExports = {
    @level_names@,
};

void ownTakeLevel(OwnLevel level)
{
    ownExports = level == OwnLevel::V4 ? ownExports_v4 : level == OwnLevel::V3 ? ownExports_v3 : ownExports_baseline;
}

@thunks@")
endfunction()

# What stands in front of every source of a level.
function(pxk_write_level_names FILE LEVEL NAMES)
    set(lines "#include \"pxk/pxk.h\"\n\nextern \"C\" {\n")
    foreach(name IN LISTS NAMES)
        string(APPEND lines "extern decltype(${name}) ${name} __asm__(\"${name}_${LEVEL}\");\n")
    endforeach()
    file(CONFIGURE OUTPUT ${FILE} @ONLY CONTENT "// Made by cmake/levels.cmake.\n@lines@}\n")
endfunction()

# The sources of a higher level: each one inside the level's namespace, behind the standard headers that any of them wants.
function(pxk_level_sources RESULT LEVEL SOURCES)
    set(standard "")
    file(GLOB_RECURSE all CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    list(FILTER all EXCLUDE REGEX /platform/)
    foreach(source IN LISTS all)
        file(STRINGS ${source} lines REGEX "^#include <")
        list(APPEND standard ${lines})
    endforeach()
    list(REMOVE_DUPLICATES standard)
    list(SORT standard)
    list(JOIN standard "\n" standard)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/levels/${LEVEL})
    set(wrapped "")
    foreach(source IN LISTS SOURCES)
        file(CONFIGURE OUTPUT ${folder}/${source} @ONLY CONTENT "// Made by cmake/levels.cmake.
#include <stddef.h>
#include <stdint.h>
@standard@

namespace pxk_@LEVEL@ {
#include \"@folder@/levelnames.h\"
#include \"@CMAKE_CURRENT_SOURCE_DIR@/@source@\"
} // namespace pxk_@LEVEL@
")
        list(APPEND wrapped ${folder}/${source})
    endforeach()
    set(${RESULT} ${wrapped} PARENT_SCOPE)
endfunction()
