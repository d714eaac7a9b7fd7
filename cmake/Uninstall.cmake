# Removes the files that were installed from a build folder, and the folders that the installation created, unless
# something else is in them now. What was installed with DESTDIR is removed with the same DESTDIR:
# cmake -DDUNMORA_BUILD=BUILD-FOLDER -P cmake/Uninstall.cmake
cmake_minimum_required(VERSION 3.25)

include(${CMAKE_CURRENT_LIST_DIR}/InstallRecords.cmake)
if(NOT EXISTS "${file_record}")
    message(FATAL_ERROR "Nothing has been installed from ${DUNMORA_BUILD} into ${stage}/.")
endif()
file(STRINGS "${file_record}" files ENCODING UTF-8)
set(new_folders "")
if(EXISTS "${folder_record}")
    file(STRINGS "${folder_record}" new_folders ENCODING UTF-8)
endif()

# Removes a folder and those above it, as far as they are empty and were created by an installation.
function(remove_empty_folders folder)
    while(TRUE)
        set(is_new FALSE)
        foreach(new IN LISTS new_folders)
            cmake_path(IS_PREFIX new "${folder}" is_below)
            if(is_below)
                set(is_new TRUE)
            endif()
        endforeach()
        if(NOT is_new)
            return()
        endif()
        # Removes no folder with anything in it.
        execute_process(COMMAND rmdir "${folder}" ERROR_QUIET)
        if(EXISTS "${folder}")
            return()
        endif()
        cmake_path(GET folder PARENT_PATH folder)
    endwhile()
endfunction()

# A file that was installed twice is there twice.
list(REMOVE_DUPLICATES files)
foreach(file IN LISTS files)
    file(REMOVE "${file}")
    if(EXISTS "${file}" OR IS_SYMLINK "${file}")
        message(FATAL_ERROR "${file} could not be removed.")
    endif()
    message(STATUS "Removed ${file}")
    cmake_path(GET file PARENT_PATH folder)
    remove_empty_folders("${folder}")
endforeach()
# Only now: what could not be removed can be tried again.
file(REMOVE "${file_record}" "${folder_record}")
