# SPDX-License-Identifier: BSD-2-Clause
# Windows: a program made by another compiler and linker, without any runtime and with another calling convention of its
# own where there are several, runs with the DLL. Clang and LLVM's linker stand for those of Microsoft.
# CLANG, LLD_LINK, IMPORT_LIBRARY, DLL, BITS, INCLUDE, EMULATOR, SOURCE, FOLDER
cmake_minimum_required(VERSION 3.25)

file(MAKE_DIRECTORY ${FOLDER})
file(COPY ${DLL} DESTINATION ${FOLDER})
set(machine x86_64)
set(safe_handlers "")
if(BITS EQUAL 32)
    set(machine i686)
    set(safe_handlers /safeseh)
endif()
execute_process(COMMAND ${CLANG} --driver-mode=cl --target=${machine}-pc-windows-msvc /Gz /O2 /GS- /W4 /WX /c
                        /clang:-ffreestanding /I${INCLUDE} /Fo${FOLDER}/foreign.obj -- ${SOURCE}/foreign.c
                COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${LLD_LINK} /entry:start /subsystem:console /nodefaultlib ${safe_handlers}
                        /out:${FOLDER}/foreign.exe ${FOLDER}/foreign.obj ${IMPORT_LIBRARY}
                COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${EMULATOR} ${FOLDER}/foreign.exe RESULT_VARIABLE result)
if(NOT result EQUAL 58)
    message(SEND_ERROR "foreign.exe ended with ${result}")
endif()
