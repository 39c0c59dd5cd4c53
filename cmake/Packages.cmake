# The Debian packages: "shotly", and "shotly-webengine" with the module of the web engine, without which the program
# shows pages in a plain view. scripts/package.sh builds both.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR})
set(CPACK_PACKAGE_NAME shotly)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${SHOTLY_PACKAGE_RELEASE})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${SHOTLY_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/DropLdconfig.cmake)
set(own_version "${PROJECT_VERSION}-${SHOTLY_PACKAGE_RELEASE}")

set(CPACK_COMPONENTS_ALL shotly)
set(CPACK_DEBIAN_SHOTLY_PACKAGE_NAME shotly)
set(CPACK_DEBIAN_SHOTLY_PACKAGE_SECTION graphics)
# The icons are SVG files, which Qt reads by a plug-in that no library asks for.
set(CPACK_DEBIAN_SHOTLY_PACKAGE_DEPENDS libqt6svg6)
set(CPACK_DEBIAN_SHOTLY_PACKAGE_RECOMMENDS
    "shotly-webengine (= ${own_version}), hunspell-en-us | hunspell-dictionary, xdg-utils, fonts-liberation")
set(CPACK_DEBIAN_SHOTLY_PACKAGE_SUGGESTS "libreoffice-writer, xdg-desktop-portal, gimp | kolourpaint | mtpaint")
set(CPACK_COMPONENT_SHOTLY_DESCRIPTION "turn a demonstration on screen into a step-by-step document
Name a project and show how something is done: every mouse click in any
program takes a snapshot. When you stop, the pointer is drawn where each
click fell and every snapshot becomes a page, to which you add a title and
notes. From the pages Shotly generates a guide in HTML, as a Word document
and as PDF, with a page of contents. It needs no office suite for that.

Snapshots are edited in a viewer with text, lines and boxes and in a paint
editor. Recording needs a session that uses X11.")

if(TARGET shotly_webengine)
    list(APPEND CPACK_COMPONENTS_ALL webengine)
    set(CPACK_DEBIAN_WEBENGINE_PACKAGE_NAME shotly-webengine)
    set(CPACK_DEBIAN_WEBENGINE_PACKAGE_SECTION graphics)
    set(CPACK_DEBIAN_WEBENGINE_PACKAGE_DEPENDS "shotly (= ${own_version})")
    set(CPACK_DEBIAN_WEBENGINE_PACKAGE_ENHANCES shotly)
    set(CPACK_COMPONENT_WEBENGINE_DESCRIPTION "browser of the step-by-step documents that Shotly makes
Shotly turns a demonstration on screen into a step-by-step document. With
this package it shows the guides that it has made, and its help, in a
browser of its own that uses the web engine of Qt. Without it pages are
shown as plain text with pictures.")
endif()
include(CPack)
