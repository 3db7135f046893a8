# The packages: for Debian one for each component of what is installed, for Windows a zip with
# everything in one folder. A further component is a row in DEBIAN_PACKAGES and its own dependencies.
set(CPACK_PACKAGE_NAME zelmo)
set(CPACK_PACKAGE_VENDOR "Zelmo developers")
set(CPACK_PACKAGE_CONTACT "Zelmo developers <zelmo@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "pictures of what a fabrication process does to a chip")
# In lines of its own, since Debian's packages have it as it stands here.
set(CPACK_PACKAGE_DESCRIPTION "Zelmo loads a GDSII layout and a process file, emulates the steps of the\n\
process one after the other and draws the stack of films in three dimensions\n\
after each.")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
if(WIN32)
    set(CPACK_MONOLITHIC_INSTALL ON)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_FILE_NAME zelmo-${PROJECT_VERSION}-windows-x64)
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SECTION science)
    set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
    set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
        OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    # What is linked is found in the programs; EGL is loaded when it is needed, the font is a file.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

    # Component and package.
    set(DEBIAN_PACKAGES batch=zelmo-batch desktop=zelmo)
    set(CPACK_DEBIAN_BATCH_PACKAGE_DEPENDS "libegl1, libgl1-mesa-dri, fonts-liberation")
    set(CPACK_DEBIAN_BATCH_PACKAGE_SUGGESTS "zelmo, vim, kate")
    set(CPACK_COMPONENT_BATCH_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}\n\n\
This package has the programs without a window, zelmo-batch and zelmo-layout,\n\
the data files, the guide, examples, and process files in Vim and Kate.")
    set(CPACK_DEBIAN_DESKTOP_PACKAGE_DEPENDS "zelmo-batch (= ${PROJECT_VERSION}), libgl1")
    set(CPACK_DEBIAN_DESKTOP_PACKAGE_RECOMMENDS "qt6-wayland")
    set(CPACK_COMPONENT_DESKTOP_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}\n\n\
This package has the program with a window.")

    if(ZELMO_PYTHON)
        list(APPEND DEBIAN_PACKAGES python=python3-zelmo)
        set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
        set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "zelmo-batch (= ${PROJECT_VERSION}), \
python3 (>= 3.11), python3 (<< 3.12), python3-numpy")
        set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS
            "python3-distributed, python3-dask, python3-pandas, python3-matplotlib")
        set(CPACK_COMPONENT_PYTHON_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}\n\n\
This package has the module for Python, with the stacks as NumPy arrays,\n\
and zelmo-study, which runs a process in many variants.")
    endif()

    # What every Debian package has to say of itself.
    execute_process(COMMAND date -u -R -d ${RELEASE_DAY} OUTPUT_VARIABLE RELEASE_TIME
                    OUTPUT_STRIP_TRAILING_WHITESPACE)
    string(SUBSTRING ${RELEASE_DAY} 0 4 RELEASE_YEAR)
    configure_file(cmake/debian/copyright.in ${CMAKE_BINARY_DIR}/debian/copyright @ONLY)
    foreach(row ${DEBIAN_PACKAGES})
        string(REGEX MATCH "^(.*)=(.*)$" matched ${row})
        set(component ${CMAKE_MATCH_1})
        set(package ${CMAKE_MATCH_2})
        string(TOUPPER ${component} COMPONENT)
        set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${package})
        list(APPEND CPACK_COMPONENTS_ALL ${component})
        set(folder ${CMAKE_BINARY_DIR}/debian/${package})
        configure_file(cmake/debian/changelog.in ${folder}/changelog @ONLY)
        execute_process(COMMAND gzip -9nfk ${folder}/changelog)
        install(FILES ${CMAKE_BINARY_DIR}/debian/copyright ${folder}/changelog.gz
                DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
        configure_file(cmake/debian/lintian-overrides.in ${folder}/overrides @ONLY)
        install(FILES ${folder}/overrides RENAME ${package}
                DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides COMPONENT ${component})
    endforeach()
endif()
include(CPack)
