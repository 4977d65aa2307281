# SPDX-License-Identifier: GPL-3.0-or-later
# Tests of what is installed and packaged. They use this build's programs; one for the sanitizers is not
# what is installed.
add_test(NAME answers_without_display
    COMMAND ${CMAKE_CURRENT_LIST_DIR}/package/answers_without_display
        $<TARGET_FILE:zoravel-entry-edit> ${PROJECT_VERSION})
zoravel_test_environment(answers_without_display)

if(ZORAVEL_SANITIZE OR NOT ZORAVEL_INSTALL OR NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
    return()
endif()

set(zoravel_packages ${PROJECT_BINARY_DIR}/packages)

# zoravel_package_test(<name> [<argument>...]): the script package/<name>, which is given these.
function(zoravel_package_test name)
    add_test(NAME ${name} COMMAND ${CMAKE_CURRENT_LIST_DIR}/package/${name} ${ARGN})
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS package SKIP_RETURN_CODE 77)
    zoravel_test_environment(${name})
endfunction()

zoravel_package_test(installed_tree ${PROJECT_BINARY_DIR})
zoravel_package_test(desktop_files ${PROJECT_BINARY_DIR})
zoravel_package_test(manual_pages ${PROJECT_BINARY_DIR})
zoravel_package_test(file_type ${PROJECT_BINARY_DIR})
zoravel_package_test(versions_agree ${PROJECT_BINARY_DIR} ${PROJECT_VERSION})
zoravel_package_test(debian_package ${PROJECT_BINARY_DIR} ${zoravel_packages})
zoravel_package_test(installed_package ${zoravel_packages})
# Builds the programs once more, as packages are built.
add_test(NAME hardened CONFIGURATIONS thorough
    COMMAND ${CMAKE_CURRENT_LIST_DIR}/package/hardened --build ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/hardened)
set_tests_properties(hardened PROPERTIES TIMEOUT 3600 LABELS package)
set_tests_properties(debian_package PROPERTIES FIXTURES_SETUP zoravel_packages)
set_tests_properties(installed_package PROPERTIES FIXTURES_REQUIRED zoravel_packages RUN_SERIAL TRUE TIMEOUT 600)
