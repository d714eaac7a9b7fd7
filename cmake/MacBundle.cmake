# How a Mac shows and trusts the program. Its information is written everywhere, so that it can be
# checked where there is no Mac.
set(DUNMORA_BUNDLE_NAME Dunmora)
set(DUNMORA_BUNDLE_IDENTIFIER "com.example.dunmora" CACHE STRING
    "On a Mac: the bundle's identifier, which is also the name of its user defaults")
set(DUNMORA_CODESIGN_IDENTITY "-" CACHE STRING
    "On a Mac: who signs the bundle; - is nobody, good enough for the Mac that it was built on")

# The service is asked over plain HTTP, which a Mac allows only to hosts that are named for it.
set(DUNMORA_TRANSPORT_SECURITY "")
if(DUNMORA_UPDATE_HOST)
    string(REGEX REPLACE ":[0-9]+$" "" host "${DUNMORA_UPDATE_HOST}")
    string(CONCAT DUNMORA_TRANSPORT_SECURITY
        "\n\t<key>NSAppTransportSecurity</key>\n\t<dict>\n"
        "\t\t<key>NSExceptionDomains</key>\n\t\t<dict>\n"
        "\t\t\t<key>${host}</key>\n\t\t\t<dict>\n"
        "\t\t\t\t<key>NSExceptionAllowsInsecureHTTPLoads</key>\n\t\t\t\t<true/>\n"
        "\t\t\t</dict>\n\t\t</dict>\n\t</dict>")
endif()
set(DUNMORA_INFO_PLIST ${PROJECT_BINARY_DIR}/Info.plist)
configure_file(${PROJECT_SOURCE_DIR}/packaging/Info.plist.in ${DUNMORA_INFO_PLIST} @ONLY)

# dunmora_mac_bundle(WINDOWED TERMINAL)
# Makes the program with windows a bundle, puts the one for terminals beside it, where it has the
# same identity and so the same preferences and permissions, and signs both.
function(dunmora_mac_bundle windowed terminal)
    set_target_properties(${windowed} PROPERTIES
        MACOSX_BUNDLE ON
        MACOSX_BUNDLE_INFO_PLIST ${DUNMORA_INFO_PLIST}
        OUTPUT_NAME ${DUNMORA_BUNDLE_NAME})
    set(entitlements ${PROJECT_SOURCE_DIR}/packaging/dunmora.entitlements)
    set(sign codesign --force --sign "${DUNMORA_CODESIGN_IDENTITY}" --entitlements ${entitlements})
    if(NOT DUNMORA_CODESIGN_IDENTITY STREQUAL "-")
        # Others' Macs want it. Without an identity it would keep Qt out, which is signed by others.
        list(APPEND sign --options runtime)
    endif()
    set(programs $<TARGET_BUNDLE_CONTENT_DIR:${windowed}>/MacOS)
    add_dependencies(${windowed} ${terminal})
    add_custom_command(TARGET ${windowed} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:${terminal}> ${programs}
        COMMAND ${sign} ${programs}/$<TARGET_FILE_NAME:${terminal}>
        COMMAND ${sign} $<TARGET_BUNDLE_DIR:${windowed}>
        VERBATIM)
endfunction()
