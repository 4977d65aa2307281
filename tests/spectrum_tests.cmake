# SPDX-License-Identifier: GPL-3.0-or-later
foreach(test IN ITEMS
        tst_pointeditor tst_spectrummodel tst_spectrumwindow tst_spectrumchartview)
    zoravel_test(${test} zoravel_spectrumwindow)
endforeach()
foreach(test IN ITEMS tst_assaved tst_axisticks tst_points)
    zoravel_test(${test} zoravel_spectrum)
endforeach()
