# SPDX-License-Identifier: BSD-2-Clause
cmake_minimum_required(VERSION 3.25)

# Compiles the programs beside a page as they stand, runs their code, and compares what it leaves with the pictures of
# the page: cmake -DPAGE=folder -DFOLDER=folder -DC_COMPILER= -DC_FLAGS= -DINCLUDE= -DLIBRARY= -DDRIVER=driver.c
#               -P code.cmake
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
file(GLOB programs ${PAGE}/code/*.c)
list(LENGTH programs count)
if(count EQUAL 0)
    message(FATAL_ERROR "no programs in ${PAGE}/code")
endif()
separate_arguments(flags UNIX_COMMAND "${C_FLAGS}")
cmake_path(GET LIBRARY PARENT_PATH folder)
set(libraries ${LIBRARY} -Wl,-rpath,${folder} -lpng -lm)
list(APPEND flags -std=c99 -Wall -Wextra -Werror -I${INCLUDE})

set(declarations "")
set(rows "")
set(objects "")
foreach(program IN LISTS programs)
    get_filename_component(name ${program} NAME_WE)
    string(REPLACE "-" "_" word ${name})
    string(APPEND declarations "void ${word}(void);\n")
    string(APPEND rows "    { \"${word}\", ${word} },\n")
    execute_process(COMMAND ${C_COMPILER} ${flags} -DTRY_PART -Dshow=${word} -c ${program} -o ${FOLDER}/${name}.o
                    COMMAND_ERROR_IS_FATAL ANY)
    list(APPEND objects ${FOLDER}/${name}.o)
endforeach()
file(WRITE ${FOLDER}/rows.h "${declarations}\nstatic const struct { const char* name; void (*run)(void); } rows[] = {\n${rows}};\n")
execute_process(COMMAND ${C_COMPILER} ${flags} -I${FOLDER} -I${PAGE}/code ${DRIVER} ${objects} -o ${FOLDER}/driver
                        ${libraries} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${FOLDER}/driver ${PAGE} COMMAND_ERROR_IS_FATAL ANY)

# One of them the way the page says.
list(GET programs 0 first)
execute_process(COMMAND ${C_COMPILER} ${flags} ${first} -o ${FOLDER}/first ${libraries} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${FOLDER}/first ${PAGE} WORKING_DIRECTORY ${FOLDER} COMMAND_ERROR_IS_FATAL ANY)
get_filename_component(name ${first} NAME_WE)
string(REPLACE "-" "_" word ${name})
if(NOT EXISTS ${FOLDER}/out.png)
    message(FATAL_ERROR "${name} wrote no out.png")
endif()
message("${count} programs leave the pictures of the page")
