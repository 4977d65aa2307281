# SPDX-License-Identifier: GPL-3.0-or-later
foreach(test IN ITEMS tst_mainwindow)
    zoravel_test(${test} zoravel_app)
endforeach()
