# Where installations from the build folder DUNMORA_BUILD are recorded, for the scripts that write and read the records.
# Sets
#   stage          DESTDIR as a whole path, which is in front of every installed one; empty without DESTDIR
#   file_record    the file that lists the installed files
#   folder_record  the file that lists the folders that were created for them
# Each stage has records of its own.
set(stage "$ENV{DESTDIR}")
if(NOT stage STREQUAL "")
    cmake_path(ABSOLUTE_PATH stage BASE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}" NORMALIZE)
    string(REGEX REPLACE "/$" "" stage "${stage}")
endif()
string(MD5 place "${stage}")
set(file_record "${DUNMORA_BUILD}/installed_files_${place}.txt")
set(folder_record "${DUNMORA_BUILD}/installed_folders_${place}.txt")
