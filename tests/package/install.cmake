# An installation in an empty folder serves a C program through pkg-config and others through find_package.
# BUILD, CONFIG, GENERATOR, TOOLCHAIN, C_COMPILER, C_FLAGS, EMULATOR, SOURCE, FOLDER, VERSION
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${FOLDER})
set(prefix ${FOLDER}/prefix)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --config ${CONFIG} --prefix ${prefix}
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE pc ${prefix}/pxk.pc)
if(NOT pc)
    message(FATAL_ERROR "no pxk.pc was installed")
endif()
get_filename_component(pc_folder ${pc} DIRECTORY)
get_filename_component(lib_folder ${pc_folder} DIRECTORY)

function(run_user PROGRAM)
    set(ENV{LD_LIBRARY_PATH} ${lib_folder})
    execute_process(COMMAND ${EMULATOR} ${PROGRAM} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    if(NOT output MATCHES "^pxk ${VERSION}")
        message(SEND_ERROR "${PROGRAM} said \"${output}\"")
    endif()
endfunction()

# --- pkg-config and a plain compiler call
find_program(PKG_CONFIG NAMES pkg-config pkgconf REQUIRED)
set(ENV{PKG_CONFIG_LIBDIR} ${pc_folder})
execute_process(COMMAND ${PKG_CONFIG} --cflags --libs pxk
                OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
separate_arguments(c_flags UNIX_COMMAND "${C_FLAGS}")
file(GLOB dll ${prefix}/bin/*.dll)
set(suffix "")
if(dll)
    set(suffix .exe)
    file(COPY ${dll} DESTINATION ${FOLDER})
endif()
execute_process(COMMAND ${C_COMPILER} ${c_flags} -Wall -Werror ${SOURCE}/user.c -o ${FOLDER}/user${suffix} ${flags}
                COMMAND_ERROR_IS_FATAL ANY)
run_user(${FOLDER}/user${suffix})

# --- find_package, both libraries
set(arguments -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_BUILD_TYPE=${CONFIG})
if(TOOLCHAIN)
    list(APPEND arguments -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_FIND_ROOT_PATH=${prefix})
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${FOLDER}/cmake -G ${GENERATOR} ${arguments}
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${FOLDER}/cmake OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
if(dll)
    file(COPY ${dll} DESTINATION ${FOLDER}/cmake)
endif()
run_user(${FOLDER}/cmake/user_shared${suffix})
run_user(${FOLDER}/cmake/user_static${suffix})
