# Where the programs and their files are installed. A program finds its files by their path from its own folder, so they
# are found wherever the installation has been moved, and the build folder has the same layout.
include(GNUInstallDirs)

# The folder of the module for the desktop's address books: from that of the programs, and in the build folder.
file(RELATIVE_PATH DUNMORA_MODULE_PATH "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}/dunmora")
cmake_path(APPEND CMAKE_RUNTIME_OUTPUT_DIRECTORY "${DUNMORA_MODULE_PATH}" OUTPUT_VARIABLE DUNMORA_MODULE_BUILD_FOLDER)
cmake_path(NORMAL_PATH DUNMORA_MODULE_BUILD_FOLDER)
cmake_path(IS_PREFIX PROJECT_BINARY_DIR "${DUNMORA_MODULE_BUILD_FOLDER}" inside)
# In the programs' own folder, dunmora is the program.
if(NOT inside OR DUNMORA_MODULE_PATH STREQUAL "dunmora")
    message(FATAL_ERROR "CMAKE_INSTALL_BINDIR \"${CMAKE_INSTALL_BINDIR}\" must be a folder directly in the prefix, "
        "and CMAKE_INSTALL_LIBDIR \"${CMAKE_INSTALL_LIBDIR}\" another one in it.")
endif()

# The name of the folder for documentation is that of the program, unless it has been set.
if("$CACHE{CMAKE_INSTALL_DOCDIR}" STREQUAL "")
    set(CMAKE_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/dunmora)
    GNUInstallDirs_get_absolute_install_dir(CMAKE_INSTALL_FULL_DOCDIR CMAKE_INSTALL_DOCDIR DOCDIR)
endif()

# With umask 002 a group could change the new folders, and the module is not loaded from such a folder.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# dunmora_install(FOLDER COMPONENT WHAT...)
# install(WHAT...) into the folder, which is relative to the prefix, and makes the folder known to `uninstall`. The
# components are dunmora, dunmora-cli, dunmora-eds (the module for the desktop's address books) and dunmora-doc.
function(dunmora_install folder component)
    set_property(GLOBAL APPEND PROPERTY DUNMORA_INSTALL_FOLDERS ${folder})
    install(${ARGN} DESTINATION ${folder} COMPONENT ${component})
endfunction()

# The first and the last step of every installation keep a record of it in the build folder. CMake's own list of the files
# does not say where they are: it has neither DESTDIR nor the folders, and making a package replaces it.
set(DUNMORA_RECORD_FOLDERS ${PROJECT_BINARY_DIR}/RecordFolders.cmake)
install(SCRIPT ${DUNMORA_RECORD_FOLDERS} ALL_COMPONENTS)
function(dunmora_record_installation)
    get_property(folders GLOBAL PROPERTY DUNMORA_INSTALL_FOLDERS)
    list(REMOVE_DUPLICATES folders)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/RecordFolders.cmake.in ${DUNMORA_RECORD_FOLDERS} @ONLY)
    set(record_files ${PROJECT_BINARY_DIR}/RecordFiles.cmake)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/RecordFiles.cmake.in ${record_files} @ONLY)
    install(SCRIPT ${record_files} ALL_COMPONENTS)
endfunction()
cmake_language(DEFER CALL dunmora_record_installation)

if(PROJECT_IS_TOP_LEVEL)
    add_custom_target(uninstall
        COMMAND ${CMAKE_COMMAND} -DDUNMORA_BUILD=${PROJECT_BINARY_DIR} -P ${PROJECT_SOURCE_DIR}/cmake/Uninstall.cmake
        USES_TERMINAL
        VERBATIM)
endif()
