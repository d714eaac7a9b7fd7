# The packages for Debian, which `cpack -G DEB` makes of these components: dunmora, dunmora-cli and dunmora-eds, the module
# for the desktop's address books. Each has its debug symbols in another package, NAME-dbgsym. The changelog, which is a
# component of its own, is in each of them in Debian's format.
set(DUNMORA_PACKAGES dunmora-cli)
foreach(program IN ITEMS dunmora dunmora-eds)
    if(TARGET ${program})
        list(APPEND DUNMORA_PACKAGES ${program})
    endif()
endforeach()
# The debug symbols are components into which nothing is installed: they are split off from the programs. CPack could do
# that, but the checksums in its packages are those of files in the build folder, whose path would be in them.
set(CPACK_COMPONENTS_ALL ${DUNMORA_PACKAGES})
list(TRANSFORM CPACK_COMPONENTS_ALL APPEND -symbols)
list(PREPEND CPACK_COMPONENTS_ALL ${DUNMORA_PACKAGES})

set(maintainer "${DUNMORA_MAINTAINER}")
if(maintainer STREQUAL "")
    set(maintainer "Dunmora <${DUNMORA_SUPPORT}>")
endif()
set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_NAME dunmora)
set(CPACK_PACKAGE_VENDOR Dunmora)
set(CPACK_PACKAGE_CONTACT "${maintainer}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${DUNMORA_WEBSITE}")
# Each package has its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

# dunmora_package(NAME SUMMARY DESCRIPTION [FIELD VALUE]...)
# Describes a package, and that of its debug symbols. A FIELD is a control field as CPack writes it, such as RECOMMENDS.
macro(dunmora_package name summary description)
    string(TOUPPER ${name} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    # CPack indents it.
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${description}")
    set(fields ${ARGN})
    while(fields)
        list(POP_FRONT fields field value)
        set(CPACK_DEBIAN_${upper}_PACKAGE_${field} "${value}")
    endwhile()

    set(CPACK_DEBIAN_${upper}-SYMBOLS_PACKAGE_NAME ${name}-dbgsym)
    set(CPACK_DEBIAN_${upper}-SYMBOLS_DESCRIPTION "debug symbols for ${name}")
    set(CPACK_DEBIAN_${upper}-SYMBOLS_PACKAGE_SECTION debug)
    set(CPACK_DEBIAN_${upper}-SYMBOLS_PACKAGE_DEPENDS "${name} (= ${PROJECT_VERSION})")
    set(CPACK_DEBIAN_${upper}-SYMBOLS_PACKAGE_SHLIBDEPS OFF)
endmacro()

string(CONCAT what
    "Dunmora finds people who are in an address book more than once, proposes\n"
    "which copies to delete, and deletes the ones that the user checks. Every\n"
    "byte of an address book that does not belong to a deleted person stays as\n"
    "it was, and deleted people can be put back.\n\n")
# The module and the programs call each other through C++ classes, so they must be of one version. A program looks for
# the module when it runs, so neither package depends on the other.
set(other_modules "dunmora-eds (<< ${PROJECT_VERSION}), dunmora-eds (>> ${PROJECT_VERSION})")
# xdg-utils opens the guide and web pages.
dunmora_package(dunmora
    "find and delete duplicated people in an address book"
    "${what}This package contains the application with windows. It opens vCard files,\nfolders of them and, with dunmora-eds, the desktop's own address books."
    RECOMMENDS "dunmora-eds (= ${PROJECT_VERSION}), hicolor-icon-theme, xdg-utils"
    BREAKS "${other_modules}")
# It does not recommend the module, with which a server would get GNOME's libraries.
dunmora_package(dunmora-cli
    "find and delete duplicated people in an address book (terminal)"
    "${what}This package contains the terminal program, which needs no desktop. It opens\nvCard files, folders of them and, with dunmora-eds, the desktop's own address\nbooks."
    SUGGESTS "dunmora-eds (= ${PROJECT_VERSION})"
    BREAKS "${other_modules}")
# The service with the address books comes with the desktops that use it.
dunmora_package(dunmora-eds
    "desktop address books for Dunmora"
    "${what}This package contains the module with which dunmora and dunmora-cli open the\naddress books of Evolution Data Server, where GNOME and other desktops keep\nthem."
    SUGGESTS evolution-data-server
    ENHANCES "dunmora, dunmora-cli")

# What only Debian wants in a package: see the script.
set(DUNMORA_DEB_FILES ${PROJECT_BINARY_DIR}/deb)
if(DUNMORA_LICENSE STREQUAL "")
    set(license "No licence has been chosen for Dunmora yet: no rights are granted here.")
else()
    set(license "License: ${DUNMORA_LICENSE}")
endif()
configure_file(packaging/deb/copyright.in ${DUNMORA_DEB_FILES}/copyright @ONLY)
configure_file(cmake/PackageDates.cmake.in ${DUNMORA_DEB_FILES}/PackageDates.cmake @ONLY)
configure_file(cmake/CompleteDebs.cmake.in ${DUNMORA_DEB_FILES}/CompleteDebs.cmake @ONLY)
set(CPACK_PROJECT_CONFIG_FILE ${DUNMORA_DEB_FILES}/PackageDates.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${DUNMORA_DEB_FILES}/CompleteDebs.cmake)

include(CPack)
