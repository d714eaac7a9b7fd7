# Writes what a desktop and its software centre read about the program into the folder DUNMORA_DESKTOP_FILES: the menu
# entry and the metainfo. It is also a script, so that tests can try other settings:
# cmake -DDUNMORA_APP_ID=com.example.app -DDUNMORA_DESKTOP_FILES=FOLDER ... -P cmake/DesktopFiles.cmake
cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH source)
include(${CMAKE_CURRENT_LIST_DIR}/ReadReleases.cmake)
if(NOT DUNMORA_CHANGELOG)
    set(DUNMORA_CHANGELOG ${source}/CHANGELOG.md)
endif()

configure_file(${source}/packaging/dunmora.desktop.in ${DUNMORA_DESKTOP_FILES}/${DUNMORA_APP_ID}.desktop @ONLY)

# The metainfo has no element for what nobody has decided.
set(licenses "")
if(NOT "${DUNMORA_METADATA_LICENSE}" STREQUAL "")
    string(APPEND licenses "\n  <metadata_license>${DUNMORA_METADATA_LICENSE}</metadata_license>")
endif()
if(NOT "${DUNMORA_LICENSE}" STREQUAL "")
    string(APPEND licenses "\n  <project_license>${DUNMORA_LICENSE}</project_license>")
endif()

# Software centres want web sites with HTTPS.
set(homepage "")
if("${DUNMORA_WEBSITE}" MATCHES "^https://")
    dunmora_xml_text(address "${DUNMORA_WEBSITE}")
    set(homepage "\n  <url type=\"homepage\">${address}</url>")
endif()

# dunmora_screenshot(FILE CAPTION [ATTRIBUTES])
# Appends a picture of docs/screenshots. All that are shown are of the main window, which has this size in them.
function(dunmora_screenshot file caption)
    dunmora_xml_text(address "${DUNMORA_SCREENSHOTS}/${file}")
    string(APPEND screenshots
        "\n    <screenshot${ARGN}>\n      <caption>${caption}</caption>"
        "\n      <image type=\"source\" width=\"1112\" height=\"643\">${address}</image>\n    </screenshot>")
    set(screenshots "${screenshots}" PARENT_SCOPE)
endfunction()
set(screenshots "")
if(NOT "${DUNMORA_SCREENSHOTS}" STREQUAL "")
    dunmora_screenshot(main-light.png "Duplicated people in groups, with the copies to delete checked" " type=\"default\"")
    dunmora_screenshot(details-light.png "The details of a copy")
    dunmora_screenshot(main-dark.png "The same window on a dark desktop")
    set(screenshots "\n  <screenshots>${screenshots}\n  </screenshots>")
endif()

dunmora_read_releases(releases ${DUNMORA_CHANGELOG})
configure_file(${source}/packaging/dunmora.metainfo.xml.in
    ${DUNMORA_DESKTOP_FILES}/${DUNMORA_APP_ID}.metainfo.xml @ONLY)
if(NOT CMAKE_SCRIPT_MODE_FILE)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${DUNMORA_CHANGELOG})
endif()
