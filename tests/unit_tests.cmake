# SPDX-License-Identifier: GPL-3.0-or-later
foreach(test IN ITEMS
        tst_mainwindow
        tst_mainwindow_document
        tst_mainwindow_species
        tst_mainwindow_spectra)
    zoravel_test(${test} zoravel_windowfixture)
endforeach()
