# SPDX-License-Identifier: GPL-3.0-or-later
# The documentation: its links, the schemas of the file formats, its pictures.

# The system's own, for which the packages of scripts/install-packages are.
find_program(ZORAVEL_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH DOC "Python 3 with jsonschema")
find_program(ZORAVEL_PYTHON python3 REQUIRED)

# Reads files into the editor and writes them again.
add_executable(resave schema/resave.cpp)
target_link_libraries(resave PRIVATE zoravel_app zoravel_options)

add_test(NAME tst_schemas
    COMMAND ${ZORAVEL_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/schema/tst_schemas.py $<TARGET_FILE:resave>)
set_tests_properties(tst_schemas PROPERTIES TIMEOUT 600)
zoravel_test_environment(tst_schemas "QT_QPA_PLATFORM=offscreen")

add_test(NAME tst_pages COMMAND ${ZORAVEL_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/pages/tst_pages.py)
zoravel_test_environment(tst_pages "PYTHONDONTWRITEBYTECODE=1")

# Takes the pictures of the documentation for scripts/screenshots.
add_executable(screenshots screenshots/screenshots.cpp screenshots/scene.cpp screenshots/scene.h)
target_include_directories(screenshots PRIVATE ${CMAKE_CURRENT_LIST_DIR})
target_link_libraries(screenshots PRIVATE zoravel_app Qt6::Test zoravel_options)

add_test(NAME pictures
    COMMAND ${CMAKE_CURRENT_LIST_DIR}/screenshots/compare $<TARGET_FILE:screenshots>)
set_tests_properties(pictures PROPERTIES TIMEOUT 300 LABELS gui)
zoravel_test_environment(pictures "ASAN_OPTIONS=detect_leaks=1:strict_string_checks=0")
