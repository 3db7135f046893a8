# What is installed: in the folders that Linux has for it, or all in one folder on Windows. The
# components are the packages that are made of it (package.cmake): `batch`, the programs without a
# window with all that the programs read, and `desktop`, the program with one.
include(GNUInstallDirs)
if(WIN32)
    set(PROGRAM_FOLDER .)
    set(DATA_FOLDER .)
    set(DOCUMENT_FOLDER .)
    install(DIRECTORY editors DESTINATION . COMPONENT batch)
else()
    set(PROGRAM_FOLDER ${CMAKE_INSTALL_BINDIR})
    # Programs look for it as ../share/zelmo from where they are (base/data_files.h).
    set(DATA_FOLDER share/zelmo)
    set(DOCUMENT_FOLDER ${CMAKE_INSTALL_DATAROOTDIR}/doc/zelmo)
    install(FILES assets/zelmo.desktop
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/applications COMPONENT desktop)
    install(FILES assets/zelmo.png
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/256x256/apps COMPONENT desktop)
    install(DIRECTORY editors/vim/
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/vim/vimfiles COMPONENT batch)
    install(FILES editors/kate/zelmo-process.xml
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/org.kde.syntax-highlighting/syntax
            COMPONENT batch)
    install(FILES editors/kate/.kateproject
            DESTINATION ${DOCUMENT_FOLDER}/editors RENAME kateproject.json COMPONENT batch)
endif()

install(TARGETS zelmo-batch zelmo-layout RUNTIME DESTINATION ${PROGRAM_FOLDER} COMPONENT batch)
install(TARGETS zelmo RUNTIME DESTINATION ${PROGRAM_FOLDER} COMPONENT desktop)
install(FILES assets/colors.txt assets/surface.shader assets/point.shader assets/zelmo.ico
              ${CMAKE_BINARY_DIR}/page.js ${CMAKE_BINARY_DIR}/page.css
        DESTINATION ${DATA_FOLDER} COMPONENT batch)
configure_file(docs/guide.txt ${CMAKE_BINARY_DIR}/docs/guide.txt @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/docs/guide.txt docs/process-file.md docs/zelmo-layout.md
              docs/notes.md docs/watch.md docs/editors.md
        DESTINATION ${DOCUMENT_FOLDER} COMPONENT batch)
foreach(example cmos_inverter mems_release array processes/gf180mcu processes/mems_three_poly
                processes/sg13g2 processes/sky130 processes/soi220)
    get_filename_component(folder examples/${example} DIRECTORY)
    install(FILES ${CMAKE_BINARY_DIR}/examples/${example}.gds
                  ${CMAKE_BINARY_DIR}/examples/${example}.txt
            DESTINATION ${DOCUMENT_FOLDER}/${folder} COMPONENT batch)
endforeach()

# Everybody's licences whose code is in the programs and in the page's script.
set(LICENCES ${CMAKE_BINARY_DIR}/docs/third-party-licences.txt)
file(WRITE ${LICENCES} "Zelmo's programs hold code of others, under these licences.\n")
foreach(library
        GLEW=${THIRD_PARTY}/glew/LICENSE.txt
        Clipper=${THIRD_PARTY}/libpolyclipping/License.txt
        libpng=${THIRD_PARTY}/libpng1.6/LICENSE
        libwebp=${THIRD_PARTY}/libwebp/COPYING
        zlib=/usr/share/doc/libz-mingw-w64-dev/copyright
        fmt=${THIRD_PARTY}/fmtlib/LICENSE.rst
        CLI11=/usr/share/doc/libcli11-dev/copyright
        JSON=/usr/share/doc/nlohmann-json3-dev/copyright
        TinyGLTF=/usr/share/doc/libtinygltf-dev/copyright)
    string(REGEX MATCH "^([^=]+)=(.*)$" matched ${library})
    if(EXISTS ${CMAKE_MATCH_2})
        set(name ${CMAKE_MATCH_1})
        file(READ ${CMAKE_MATCH_2} text)
        file(APPEND ${LICENCES} "\n\n==== ${name}\n\n${text}")
    endif()
endforeach()
install(FILES ${LICENCES} DESTINATION ${DOCUMENT_FOLDER} COMPONENT batch)

# Manual pages and bash's completion come from what the programs say of themselves, but for that of the
# desktop program, which reads no command line.
execute_process(COMMAND git -C ${CMAKE_SOURCE_DIR} log -1 --format=%cs
                OUTPUT_VARIABLE RELEASE_DAY OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(NOT RELEASE_DAY)
    string(TIMESTAMP RELEASE_DAY %Y-%m-%d UTC)
endif()
if(NOT WIN32)
    find_package(Python3 COMPONENTS Interpreter)
endif()
if(NOT WIN32 AND Python3_Interpreter_FOUND)
    set(MANUALS ${CMAKE_BINARY_DIR}/manuals)
    configure_file(docs/zelmo.1.in ${MANUALS}/zelmo.1 @ONLY)
    add_custom_command(
        OUTPUT ${MANUALS}/zelmo.1.gz
        COMMAND gzip -9nfk ${MANUALS}/zelmo.1
        DEPENDS ${MANUALS}/zelmo.1
        VERBATIM)
    install(FILES ${MANUALS}/zelmo.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT desktop)
    set(PROGRAM_DOCUMENTS ${MANUALS}/zelmo.1.gz)
    foreach(program zelmo-batch zelmo-layout)
        add_custom_command(
            OUTPUT ${MANUALS}/${program}.1.gz ${MANUALS}/${program}
            COMMAND ${Python3_EXECUTABLE} ${CMAKE_SOURCE_DIR}/scripts/make_program_documents.py
                    $<TARGET_FILE:${program}> ${MANUALS} ${RELEASE_DAY}
            DEPENDS ${program} ${CMAKE_SOURCE_DIR}/scripts/make_program_documents.py
            VERBATIM)
        install(FILES ${MANUALS}/${program}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
                COMPONENT batch)
        install(FILES ${MANUALS}/${program}
                DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions
                COMPONENT batch)
        list(APPEND PROGRAM_DOCUMENTS ${MANUALS}/${program}.1.gz ${MANUALS}/${program})
    endforeach()
    # The tests look at what is installed: with them it is part of everything.
    set(IN_ALL "")
    if(ZELMO_TESTS AND NOT ZELMO_SANITIZE AND NOT ZELMO_SANITIZE_THREADS AND NOT ZELMO_FUZZ)
        set(IN_ALL ALL)
    endif()
    add_custom_target(zelmo_program_documents ${IN_ALL} DEPENDS ${PROGRAM_DOCUMENTS})
else()
    add_custom_target(zelmo_program_documents)  # on Windows --help has to do
endif()
