# Defines dunmora_address_book_framework, the flags and libraries of adapters/macos: Apple's frameworks
# on a Mac; on other systems GNUstep's Addresses, for tests only. Where neither is found or wanted, the
# target does not exist.
set(DUNMORA_GNUSTEP AUTO CACHE STRING
    "Test the Mac's address book with GNUstep: ON, OFF, or AUTO if it is found")
set_property(CACHE DUNMORA_GNUSTEP PROPERTY STRINGS AUTO ON OFF)

if(APPLE)
    set(CMAKE_OBJC_STANDARD 11)
    set(CMAKE_OBJCXX_STANDARD 20)
    enable_language(OBJC)
    enable_language(OBJCXX)
    add_library(dunmora_address_book_framework INTERFACE)
    # Apple has deprecated the framework, but its successor has no modification date and merges linked
    # people.
    target_compile_options(dunmora_address_book_framework INTERFACE
        $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fno-objc-arc;-Wno-deprecated-declarations>)
    target_link_libraries(dunmora_address_book_framework INTERFACE
        "-framework AddressBook" "-framework Foundation")
elseif(DUNMORA_TESTS AND DUNMORA_GNUSTEP AND NOT (DUNMORA_GNUSTEP STREQUAL "AUTO" AND DUNMORA_SANITIZE MATCHES "thread"))
    # Not with the thread sanitizer: it cannot see the locks inside GNUstep that synchronise our threads.
    find_program(DUNMORA_GNUSTEP_CONFIG gnustep-config)
    find_library(DUNMORA_ADDRESSES_LIBRARY Addresses)
    # Both languages need GCC, which compiled GNUstep's libraries. CMake would pick clang, whose
    # Objective-C exceptions are incompatible with the GNU runtime.
    find_program(DUNMORA_GOBJC NAMES gcc)
    find_program(DUNMORA_GOBJCXX NAMES g++)
    foreach(path IN ITEMS DUNMORA_GNUSTEP_CONFIG DUNMORA_ADDRESSES_LIBRARY DUNMORA_GOBJC DUNMORA_GOBJCXX)
        mark_as_advanced(${path})
    endforeach()
    set(found OFF)
    if(DUNMORA_GNUSTEP_CONFIG AND DUNMORA_ADDRESSES_LIBRARY AND DUNMORA_GOBJC AND DUNMORA_GOBJCXX)
        # GCC prints the path of the language's compiler proper, or its bare name if it is not installed.
        execute_process(COMMAND ${DUNMORA_GOBJCXX} -print-prog-name=cc1objplus
            OUTPUT_VARIABLE compiler OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(IS_ABSOLUTE "${compiler}")
            set(found ON)
        endif()
    endif()
    if(found)
        set(CMAKE_OBJC_COMPILER ${DUNMORA_GOBJC})
        set(CMAKE_OBJCXX_COMPILER ${DUNMORA_GOBJCXX})
        enable_language(OBJC)
        enable_language(OBJCXX)
        execute_process(COMMAND ${DUNMORA_GNUSTEP_CONFIG} --objc-flags
            OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        execute_process(COMMAND ${DUNMORA_GNUSTEP_CONFIG} --base-libs
            OUTPUT_VARIABLE libraries OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        separate_arguments(flags UNIX_COMMAND "${flags}")
        separate_arguments(libraries UNIX_COMMAND "${libraries}")
        # Keep only the flags that GNUstep's ABI and headers need: warnings and optimisation are our
        # choice, and the user's own GNUstep folder must not affect the build.
        set(includes "${flags}")
        list(FILTER includes INCLUDE REGEX "^-I/")
        list(FILTER includes EXCLUDE REGEX "/GNUstep/Library/Headers$")
        list(TRANSFORM includes REPLACE "^-I" "")
        list(FILTER flags INCLUDE REGEX "^-D|^-fconstant-string-class|^-f.*exceptions|^-fno-strict-aliasing|^-pthread")
        list(FILTER libraries INCLUDE REGEX "^-l|^-pthread")
        add_library(dunmora_address_book_framework INTERFACE)
        target_compile_options(dunmora_address_book_framework INTERFACE
            "$<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:${flags}>"
            # CMake does not set the standard for GCC's Objective-C.
            $<$<COMPILE_LANGUAGE:OBJC>:-std=gnu11> $<$<COMPILE_LANGUAGE:OBJCXX>:-std=c++20>)
        target_include_directories(dunmora_address_book_framework SYSTEM INTERFACE ${includes})
        target_link_libraries(dunmora_address_book_framework INTERFACE
            ${DUNMORA_ADDRESSES_LIBRARY} ${libraries})
    elseif(NOT DUNMORA_GNUSTEP STREQUAL "AUTO")
        message(FATAL_ERROR "DUNMORA_GNUSTEP is ON, but gobjc++, GNUstep or Addresses was not found. Install them or set it to OFF.")
    endif()
endif()
