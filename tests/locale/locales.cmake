# SPDX-License-Identifier: GPL-3.0-or-later
# Tests once more in other locales.

# zoravel_test_in_locale(<test> <locale> <copy> <arguments of add_test>...): a test once more, in one of
# these locales; the variable <copy> gets the name of this test.
function(zoravel_test_in_locale test locale copy)
    string(REGEX REPLACE "\\..*" "" short_locale ${locale})
    set(name ${test}_${short_locale})
    add_test(NAME ${name} ${ARGN})
    get_test_property(${test} TIMEOUT timeout)
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${timeout} FIXTURES_REQUIRED zoravel_locales LABELS locale)
    zoravel_test_environment(${name} "LC_ALL=${locale}" "LANG=${locale}" "LOCPATH=${zoravel_locale_folder}")
    set(${copy} ${name} PARENT_SCOPE)
endfunction()

# zoravel_display_test_in_locales(<test> <command>...): the same for a test that needs a display.
function(zoravel_display_test_in_locales test)
    set(when CONFIGURATIONS thorough)
    if(${test} IN_LIST zoravel_display_tests_in_every_run)
        set(when "")
    endif()
    foreach(locale IN LISTS zoravel_display_locales)
        zoravel_test_in_locale(${test} ${locale} copy COMMAND ${ARGN} ${when})
        set_tests_properties(${copy} PROPERTIES LABELS "gui;locale")
    endforeach()
endfunction()

# One has a comma for the decimal point and dots between thousands, the other has digits of its own and is
# written from right to left. Memory, which the sanitizers look at, does not depend on the locale.
if(NOT ZORAVEL_SANITIZE)
    set(zoravel_locales de_DE.UTF-8 ar_EG.UTF-8)
    set(zoravel_display_locales de_DE.UTF-8)
    set(zoravel_locale_folder ${CMAKE_CURRENT_BINARY_DIR}/locales)
    add_test(NAME make_locales
        COMMAND ${CMAKE_CURRENT_LIST_DIR}/make_locales ${zoravel_locale_folder} ${zoravel_locales})
    set_tests_properties(make_locales PROPERTIES FIXTURES_SETUP zoravel_locales LABELS locale)
endif()

# Tests that need a display take minutes: "ctest -C thorough" runs all of them in their locales, and every
# run those that type numbers, read them and save them.
set(zoravel_display_tests_in_every_run end_to_end collection_work)
