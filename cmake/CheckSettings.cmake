# Refuses settings that the programs or a desktop could not use. It is also a script, so that tests can try many values:
# cmake -DPROJECT_VERSION=0.1 -DDUNMORA_APP_ID=com.example.app -DDUNMORA_UPDATE_HOST=host -P cmake/CheckSettings.cmake

# The update check compares versions as decimal numbers: 1.10 would be older than 1.9, and 2.0.1 the same as 2.0.
if(NOT PROJECT_VERSION MATCHES "^[0-9]+\\.[0-9]$")
    message(FATAL_ERROR
        "The version \"${PROJECT_VERSION}\" must be a number with one digit after the point, such as 1.2.")
endif()

# As for names on D-Bus, by which desktops know programs. The metainfo needs three parts.
set(part "[A-Za-z_][A-Za-z0-9_-]*")
string(LENGTH "${DUNMORA_APP_ID}" length)
if(NOT DUNMORA_APP_ID MATCHES "^${part}(\\.${part})(\\.${part})+$" OR length GREATER 200)
    message(FATAL_ERROR
        "DUNMORA_APP_ID \"${DUNMORA_APP_ID}\" must be a domain in reverse and a name, such as com.example.dunmora: three or more parts of letters, digits, _ and -, none of which begins with a digit.")
endif()

foreach(setting IN ITEMS DUNMORA_LICENSE DUNMORA_METADATA_LICENSE)
    if(NOT "${${setting}}" MATCHES "^([A-Za-z0-9(][A-Za-z0-9.+:() -]*)?$")
        message(FATAL_ERROR
            "${setting} \"${${setting}}\" must be an SPDX licence expression, such as MIT OR Apache-2.0, or empty.")
    endif()
endforeach()

# As a package's control field has it.
set(letter "[^][()<>@:;,\"\\\t\r\n ]")
if(NOT "${DUNMORA_MAINTAINER}" MATCHES "^(${letter}+( ${letter}+)* <[A-Za-z0-9._%+-]+@[A-Za-z0-9.-]+>)?$")
    message(FATAL_ERROR
        "DUNMORA_MAINTAINER \"${DUNMORA_MAINTAINER}\" must be a name and an e-mail address, such as Ann Lee <ann@example.com>, or empty.")
endif()

if(NOT "${DUNMORA_SCREENSHOTS}" MATCHES "^(https://[!-~]*[!-.0-~])?$")
    message(FATAL_ERROR
        "DUNMORA_SCREENSHOTS \"${DUNMORA_SCREENSHOTS}\" must be an address that begins with https:// and does not end with a slash, or empty.")
endif()

# The program opens nothing else. Both are also texts in a source.
if(NOT "${DUNMORA_WEBSITE}" MATCHES "^(https?://[^\"\\; \t\r\n]+)?$")
    message(FATAL_ERROR
        "DUNMORA_WEBSITE \"${DUNMORA_WEBSITE}\" must be an address that begins with http:// or https://, or empty.")
endif()
if(NOT "${DUNMORA_SUPPORT}" MATCHES "^([A-Za-z0-9._%+-]+@[A-Za-z0-9.-]+)?$")
    message(FATAL_ERROR
        "DUNMORA_SUPPORT \"${DUNMORA_SUPPORT}\" must be an e-mail address, such as support@example.com, or empty.")
endif()

set(label "[A-Za-z0-9]([A-Za-z0-9-]*[A-Za-z0-9])?")
set(port "[1-9][0-9]?[0-9]?[0-9]?[0-9]?")
if(NOT DUNMORA_UPDATE_HOST MATCHES "^(${label}(\\.${label})*(:(${port}))?)?$" OR CMAKE_MATCH_6 GREATER 65535)
    message(FATAL_ERROR
        "DUNMORA_UPDATE_HOST \"${DUNMORA_UPDATE_HOST}\" must be host or host:port, without a scheme or a path, or empty.")
endif()
