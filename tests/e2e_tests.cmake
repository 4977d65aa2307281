# SPDX-License-Identifier: GPL-3.0-or-later
# Tests that use the built program as a person does, on a display of their own.

# Another program, from which files are dragged.
add_executable(dragsource gui/dragsource.cpp)
target_link_libraries(dragsource PRIVATE Qt6::Widgets zoravel_options)

# zoravel_use_test(<name> [<argument>...]): the script gui/<name>, which is given the program and these.
function(zoravel_use_test name)
    add_test(NAME ${name}
        COMMAND ${CMAKE_CURRENT_LIST_DIR}/gui/${name} $<TARGET_FILE:zoravel-entry-edit> ${ARGN})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600 LABELS gui)
    # libxkbcommon-x11 copies texts that end at their known length, not with a zero: no strict checks.
    zoravel_test_environment(${name} "ASAN_OPTIONS=detect_leaks=1:strict_string_checks=0")
    zoravel_display_test_in_locales(${name} ${CMAKE_CURRENT_LIST_DIR}/gui/${name}
        $<TARGET_FILE:zoravel-entry-edit> ${ARGN})
endfunction()

zoravel_use_test(end_to_end)
zoravel_use_test(drop_files $<TARGET_FILE:dragsource>)
zoravel_use_test(close_and_save)
zoravel_use_test(scale_in_environment)
zoravel_use_test(collection_work)
zoravel_use_test(missing_argument)
zoravel_use_test(focus_returns)
zoravel_use_test(dashed_file)
zoravel_use_test(end_requests)

# The protocol between programs and a desktop's session has a library of its own.
find_package(X11 COMPONENTS ICE SM)
if(TARGET X11::SM AND TARGET X11::ICE)
    add_executable(sessionmanager gui/sessionmanager.cpp)
    target_link_libraries(sessionmanager PRIVATE X11::SM X11::ICE zoravel_options)
    zoravel_use_test(session_end $<TARGET_FILE:sessionmanager>)
endif()

add_test(NAME dark_desktop
    COMMAND ${CMAKE_CURRENT_LIST_DIR}/gui/dark_desktop $<TARGET_FILE:zoravel-entry-edit>)
set_tests_properties(dark_desktop PROPERTIES TIMEOUT 600 LABELS gui)
zoravel_test_environment(dark_desktop "ASAN_OPTIONS=detect_leaks=1:strict_string_checks=0")
