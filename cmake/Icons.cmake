# Draws the program's icon in the sizes that desktops show, where rsvg-convert is installed. Desktops that draw SVG
# themselves need only the SVG.
find_program(DUNMORA_RSVG_CONVERT rsvg-convert DOC "Draws the icon in the sizes that desktops show")
mark_as_advanced(DUNMORA_RSVG_CONVERT)

set(DUNMORA_ICON_FOLDER ${PROJECT_BINARY_DIR}/icons)
set(DUNMORA_ICON_SIZES "")
if(DUNMORA_RSVG_CONVERT)
    set(DUNMORA_ICON_SIZES 16 22 24 32 48 64 128 256 512)
    set(drawing ${PROJECT_SOURCE_DIR}/packaging/dunmora.svg)
    set(pictures "")
    foreach(size IN LISTS DUNMORA_ICON_SIZES)
        set(picture ${DUNMORA_ICON_FOLDER}/${size}.png)
        add_custom_command(OUTPUT ${picture}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${DUNMORA_ICON_FOLDER}
            COMMAND ${DUNMORA_RSVG_CONVERT} --width=${size} --height=${size} --output=${picture} ${drawing}
            DEPENDS ${drawing}
            COMMENT "Drawing the icon with ${size} pixels"
            VERBATIM)
        list(APPEND pictures ${picture})
    endforeach()
    add_custom_target(dunmora_icons ALL DEPENDS ${pictures})
else()
    message(STATUS "rsvg-convert was not found: the icon is installed as SVG only")
endif()
