# SPDX-License-Identifier: GPL-3.0-or-later
foreach(test IN ITEMS
        tst_mainwindow
        tst_mainwindow_database
        tst_mainwindow_document
        tst_mainwindow_formatting
        tst_mainwindow_image
        tst_mainwindow_navigation
        tst_mainwindow_species
        tst_mainwindow_spectra)
    zoravel_test(${test} zoravel_windowfixture)
endforeach()
zoravel_test(tst_downloadnotice zoravel_windowfixture zoravel_samplepictures)
foreach(test IN ITEMS tst_mainwindow_image tst_downloadnotice)
    target_sources(${test} PRIVATE support/httpsservice.cpp support/httpsservice.h)
    target_link_libraries(${test} PRIVATE Qt6::Network)
endforeach()

zoravel_test(tst_badmass zoravel_windowfixture)
zoravel_test(tst_commandline zoravel_app)
zoravel_test(tst_locale zoravel_windowfixture)
zoravel_test(tst_createdatabase zoravel_databasedialog)
zoravel_test(tst_databasecompiler zoravel_database)

zoravel_test(tst_jsonfolder zoravel_files)
foreach(locale IN ITEMS C en_US.UTF-8)
    set(test tst_jsonfolder_${locale})
    add_test(NAME ${test} COMMAND tst_jsonfolder -o -,txt)
    zoravel_test_environment(${test} "QT_QPA_PLATFORM=offscreen" "LC_ALL=${locale}")
endforeach()

add_test(NAME tst_layering
    COMMAND ${ZORAVEL_PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/tst_layering.py ${PROJECT_SOURCE_DIR}
        ${PROJECT_BINARY_DIR}/layers)
add_test(NAME tst_consumer
    COMMAND ${CMAKE_COMMAND} -DSOURCE=${CMAKE_CURRENT_SOURCE_DIR}/consumer
        -DBUILD=${CMAKE_CURRENT_BINARY_DIR}/consumer
        -P ${CMAKE_CURRENT_SOURCE_DIR}/tst_consumer.cmake)
