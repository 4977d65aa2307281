# SPDX-License-Identifier: GPL-3.0-or-later
# What desktops read: the entry in the menu, what software centres show, the type of species files, icons;
# and the manual page, the documents and the examples.
set(documents ${CMAKE_INSTALL_DATAROOTDIR}/doc/${zoravel_package_editor})
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${documents} COMPONENT editor)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/examples
    DESTINATION ${documents} COMPONENT editor)
zoravel_install_manual(${CMAKE_CURRENT_SOURCE_DIR}/linux/zoravel-entry-edit.1.in editor)

# zoravel_install_desktop_file(<source> <suffix> <folder>): under the editor's name for desktops.
function(zoravel_install_desktop_file source suffix folder)
    set(made ${PROJECT_BINARY_DIR}/packaging/desktop/${ZORAVEL_DESKTOP_ID}${suffix})
    configure_file(${CMAKE_CURRENT_SOURCE_DIR}/linux/${source} ${made} @ONLY)
    install(FILES ${made} DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/${folder} COMPONENT editor)
endfunction()
zoravel_install_desktop_file(entry-edit.desktop.in .desktop applications)
zoravel_install_desktop_file(entry-edit.metainfo.xml.in .metainfo.xml metainfo)
zoravel_install_desktop_file(species-file.xml.in .xml mime/packages)

set(icons ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor)
foreach(edge IN ITEMS 16 22 24 32 48 64 128 256 512)
    install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/linux/icons/zoravel-${edge}.png
        DESTINATION ${icons}/${edge}x${edge}/apps RENAME ${ZORAVEL_DESKTOP_ID}.png COMPONENT editor)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/resources/zoravel.svg
    DESTINATION ${icons}/scalable/apps RENAME ${ZORAVEL_DESKTOP_ID}.svg COMPONENT editor)
