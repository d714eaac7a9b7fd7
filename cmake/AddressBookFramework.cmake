# dunmora_address_book_framework is what adapters/macos is compiled with and linked to: Apple's
# frameworks on a Mac, GNUstep's Addresses elsewhere. It is not there where neither is found or
# wanted. Elsewhere it is for tests alone.
set(DUNMORA_GNUSTEP AUTO CACHE STRING
    "Try the Mac's address book with GNUstep, for tests: ON, OFF, or AUTO for where it is found")
set_property(CACHE DUNMORA_GNUSTEP PROPERTY STRINGS AUTO ON OFF)

if(APPLE)
    set(CMAKE_OBJC_STANDARD 11)
    set(CMAKE_OBJCXX_STANDARD 20)
    enable_language(OBJC)
    enable_language(OBJCXX)
    add_library(dunmora_address_book_framework INTERFACE)
    # Apple calls the framework deprecated; what should replace it has no modification date and
    # shows linked people as one.
    target_compile_options(dunmora_address_book_framework INTERFACE
        $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fno-objc-arc;-Wno-deprecated-declarations>)
    target_link_libraries(dunmora_address_book_framework INTERFACE
        "-framework AddressBook" "-framework Foundation")
elseif(DUNMORA_TESTS AND DUNMORA_GNUSTEP AND NOT (DUNMORA_GNUSTEP STREQUAL "AUTO" AND DUNMORA_SANITIZE MATCHES "thread"))
    # The thread sanitizer would have to see into GNUstep, whose locks keep our threads apart.
    find_program(DUNMORA_GNUSTEP_CONFIG gnustep-config)
    find_library(DUNMORA_ADDRESSES_LIBRARY Addresses)
    # Both languages from one family of compilers, and that of GNUstep's own libraries: CMake would
    # take clang, whose exceptions of Objective-C are not those of the GNU runtime.
    find_program(DUNMORA_GOBJC NAMES gcc)
    find_program(DUNMORA_GOBJCXX NAMES g++)
    foreach(path IN ITEMS DUNMORA_GNUSTEP_CONFIG DUNMORA_ADDRESSES_LIBRARY DUNMORA_GOBJC DUNMORA_GOBJCXX)
        mark_as_advanced(${path})
    endforeach()
    set(found OFF)
    if(DUNMORA_GNUSTEP_CONFIG AND DUNMORA_ADDRESSES_LIBRARY AND DUNMORA_GOBJC AND DUNMORA_GOBJCXX)
        # GCC names the part of itself that compiles a language; a bare name is one that is missing.
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
        # Of its flags those that make a translation unit GNUstep's; how to warn and to optimise is
        # ours to say, and what a user has put into a folder of their own stays out.
        set(includes "${flags}")
        list(FILTER includes INCLUDE REGEX "^-I/")
        list(FILTER includes EXCLUDE REGEX "/GNUstep/Library/Headers$")
        list(TRANSFORM includes REPLACE "^-I" "")
        list(FILTER flags INCLUDE REGEX "^-D|^-fconstant-string-class|^-f.*exceptions|^-fno-strict-aliasing|^-pthread")
        list(FILTER libraries INCLUDE REGEX "^-l|^-pthread")
        add_library(dunmora_address_book_framework INTERFACE)
        target_compile_options(dunmora_address_book_framework INTERFACE
            "$<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:${flags}>"
            # CMake knows no standards of GCC's Objective-C.
            $<$<COMPILE_LANGUAGE:OBJC>:-std=gnu11> $<$<COMPILE_LANGUAGE:OBJCXX>:-std=c++20>)
        target_include_directories(dunmora_address_book_framework SYSTEM INTERFACE ${includes})
        target_link_libraries(dunmora_address_book_framework INTERFACE
            ${DUNMORA_ADDRESSES_LIBRARY} ${libraries})
    elseif(NOT DUNMORA_GNUSTEP STREQUAL "AUTO")
        message(FATAL_ERROR "DUNMORA_GNUSTEP is ON, but gobjc++, GNUstep or its Addresses is missing.")
    endif()
endif()
