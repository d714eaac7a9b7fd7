# Where the programs and their files are installed. A program finds its files by their path from its own folder, so they
# are found wherever the installation has been moved, and the build folder has the same layout.
include(GNUInstallDirs)

# The folder of the module for the desktop's address books: from that of the programs, and in the build folder.
file(RELATIVE_PATH DUNMORA_MODULE_PATH "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}/dunmora")
cmake_path(APPEND CMAKE_RUNTIME_OUTPUT_DIRECTORY "${DUNMORA_MODULE_PATH}" OUTPUT_VARIABLE DUNMORA_MODULE_BUILD_FOLDER)
cmake_path(NORMAL_PATH DUNMORA_MODULE_BUILD_FOLDER)
cmake_path(IS_PREFIX PROJECT_BINARY_DIR "${DUNMORA_MODULE_BUILD_FOLDER}" inside)
if(NOT inside)
    message(FATAL_ERROR "CMAKE_INSTALL_BINDIR \"${CMAKE_INSTALL_BINDIR}\" must be a folder directly in the prefix, "
        "and CMAKE_INSTALL_LIBDIR \"${CMAKE_INSTALL_LIBDIR}\" another one in it.")
endif()
