# Makes a page of HTML of each Markdown page of the user guide:
#   cmake -DCMARK=cmark-gfm -DGUIDE=docs/guide -DPAGES=index;back -DFOLDER=guide -P MakePages.cmake
# Links between pages lead to the HTML. A picture of a light window is the dark one on a dark screen.
cmake_minimum_required(VERSION 3.25)

foreach(page IN LISTS PAGES)
    file(STRINGS ${GUIDE}/${page}.md title_${page} LIMIT_COUNT 1 ENCODING UTF-8)
    string(REGEX REPLACE "^# " "" title_${page} "${title_${page}}")
endforeach()

foreach(page IN LISTS PAGES)
    execute_process(COMMAND ${CMARK} --extension table ${GUIDE}/${page}.md
        OUTPUT_VARIABLE CONTENT COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE "href=\"([a-z-]+)\\.md\"" "href=\"\\1.html\"" CONTENT "${CONTENT}")
    string(CONCAT picture "<picture>"
        "<source srcset=\"pictures/\\1-dark.png\" media=\"(prefers-color-scheme: dark)\">"
        "<img src=\"pictures/\\1-light.png\" alt=\"\\2\"></picture>")
    string(REGEX REPLACE "<img src=\"\\.\\./screenshots/([a-z_-]+)-light\\.png\" alt=\"([^\"]*)\" />"
        "${picture}" CONTENT "${CONTENT}")

    set(TITLE "${title_${page}}")
    if(NOT page STREQUAL "index")
        string(APPEND TITLE " – ${title_index}")
    endif()
    set(NAVIGATION "")
    foreach(other IN LISTS PAGES)
        set(current "")
        if(other STREQUAL page)
            set(current " aria-current=\"page\"")
        endif()
        string(APPEND NAVIGATION "<li><a href=\"${other}.html\"${current}>${title_${other}}</a></li>\n")
    endforeach()
    configure_file(${CMAKE_CURRENT_LIST_DIR}/page.html.in ${FOLDER}/${page}.html @ONLY)
    # Newer than the sources also where the content is the same.
    file(TOUCH_NOCREATE ${FOLDER}/${page}.html)
endforeach()
