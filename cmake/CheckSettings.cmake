# Refuses a version and an update service that the programs could not use. It is also a script, so that tests can try
# many values: cmake -DPROJECT_VERSION=0.1 -DDUNMORA_UPDATE_HOST=host -P cmake/CheckSettings.cmake

# The update check compares versions as decimal numbers: 1.10 would be older than 1.9, and 2.0.1 the same as 2.0.
if(NOT PROJECT_VERSION MATCHES "^[0-9]+\\.[0-9]$")
    message(FATAL_ERROR
        "The version \"${PROJECT_VERSION}\" must be a number with one digit after the point, such as 1.2.")
endif()

set(label "[A-Za-z0-9]([A-Za-z0-9-]*[A-Za-z0-9])?")
set(port "[1-9][0-9]?[0-9]?[0-9]?[0-9]?")
if(NOT DUNMORA_UPDATE_HOST MATCHES "^(${label}(\\.${label})*(:(${port}))?)?$" OR CMAKE_MATCH_6 GREATER 65535)
    message(FATAL_ERROR
        "DUNMORA_UPDATE_HOST \"${DUNMORA_UPDATE_HOST}\" must be host or host:port, without a scheme or a path, or empty.")
endif()
