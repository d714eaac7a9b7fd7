# Makes HTML of the user guide in docs/guide: the target guide, if DUNMORA_GUIDE allows it. Sets
#   DUNMORA_GUIDE_FOLDER  where an installed program finds it, relative to the program's own folder
#   DUNMORA_GUIDE_HTML    where the build puts it: beside the programs, or into the Mac's bundle
#   DUNMORA_GUIDE_PAGES   the paths of the pages there, and of their style
#   DUNMORA_GUIDE_PICTURES  the paths of their pictures, which are in the folder pictures beside them
set(DUNMORA_GUIDE AUTO CACHE STRING "Make HTML of the user guide: ON, OFF, or AUTO if cmark-gfm is found")
set_property(CACHE DUNMORA_GUIDE PROPERTY STRINGS AUTO ON OFF)

if(APPLE)
    set(DUNMORA_GUIDE_FOLDER ../Resources/guide)
    set(DUNMORA_GUIDE_HTML
        ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${DUNMORA_BUNDLE_NAME}.app/Contents/Resources/guide)
else()
    # Relative, so that it does not depend on the prefix of the installation.
    file(RELATIVE_PATH DUNMORA_GUIDE_FOLDER
        ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_DOCDIR}/guide)
    set(DUNMORA_GUIDE_HTML ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/guide)
endif()

if(DUNMORA_GUIDE STREQUAL "AUTO")
    find_program(DUNMORA_CMARK cmark-gfm DOC "Makes HTML of the user guide")
elseif(DUNMORA_GUIDE)
    find_program(DUNMORA_CMARK cmark-gfm REQUIRED DOC "Makes HTML of the user guide")
endif()
mark_as_advanced(DUNMORA_CMARK)
if(NOT DUNMORA_GUIDE OR NOT DUNMORA_CMARK)
    message(STATUS "The user guide is not made into HTML, so Help > Dunmora Help will not find it")
    return()
endif()

# In the order of the navigation.
set(pages index open compare propose unique back servers privacy terminal scripts)
# Each in light and in dark.
set(pictures deleted details fields filter guard main update_newer)

set(sources ${pages})
list(TRANSFORM sources PREPEND ${PROJECT_SOURCE_DIR}/docs/guide/)
list(TRANSFORM sources APPEND .md)
set(made ${pages})
list(TRANSFORM made PREPEND ${DUNMORA_GUIDE_HTML}/)
list(TRANSFORM made APPEND .html)
add_custom_command(OUTPUT ${made}
    COMMAND ${CMAKE_COMMAND} "-DCMARK=${DUNMORA_CMARK}" "-DGUIDE=${PROJECT_SOURCE_DIR}/docs/guide" "-DPAGES=${pages}"
        "-DFOLDER=${DUNMORA_GUIDE_HTML}" -P ${PROJECT_SOURCE_DIR}/cmake/guide/MakePages.cmake
    DEPENDS ${sources} cmake/guide/MakePages.cmake cmake/guide/page.html.in
    COMMENT "Making HTML of the user guide"
    VERBATIM)

function(dunmora_copy_for_guide from to)
    add_custom_command(OUTPUT ${DUNMORA_GUIDE_HTML}/${to}
        COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_SOURCE_DIR}/${from} ${DUNMORA_GUIDE_HTML}/${to}
        DEPENDS ${from}
        VERBATIM)
endfunction()
dunmora_copy_for_guide(cmake/guide/style.css style.css)
set(DUNMORA_GUIDE_PAGES ${made} ${DUNMORA_GUIDE_HTML}/style.css)
set(DUNMORA_GUIDE_PICTURES "")
foreach(picture IN LISTS pictures)
    foreach(scheme IN ITEMS light dark)
        dunmora_copy_for_guide(docs/screenshots/${picture}-${scheme}.png pictures/${picture}-${scheme}.png)
        list(APPEND DUNMORA_GUIDE_PICTURES ${DUNMORA_GUIDE_HTML}/pictures/${picture}-${scheme}.png)
    endforeach()
endforeach()

add_custom_target(guide ALL DEPENDS ${DUNMORA_GUIDE_PAGES} ${DUNMORA_GUIDE_PICTURES})
