# SPDX-License-Identifier: GPL-3.0-or-later
# Makes packages of the components with CPack; included after every install rule. scripts/package
# calls it.
get_cmake_property(zoravel_components COMPONENTS)
list(REMOVE_ITEM zoravel_components Unspecified)

set(CPACK_COMPONENTS_ALL ${zoravel_components})
set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_FILE_NAME
    ${PROJECT_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_VENDOR "ZORAVEL maintainers")
set(CPACK_PACKAGE_CONTACT "ZORAVEL maintainers <maintainers@zoravel.example>")
if(NOT ZORAVEL_HOMEPAGE MATCHES "\\.example$")
    set(CPACK_PACKAGE_HOMEPAGE_URL ${ZORAVEL_HOMEPAGE})
endif()
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each component's description begins with its own
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_EXECUTABLES zoravel-entry-edit "ZORAVEL Entry Edit")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

if(WIN32)
    set(CPACK_GENERATOR ZIP)
elseif(APPLE)
    set(CPACK_GENERATOR DragNDrop)
else()
    set(CPACK_GENERATOR DEB TGZ)
endif()

# One archive with all programs, and a Debian package for each.
set(CPACK_ARCHIVE_COMPONENT_INSTALL OFF)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${CPACK_PACKAGE_CONTACT})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)

set(CPACK_DEBIAN_EDITOR_PACKAGE_NAME ${zoravel_package_editor})
set(CPACK_DEBIAN_EDITOR_PACKAGE_SECTION science)
# A plug-in reads the icons, .icns and other pictures: no link shows it.
set(CPACK_DEBIAN_EDITOR_PACKAGE_DEPENDS "libqt6svg6, qt6-image-formats-plugins")
# For structure images by https, and for desktops without X.
set(CPACK_DEBIAN_EDITOR_PACKAGE_RECOMMENDS "ca-certificates, qt6-wayland")
set(CPACK_COMPONENT_EDITOR_DESCRIPTION
"editor for entries of photoionisation spectra
The entries of a reference collection of molecular photoionisation spectra
are prepared with this program: the profile of a species, its spectra with
their sources and points, and its structure image. An entry is one file;
many are compiled into one database file.

Points are edited beside a live chart, normalised and resampled; spectra are
exchanged as files and through the clipboard.")

set(CPACK_DEBIAN_CLI_PACKAGE_NAME ${zoravel_package_cli})
set(CPACK_DEBIAN_CLI_PACKAGE_SECTION science)
# Plots have letters, but a machine without a display may have no font.
set(CPACK_DEBIAN_CLI_PACKAGE_RECOMMENDS fonts-dejavu-core)
set(CPACK_COMPONENT_CLI_DESCRIPTION
"terminal program for entries of photoionisation spectra
The entries of a reference collection of molecular photoionisation spectra
are listed, checked, compared, converted, plotted and compiled into one
database file with this program, which needs no display.")

include(CPack)
