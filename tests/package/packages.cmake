# SPDX-License-Identifier: BSD-2-Clause
# The packages, each unpacked into an empty root, serve strangers: .deb, or on Windows a zip.
# BUILD; what use.cmake asks for
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/use.cmake)

file(REMOVE_RECURSE ${FOLDER})
set(root "${FOLDER}/empty root")
file(MAKE_DIRECTORY ${root})
cmake_path(GET CMAKE_COMMAND PARENT_PATH programs)
run_quietly(${programs}/cpack --config ${BUILD}/CPackConfig.cmake -C ${CONFIG} -B ${FOLDER})

file(GLOB packages ${FOLDER}/*.zip)
if(packages)
    cmake_path(GET packages STEM LAST_ONLY name)
    file(ARCHIVE_EXTRACT INPUT ${packages} DESTINATION ${root})
    use_installation(${root}/${name})
    return()
endif()

find_program(DPKG_DEB dpkg-deb)
if(NOT DPKG_DEB)
    message("SKIPPED: no dpkg-deb here")
    return()
endif()
foreach(name IN ITEMS libpxk2 libpxk-dev libpxk-doc)
    file(GLOB package ${FOLDER}/${name}_${VERSION}_*.deb)
    run_quietly(${DPKG_DEB} -x ${package} ${root})
endforeach()
use_installation(${root}/usr)
