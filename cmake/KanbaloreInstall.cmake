# Where an installation puts the programs and their files. The program finds its helper and its data by their place
# beside the folder it lies in, so that a whole installation can be moved.

include(GNUInstallDirs)
set(KANBALORE_HELPERS "${CMAKE_INSTALL_LIBEXECDIR}/kanbalore")
set(KANBALORE_DATA "${CMAKE_INSTALL_DATADIR}/kanbalore")
cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_BINDIR BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" OUTPUT_VARIABLE bin_folder)
foreach(kind HELPERS DATA)
    cmake_path(ABSOLUTE_PATH KANBALORE_${kind} BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" OUTPUT_VARIABLE folder)
    cmake_path(RELATIVE_PATH folder BASE_DIRECTORY "${bin_folder}" OUTPUT_VARIABLE KANBALORE_${kind}_FROM_BIN)
endforeach()

# Names the two places to one source file of the calling folder.
function(kanbalore_tell_places source)
    set_property(SOURCE "${source}" APPEND PROPERTY COMPILE_DEFINITIONS
        KANBALORE_HELPERS="${KANBALORE_HELPERS_FROM_BIN}" KANBALORE_DATA="${KANBALORE_DATA_FROM_BIN}")
endfunction()

# Called when all targets are there.
function(kanbalore_install)
    install(TARGETS kanbalore RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
    # postal-data renews the postal files of all users of a machine out of the postal service's own list.
    install(TARGETS kanbalore-old-file-reader postal-data RUNTIME DESTINATION "${KANBALORE_HELPERS}")
    install(FILES "${CMAKE_BINARY_DIR}/bin/Kanbalore.cdb" ${KANBALORE_POSTAL_FILES} DESTINATION "${KANBALORE_DATA}")
    install(FILES packaging/kanbalore.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
    install(FILES packaging/kanbalore.svg DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
    install(FILES packaging/kanbalore-mime.xml DESTINATION "${CMAKE_INSTALL_DATADIR}/mime/packages"
        RENAME kanbalore.xml)
endfunction()
