# SPDX-License-Identifier: GPL-3.0-or-later
# The editor for those who cannot see it well, at all, or cannot use a mouse.
zoravel_test(tst_accessibility zoravel_windowfixture)
zoravel_test(tst_keyboard zoravel_windowfixture)
