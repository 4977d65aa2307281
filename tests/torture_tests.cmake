# SPDX-License-Identifier: GPL-3.0-or-later
# The quick parts of the campaigns of scripts/torture.

if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    add_subdirectory(faults)
    # The library that makes calls fail comes first, so that it stands before the C library.
    zoravel_test(tst_savefaults zoravel_faults zoravel_species)
endif()

# zoravel_torture_test(<name>): "torture/<name> --quick", which is given the folder of the build and a
# scratch folder of its own.
function(zoravel_torture_test name)
    set(scratch ${CMAKE_CURRENT_BINARY_DIR}/scratch/${name})
    add_test(NAME torture_${name}
        COMMAND ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/torture/${name} --quick ${CMAKE_BINARY_DIR} ${scratch})
    file(MAKE_DIRECTORY ${scratch})
    set_tests_properties(torture_${name} PROPERTIES TIMEOUT 600 LABELS torture)
    zoravel_test_environment(torture_${name} "QT_QPA_PLATFORM=offscreen")
endfunction()

if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    zoravel_torture_test(10-write-calls)
    zoravel_torture_test(11-write-kills)
    zoravel_torture_test(12-write-places)
    zoravel_torture_test(13-write-sharing)
endif()
zoravel_torture_test(20-monkey)
if(UNIX)
    zoravel_torture_test(40-check-mutations)
endif()
