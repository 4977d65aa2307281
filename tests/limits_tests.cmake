# SPDX-License-Identifier: GPL-3.0-or-later
# What files of strangers may do and cost.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux") # watches files and measures processes
    zoravel_test(tst_hostilefiles zoravel_windowfixture)
    target_link_libraries(tst_hostilefiles PRIVATE Qt6::Network)
    zoravel_test(tst_picturelimits zoravel_species)
endif()
