# SPDX-License-Identifier: GPL-3.0-or-later
# The scale of the interface, and tests that look at the built program on a display of their own.
zoravel_test(tst_interfacescale zoravel_app)

# zoravel_gui_test(<name>): the script gui/<name>, which is given the program.
function(zoravel_gui_test name)
    add_test(NAME ${name}
        COMMAND ${CMAKE_CURRENT_LIST_DIR}/gui/${name} $<TARGET_FILE:zoravel-entry-edit>)
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS gui)
    # libxkbcommon-x11 copies texts that end at their known length, not with a zero: no strict checks.
    zoravel_test_environment(${name} "ASAN_OPTIONS=detect_leaks=1:strict_string_checks=0")
    zoravel_display_test_in_locales(${name} ${CMAKE_CURRENT_LIST_DIR}/gui/${name}
        $<TARGET_FILE:zoravel-entry-edit>)
endfunction()

zoravel_gui_test(screenshot_labels)
