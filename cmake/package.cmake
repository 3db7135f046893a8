# What is installed, and the packages that are made of it: a zip with everything in one folder for
# Windows, a Debian package elsewhere.
if(WIN32)
    set(PROGRAM_FOLDER .)
    set(DATA_FOLDER .)
    set(DOCUMENT_FOLDER .)
else()
    set(PROGRAM_FOLDER bin)
    set(DATA_FOLDER share/zelmo)
    set(DOCUMENT_FOLDER share/doc/zelmo)
    install(FILES assets/zelmo.desktop DESTINATION share/applications)
    install(FILES assets/zelmo.png DESTINATION share/icons/hicolor/256x256/apps)
endif()

install(TARGETS zelmo zelmo-batch zelmo-layout RUNTIME DESTINATION ${PROGRAM_FOLDER})
install(FILES assets/colors.txt assets/surface.shader assets/point.shader assets/zelmo.ico
              ${CMAKE_BINARY_DIR}/page.js ${CMAKE_BINARY_DIR}/page.css
        DESTINATION ${DATA_FOLDER})
configure_file(docs/guide.txt ${CMAKE_BINARY_DIR}/docs/guide.txt @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/docs/guide.txt docs/process-file.md docs/zelmo-layout.md
        DESTINATION ${DOCUMENT_FOLDER})
foreach(example cmos_inverter mems_release array processes/gf180mcu processes/mems_three_poly
                processes/sg13g2 processes/sky130 processes/soi220)
    get_filename_component(folder examples/${example} DIRECTORY)
    install(FILES ${CMAKE_BINARY_DIR}/examples/${example}.gds
                  ${CMAKE_BINARY_DIR}/examples/${example}.txt
            DESTINATION ${DOCUMENT_FOLDER}/${folder})
endforeach()

set(CPACK_PACKAGE_NAME zelmo)
set(CPACK_PACKAGE_VENDOR "Zelmo developers")
set(CPACK_PACKAGE_CONTACT "Zelmo developers <zelmo@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Pictures of what a fabrication process does to a chip")
set(CPACK_PACKAGE_DESCRIPTION "Zelmo loads a GDSII layout and a process file, emulates the steps of\
 the process one after the other and draws the stack of films in three dimensions after each.")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_MONOLITHIC_INSTALL ON)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_FILE_NAME zelmo-${PROJECT_VERSION}-windows-x64)
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SECTION science)
    # What is linked is found in the programs; EGL is loaded when it is needed, the font is a file.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "libegl1, libgl1, libgl1-mesa-dri, fonts-liberation")
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland")
endif()
include(CPack)
