# SPDX-License-Identifier: GPL-3.0-or-later
zoravel_test(tst_lastfolder zoravel_settings)
foreach(test IN ITEMS
        tst_casnumber tst_filebytes tst_mystandarditemmodel tst_speciesfile tst_speciesmodel)
    zoravel_test(${test} zoravel_species)
endforeach()
foreach(test IN ITEMS
        tst_cleantextedit tst_editorcommit tst_singlelinetextedit tst_undoabletext)
    zoravel_test(${test} zoravel_widgets)
endforeach()
