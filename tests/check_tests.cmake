# SPDX-License-Identifier: GPL-3.0-or-later
# The library of checks.
foreach(test IN ITEMS
        tst_checks tst_checktexts tst_composition tst_jsontext tst_markup tst_memberreader tst_molecules)
    zoravel_test(${test} zoravel_check zoravel_widgets)
endforeach()

find_program(ZORAVEL_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH DOC "Python 3 with jsonschema")
add_test(NAME tst_sarif
    COMMAND ${ZORAVEL_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/check/tst_sarif.py $<TARGET_FILE:zoravel>)
zoravel_test_environment(tst_sarif "PYTHONDONTWRITEBYTECODE=1")
