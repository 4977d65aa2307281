# SPDX-License-Identifier: GPL-3.0-or-later
zoravel_test(tst_lastfolder zoravel_settings)
foreach(test IN ITEMS
        tst_casnumber tst_filebytes tst_mystandarditemmodel tst_speciesfile tst_speciesmodel)
    zoravel_test(${test} zoravel_species)
endforeach()
foreach(test IN ITEMS
        tst_cleantextedit tst_fieldbinding tst_singlelinetextedit tst_typedalignment
        tst_undoabletext)
    zoravel_test(${test} zoravel_widgets)
endforeach()
# What other systems replace files with, in place of this one's.
zoravel_test(tst_atomicfile_other Qt6::Core)
target_sources(tst_atomicfile_other PRIVATE
    ../files/filebytes.cpp ../files/replacementfile.cpp ../files/atomicfile_other.cpp)
target_include_directories(tst_atomicfile_other PRIVATE ${PROJECT_SOURCE_DIR})
