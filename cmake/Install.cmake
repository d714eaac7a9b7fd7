# What is installed. On a Mac that is the bundle, which contains both programs.
if(APPLE AND TARGET dunmora)
    dunmora_install_mac_bundle(dunmora dunmora-cli)
    return()
endif()

dunmora_install(${CMAKE_INSTALL_BINDIR} dunmora-cli TARGETS dunmora-cli)
if(TARGET dunmora-eds)
    dunmora_install(${CMAKE_INSTALL_LIBDIR}/dunmora dunmora-eds TARGETS dunmora-eds)
endif()
dunmora_install(${CMAKE_INSTALL_DOCDIR} dunmora-doc FILES CHANGELOG.md)

if(TARGET dunmora)
    dunmora_install(${CMAKE_INSTALL_BINDIR} dunmora TARGETS dunmora)
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
