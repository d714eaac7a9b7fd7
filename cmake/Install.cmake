# What is installed. On a Mac that is the bundle, which contains both programs.
if(APPLE AND TARGET dunmora)
    dunmora_install_mac_bundle(dunmora dunmora-cli)
    return()
endif()

# zsh looks in site-functions below its own prefix and /usr/local. Debian's looks in vendor-completions below /usr.
set(DUNMORA_ZSH_FOLDER ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING
    "The folder of zsh's completions, relative to the prefix")

# dunmora_install_program(PROGRAM)
# Installs the program with its manual page and its completions. The shells find these by the program's name.
function(dunmora_install_program program)
    set(completions packaging/completions)
    dunmora_install(${CMAKE_INSTALL_BINDIR} ${program} TARGETS ${program})
    dunmora_install(${CMAKE_INSTALL_MANDIR}/man1 ${program} FILES ${DUNMORA_MANUAL}/man1/${program}.1)
    dunmora_install(${CMAKE_INSTALL_DATADIR}/bash-completion/completions ${program}
        FILES ${completions}/${program}.bash RENAME ${program})
    dunmora_install(${DUNMORA_ZSH_FOLDER} ${program} FILES ${completions}/_${program})
    dunmora_install(${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d ${program} FILES ${completions}/${program}.fish)
endfunction()

dunmora_install_program(dunmora-cli)
if(TARGET dunmora-eds)
    dunmora_install(${CMAKE_INSTALL_LIBDIR}/dunmora dunmora-eds TARGETS dunmora-eds)
endif()
dunmora_install(${CMAKE_INSTALL_DOCDIR} dunmora-doc FILES CHANGELOG.md)

if(TARGET dunmora)
    dunmora_install_program(dunmora)
    dunmora_install(${CMAKE_INSTALL_DATADIR}/applications dunmora
        FILES ${DUNMORA_DESKTOP_FILES}/${DUNMORA_APP_ID}.desktop)
    dunmora_install(${CMAKE_INSTALL_DATADIR}/metainfo dunmora
        FILES ${DUNMORA_DESKTOP_FILES}/${DUNMORA_APP_ID}.metainfo.xml)

    include(cmake/Icons.cmake)
    set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
    dunmora_install(${icons}/scalable/apps dunmora FILES packaging/dunmora.svg RENAME ${DUNMORA_APP_ID}.svg)
    dunmora_install(${icons}/symbolic/apps dunmora
        FILES packaging/dunmora-symbolic.svg RENAME ${DUNMORA_APP_ID}-symbolic.svg)
    foreach(size IN LISTS DUNMORA_ICON_SIZES)
        dunmora_install(${icons}/${size}x${size}/apps dunmora
            FILES ${DUNMORA_ICON_FOLDER}/${size}.png RENAME ${DUNMORA_APP_ID}.png)
    endforeach()

    # With the program, because its Help menu opens it.
    if(TARGET guide)
        dunmora_install(${CMAKE_INSTALL_DOCDIR}/guide dunmora FILES ${DUNMORA_GUIDE_PAGES})
        dunmora_install(${CMAKE_INSTALL_DOCDIR}/guide/pictures dunmora FILES ${DUNMORA_GUIDE_PICTURES})
    endif()
endif()
