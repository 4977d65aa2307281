# SPDX-License-Identifier: GPL-3.0-or-later
# The program for terminals: it is installed, and has its package, once it has manual pages (cli/man/*.in,
# configured first) and, beside them, completions for shells (cli/completions/zoravel.bash and _zoravel).
file(GLOB manual_pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/cli/man/*.in)
if(NOT manual_pages)
    return()
endif()
install(TARGETS zoravel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT cli)
zoravel_install_documents(cli)
if(WIN32 OR APPLE)
    return()
endif()
foreach(page IN LISTS manual_pages)
    zoravel_install_manual(${page} cli)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/cli/completions/zoravel.bash
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions RENAME zoravel
    COMPONENT cli OPTIONAL)
install(FILES ${PROJECT_SOURCE_DIR}/cli/completions/_zoravel
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/zsh/vendor-completions COMPONENT cli OPTIONAL)
