# SPDX-License-Identifier: GPL-3.0-or-later
# The template of translations, and a translation of every text into itself in angle quotes.
add_test(NAME translation_template
    COMMAND ${CMAKE_CURRENT_LIST_DIR}/translation/template_is_current
        ${PROJECT_SOURCE_DIR} ${ZORAVEL_LUPDATE_COMMAND})
zoravel_test_environment(translation_template)

set(pseudo ${CMAKE_CURRENT_BINARY_DIR}/translations/zoravel_de)
set(template ${PROJECT_SOURCE_DIR}/translations/zoravel.ts)
add_test(NAME make_pseudo_translation
    COMMAND ${CMAKE_COMMAND} -DTEMPLATE=${template} -DOUTPUT=${pseudo}.ts
        -P ${CMAKE_CURRENT_LIST_DIR}/translation/pseudo.cmake)
add_test(NAME release_pseudo_translation
    COMMAND ${ZORAVEL_LRELEASE} ${pseudo}.ts -qm ${pseudo}.qm)
set_tests_properties(make_pseudo_translation PROPERTIES FIXTURES_SETUP zoravel_pseudo_ts)
set_tests_properties(release_pseudo_translation PROPERTIES
    FIXTURES_SETUP zoravel_pseudo_qm FIXTURES_REQUIRED zoravel_pseudo_ts)

zoravel_test(tst_translation zoravel_windowfixture)
target_compile_definitions(tst_translation PRIVATE
    ZORAVEL_PSEUDO_TRANSLATION_FOLDER="${CMAKE_CURRENT_BINARY_DIR}/translations")
foreach(test IN ITEMS tst_translation tst_translation_de_DE tst_translation_ar_EG)
    if(TEST ${test})
        set_property(TEST ${test} APPEND PROPERTY FIXTURES_REQUIRED zoravel_pseudo_qm)
    endif()
endforeach()
