# SPDX-License-Identifier: GPL-3.0-or-later
# Where things are installed, and the packages made of them. Each program is a component, and each
# component a Debian package of its own:
#
#   component  package             what it is
#   editor     zoravel-entry-edit  the desktop editor
#   cli        zoravel             the program for terminals, which needs no display
#
# A component has a package as soon as something is installed with its name.
include(GNUInstallDirs)

# The editor's name for desktops: of its desktop entry, its metainfo and its windows.
set(ZORAVEL_DESKTOP_ID org.zoravel.entryedit)
# Metainfo must have an address. This one is reserved for examples and leads nowhere; a publisher of
# the program sets another. Where an address is optional, the reserved one is left out.
set(ZORAVEL_HOMEPAGE "https://zoravel.example" CACHE STRING
    "Address under which this source tree is published, for software centres; their pictures are under it")

# The editor's translations, and the way to them from the folder of its program.
if(WIN32)
    set(ZORAVEL_TRANSLATIONS_DIR translations)
elseif(APPLE)
    set(ZORAVEL_TRANSLATIONS_DIR zoravel-entry-edit.app/Contents/Resources/translations)
else()
    set(ZORAVEL_TRANSLATIONS_DIR ${CMAKE_INSTALL_DATADIR}/zoravel-entry-edit/translations)
endif()
if(APPLE)
    set(ZORAVEL_TRANSLATIONS_FROM_PROGRAM ../Resources/translations)
else()
    file(RELATIVE_PATH ZORAVEL_TRANSLATIONS_FROM_PROGRAM
        ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_PREFIX}/${ZORAVEL_TRANSLATIONS_DIR})
endif()

set(zoravel_package_editor zoravel-entry-edit)
set(zoravel_package_cli zoravel)

# zoravel_install_documents(<component>): the licence, the changes and the other files of every
# package.
function(zoravel_install_documents component)
    set(package ${zoravel_package_${component}})
    set(folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package})
    if(UNIX AND NOT APPLE)
        set(made ${PROJECT_BINARY_DIR}/packaging/${package})
        configure_file(${PROJECT_SOURCE_DIR}/packaging/debian/changelog.in ${made}/changelog.Debian @ONLY)
        configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${made}/changelog COPYONLY)
        zoravel_install_compressed(${made}/changelog.Debian ${folder} ${component})
        zoravel_install_compressed(${made}/changelog ${folder} ${component})
        install(FILES ${PROJECT_SOURCE_DIR}/packaging/debian/copyright
            DESTINATION ${folder} COMPONENT ${component})
        if(EXISTS ${PROJECT_SOURCE_DIR}/packaging/debian/${package}.lintian-overrides)
            install(FILES ${PROJECT_SOURCE_DIR}/packaging/debian/${package}.lintian-overrides
                DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides RENAME ${package}
                COMPONENT ${component})
        endif()
    else()
        install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/CHANGELOG.md
            DESTINATION . COMPONENT ${component})
    endif()
endfunction()

# zoravel_install_manual(<file> <component>): a manual page. The file's suffix is its section; a
# file with an additional ".in" is configured first.
function(zoravel_install_manual file component)
    cmake_path(GET file FILENAME name)
    string(REGEX REPLACE "\\.in$" "" name ${name})
    string(REGEX MATCH "[1-8]$" section ${name})
    set(made ${PROJECT_BINARY_DIR}/packaging/man/${name})
    configure_file(${file} ${made} @ONLY)
    zoravel_install_compressed(${made} ${CMAKE_INSTALL_MANDIR}/man${section} ${component})
endfunction()

# zoravel_install_compressed(<file> <folder> <component>): the file as .gz; the same file gives the
# same bytes.
function(zoravel_install_compressed file folder component)
    find_program(ZORAVEL_GZIP gzip REQUIRED)
    cmake_path(GET file FILENAME name)
    execute_process(COMMAND ${ZORAVEL_GZIP} -9nkf ${file} COMMAND_ERROR_IS_FATAL ANY)
    install(FILES ${file}.gz DESTINATION ${folder} COMPONENT ${component})
endfunction()
