# SPDX-License-Identifier: GPL-3.0-or-later
foreach(test IN ITEMS
        tst_axisticks tst_pointeditor tst_points tst_resaved tst_spectrummodel tst_spectrumwindow
        tst_spectrumchartview)
    zoravel_test(${test} zoravel_spectrum)
endforeach()
