# SPDX-License-Identifier: GPL-3.0-or-later
# The program's bundle and its icon.
set(bundle_icon ${PROJECT_SOURCE_DIR}/resources/zoravel.icns)
target_sources(zoravel-entry-edit PRIVATE ${bundle_icon})
set_source_files_properties(${bundle_icon} TARGET_DIRECTORY zoravel-entry-edit
    PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
set_target_properties(zoravel-entry-edit PROPERTIES
    MACOSX_BUNDLE ON
    MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_SOURCE_DIR}/macos/Info.plist.in)
