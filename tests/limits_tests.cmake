# SPDX-License-Identifier: GPL-3.0-or-later
# What files of strangers may do and cost.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux") # watches files and measures processes
    zoravel_test(tst_hostilefiles zoravel_windowfixture)
    target_link_libraries(tst_hostilefiles PRIVATE Qt6::Network)
    zoravel_test(tst_picturelimits zoravel_pictures zoravel_samplepictures)
    # The sanitizer holds back less of what is freed: the memory that is taken is measured.
    zoravel_test_environment(tst_picturelimits "QT_QPA_PLATFORM=offscreen"
        "ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:quarantine_size_mb=16")
endif()

add_library(zoravel_samplepictures STATIC
    support/samplebitmaps.cpp support/samplebitmaps.h
    support/samplepictures.cpp support/samplepictures.h)
target_include_directories(zoravel_samplepictures PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(zoravel_samplepictures PUBLIC Qt6::Gui PRIVATE zoravel_options)

# An image plugin of somebody else, in a folder of plugins of its own.
add_library(strangerplugin MODULE strangerplugin/strangerplugin.cpp)
target_link_libraries(strangerplugin PRIVATE Qt6::Gui zoravel_options)
set_target_properties(strangerplugin PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/strangerplugins/imageformats)

zoravel_test(tst_pictureformats zoravel_pictures zoravel_samplepictures)
add_dependencies(tst_pictureformats strangerplugin)
target_compile_definitions(tst_pictureformats PRIVATE
    STRANGER_PLUGINS="${CMAKE_CURRENT_BINARY_DIR}/strangerplugins")
