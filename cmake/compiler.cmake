# What all of the project's own code is compiled with. Results are the same to the bit in every
# build: no contraction of products and sums, nothing of fast-math.
add_library(zelmo_options INTERFACE)
target_compile_options(zelmo_options INTERFACE
    -Wall -Wextra -Wpedantic -Wnon-virtual-dtor
    # Where sources are compiled together, names of one may hide names of another, and so much is
    # inlined that GCC 12 sees overlaps in the library's own strings.
    $<IF:$<AND:$<CXX_COMPILER_ID:GNU>,$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>>,-Wshadow=local$<SEMICOLON>-Wno-restrict,-Wshadow>
    # The fuzz targets' compiler has warnings of its own, and checks that are put in cause others:
    # they are no errors.
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<NOT:$<BOOL:${ZELMO_SANITIZE}>>>:-Werror>
    -ffp-contract=off -fno-fast-math)
target_include_directories(zelmo_options INTERFACE ${CMAKE_SOURCE_DIR})

if(WIN32)
    target_compile_definitions(zelmo_options INTERFACE
        UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601 __USE_MINGW_ANSI_STDIO=1)
    target_link_options(zelmo_options INTERFACE -static)
endif()

if(ZELMO_SANITIZE)
    add_compile_options(-fsanitize=address,undefined,float-cast-overflow
                        -fno-sanitize-recover=undefined,float-cast-overflow
                        -fno-omit-frame-pointer)
    # The checks that are put in hide from the compiler what is initialised.
    add_compile_options(-Wno-maybe-uninitialized)
    add_link_options(-fsanitize=address,undefined,float-cast-overflow)
endif()

if(ZELMO_FUZZ)
    set(FUZZ_CHECKS address,undefined,float-cast-overflow)
    add_compile_options(-fsanitize=fuzzer-no-link,${FUZZ_CHECKS}
                        -fno-sanitize-recover=undefined,float-cast-overflow
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${FUZZ_CHECKS})
endif()

if(ZELMO_SANITIZE_THREADS)
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
endif()

# What a library needs to become part of the Python module: code that can lie anywhere. No name is
# seen from outside, so that calls within it cost what they cost in a program.
function(zelmo_for_python library)
    if(ZELMO_PYTHON)
        set_target_properties(${library} PROPERTIES POSITION_INDEPENDENT_CODE ON
            CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    endif()
endfunction()

# A library of the project: zelmo_library(<name> SOURCES ... LINK ...)
function(zelmo_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC zelmo_options ${ARG_LINK})
    zelmo_for_python(${name})
endfunction()

# A test program, registered with CTest: zelmo_test(<name> SOURCES ... LINK ...)
function(zelmo_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE zelmo_options zelmo_test_support ${ARG_LINK}
                          GTest::gtest_main)
    add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY ${CMAKE_BINARY_DIR})
    set_tests_properties(${name} PROPERTIES TIMEOUT 900)
endfunction()

# A root sets no errno, so that it can be taken in lanes. To be linked after zelmo_options, whose
# -fno-fast-math would switch errno on again.
add_library(zelmo_lane_options INTERFACE)
target_compile_options(zelmo_lane_options INTERFACE -fno-math-errno)

# Adds files of lane kernels (base/lane_code.h) to a library, compiled for narrow and for wide lanes:
# zelmo_lane_kernels(<library> SOURCES ...)
function(zelmo_lane_kernels library)
    cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
    foreach(lanes narrow wide)
        set(kernels ${library}_${lanes})
        set(sources ${ARG_SOURCES})
        if(lanes STREQUAL wide AND CMAKE_CXX_COMPILER_ID STREQUAL Clang)
            # Clang wants what is for the wide lanes alone to end before the file does.
            list(TRANSFORM sources
                 REPLACE "(.+)" "${CMAKE_CURRENT_BINARY_DIR}/${kernels}/\\1")
            foreach(source ${ARG_SOURCES})
                file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${kernels}/${source} CONTENT
                     "#include \"${CMAKE_CURRENT_SOURCE_DIR}/${source}\"\n#pragma clang attribute pop\n")
            endforeach()
        endif()
        add_library(${kernels} OBJECT ${sources})
        set_target_properties(${kernels} PROPERTIES UNITY_BUILD OFF)
        target_link_libraries(${kernels} PRIVATE zelmo_options zelmo_lane_options)
        target_compile_definitions(${kernels} PRIVATE ZELMO_LANES=${lanes})
        zelmo_for_python(${kernels})
        target_sources(${library} PRIVATE $<TARGET_OBJECTS:${kernels}>)
    endforeach()
    target_compile_definitions(${library}_wide PRIVATE ZELMO_WIDE_LANES)
    if(WIN32)
        # The stack of 64-bit Windows is aligned to 16 bytes, and the compiler takes it to be
        # aligned for wide lanes.
        target_compile_options(${library}_wide PRIVATE -Wa,-muse-unaligned-vector-move)
    endif()
endfunction()
