# SPDX-License-Identifier: GPL-3.0-or-later
# The program's icon and version in the explorer, no console of its own, arguments in UTF-8.
enable_language(RC)
set(resource_script ${PROJECT_BINARY_DIR}/packaging/zoravel-entry-edit.rc)
configure_file(${CMAKE_CURRENT_SOURCE_DIR}/windows/zoravel-entry-edit.rc.in ${resource_script} @ONLY)
target_sources(zoravel-entry-edit PRIVATE ${resource_script}
    ${CMAKE_CURRENT_SOURCE_DIR}/windows/zoravel-entry-edit.manifest)
set_target_properties(zoravel-entry-edit PROPERTIES WIN32_EXECUTABLE ON)
