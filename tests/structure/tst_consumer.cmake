# SPDX-License-Identifier: GPL-3.0-or-later
# Checks that a project that takes this one in by add_subdirectory links the resources, and builds neither
# tests nor benchmarks: cmake -DSOURCE=<consumer> -DBUILD=<folder> -P tst_consumer.cmake
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${BUILD})
execute_process(COMMAND ${CMAKE_COMMAND} -G Ninja -S ${SOURCE} -B ${BUILD}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${BUILD} --target consumer -- -t commands consumer
    OUTPUT_VARIABLE commands COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "[^\n]*-o consumer[^\n]*" link "${commands}")
if(NOT link MATCHES "qrc_resources\\.cpp\\.o")
    message(FATAL_ERROR "the resources are not linked: ${link}")
endif()
if(EXISTS ${BUILD}/zoravel/tests OR EXISTS ${BUILD}/zoravel/benchmarks)
    message(FATAL_ERROR "tests or benchmarks are built for another project")
endif()
