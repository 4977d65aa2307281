# SPDX-License-Identifier: GPL-3.0-or-later
# The editor for those who cannot see it well, at all, or cannot use a mouse.
zoravel_test(tst_accessibility zoravel_windowfixture)
zoravel_test(tst_keyboard zoravel_windowfixture)
zoravel_test(tst_spectrumtabs zoravel_windowfixture)
zoravel_test(tst_pointmarks zoravel_spectrumwindow)

add_test(NAME screen_reader
    COMMAND ${CMAKE_CURRENT_LIST_DIR}/gui/screen_reader $<TARGET_FILE:zoravel-entry-edit>)
set_tests_properties(screen_reader PROPERTIES TIMEOUT 400 LABELS gui)
zoravel_test_environment(screen_reader "ASAN_OPTIONS=detect_leaks=1:strict_string_checks=0")

# The looks on screens of the usual densities.
zoravel_test(tst_looks zoravel_windowfixture)
foreach(scale IN ITEMS 1.5 2)
    add_test(NAME tst_looks_${scale} COMMAND tst_looks -o -,txt)
    set_tests_properties(tst_looks_${scale} PROPERTIES TIMEOUT 600)
    zoravel_test_environment(tst_looks_${scale} "QT_QPA_PLATFORM=offscreen" "QT_SCALE_FACTOR=${scale}")
endforeach()
# The ratios that the program makes of 1.5 and 2.
foreach(ratio IN ITEMS 1.275 1.7)
    add_test(NAME tst_looks_image_${ratio}
        COMMAND tst_looks -o -,txt imageLeavesItsBorder imageIsAsSharpAsTheScreen)
    zoravel_test_environment(tst_looks_image_${ratio} "QT_QPA_PLATFORM=offscreen" "QT_SCALE_FACTOR=${ratio}")
endforeach()
