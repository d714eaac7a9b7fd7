# The Mac bundle and its signature. Info.plist is written on every system, so that tests can check it
# without a Mac.
set(DUNMORA_BUNDLE_NAME Dunmora)
# Also the domain of its user defaults. A bundle's identifier has no underscores.
string(REPLACE "_" "-" DUNMORA_BUNDLE_IDENTIFIER "${DUNMORA_APP_ID}")
set(DUNMORA_CODESIGN_IDENTITY "-" CACHE STRING
    "On a Mac: the identity that signs the bundle; - signs ad hoc, enough for the Mac that built it")

# macOS allows plain HTTP, which the update service uses, only to hosts listed in Info.plist.
set(DUNMORA_TRANSPORT_SECURITY "")
if(NOT DUNMORA_UPDATE_HOST STREQUAL "")
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

# The command that signs a program or bundle, whose path follows.
set(DUNMORA_SIGN codesign --force --sign "${DUNMORA_CODESIGN_IDENTITY}"
    --entitlements ${PROJECT_SOURCE_DIR}/packaging/dunmora.entitlements)
if(NOT DUNMORA_CODESIGN_IDENTITY STREQUAL "-")
    # The hardened runtime, which notarisation requires. With an ad hoc signature it would refuse to
    # load Qt, which is signed by somebody else.
    list(APPEND DUNMORA_SIGN --options runtime)
endif()

# dunmora_mac_bundle(WINDOWED TERMINAL)
# Turns the program with windows into a bundle, copies the terminal program into it, where it shares
# the bundle's identifier and so its preferences and permissions, and signs both.
function(dunmora_mac_bundle windowed terminal)
    set_target_properties(${windowed} PROPERTIES
        MACOSX_BUNDLE ON
        MACOSX_BUNDLE_INFO_PLIST ${DUNMORA_INFO_PLIST}
        OUTPUT_NAME ${DUNMORA_BUNDLE_NAME})
    set(programs $<TARGET_BUNDLE_CONTENT_DIR:${windowed}>/MacOS)
    add_dependencies(${windowed} ${terminal})
    if(TARGET guide)
        # Its pages are resources of the bundle, so they must be there when it is signed.
        add_dependencies(${windowed} guide)
    endif()
    add_custom_command(TARGET ${windowed} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:${terminal}> ${programs}
        COMMAND ${DUNMORA_SIGN} ${programs}/$<TARGET_FILE_NAME:${terminal}>
        COMMAND ${DUNMORA_SIGN} $<TARGET_BUNDLE_DIR:${windowed}>
        VERBATIM)
endfunction()

# dunmora_install_mac_bundle(WINDOWED TERMINAL)
# Installs the bundle into the prefix, such as /Applications. Where macdeployqt is installed, it copies Qt and the other
# libraries into it. The copy is signed again, because both change the programs.
function(dunmora_install_mac_bundle windowed terminal)
    set_property(GLOBAL APPEND PROPERTY DUNMORA_INSTALL_FOLDERS ${DUNMORA_BUNDLE_NAME}.app)
    install(TARGETS ${windowed} BUNDLE DESTINATION . COMPONENT dunmora)
    find_program(DUNMORA_MACDEPLOYQT macdeployqt HINTS "${Qt6_DIR}/../../../bin" DOC "Copies Qt into the bundle")
    mark_as_advanced(DUNMORA_MACDEPLOYQT)
    set(DUNMORA_TERMINAL_PROGRAM ${terminal})
    configure_file(${PROJECT_SOURCE_DIR}/cmake/CompleteMacBundle.cmake.in ${PROJECT_BINARY_DIR}/CompleteMacBundle.cmake
        @ONLY)
    install(SCRIPT ${PROJECT_BINARY_DIR}/CompleteMacBundle.cmake COMPONENT dunmora)
endfunction()
