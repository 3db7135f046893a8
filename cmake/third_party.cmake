# Libraries that the project calls. On Linux they are the system's; for Windows the same libraries
# are used as headers, or compiled from the source packages that scripts/setup.sh unpacks.
set(THIRD_PARTY ${CMAKE_SOURCE_DIR}/build/third_party)

find_package(Threads REQUIRED)

# {fmt}, compiled here: as headers alone it takes most of the time of each source that formats a text
add_library(zelmo_fmt STATIC ${THIRD_PARTY}/fmtlib/src/format.cc)
target_include_directories(zelmo_fmt SYSTEM PUBLIC ${THIRD_PARTY}/fmtlib/include)
target_compile_options(zelmo_fmt PRIVATE -w)
zelmo_for_python(zelmo_fmt)

# CLI11, headers alone
add_library(zelmo_cli11 INTERFACE)
target_include_directories(zelmo_cli11 SYSTEM INTERFACE ${THIRD_PARTY}/include)

# JSON for Modern C++, headers alone
add_library(zelmo_json INTERFACE)
target_include_directories(zelmo_json SYSTEM INTERFACE ${THIRD_PARTY}/include)

# TinyGLTF, whose header holds its sources; nothing of it touches files or decodes pictures
set(TINYGLTF_FILE ${CMAKE_BINARY_DIR}/third_party/tiny_gltf.cpp)
file(CONFIGURE OUTPUT ${TINYGLTF_FILE} CONTENT
"#define TINYGLTF_IMPLEMENTATION
#include <fstream>
#include <tiny_gltf.h>
")
add_library(zelmo_tinygltf STATIC ${TINYGLTF_FILE})
target_include_directories(zelmo_tinygltf SYSTEM PUBLIC ${THIRD_PARTY}/include)
target_compile_definitions(zelmo_tinygltf PUBLIC
    TINYGLTF_NO_FS TINYGLTF_NO_STB_IMAGE TINYGLTF_NO_STB_IMAGE_WRITE TINYGLTF_NO_EXTERNAL_IMAGE)
# Neither this nor GLEW computes anything: they need not take the compiler half a minute each.
target_compile_options(zelmo_tinygltf PRIVATE -w -O1)
zelmo_for_python(zelmo_tinygltf)

# GLEW, compiled here so that it finds its entry points through EGL where there is no display
add_library(zelmo_glew STATIC ${THIRD_PARTY}/glew/src/glew.c)
target_include_directories(zelmo_glew SYSTEM PUBLIC ${THIRD_PARTY}/glew/include)
target_compile_definitions(zelmo_glew PUBLIC GLEW_NO_GLU)
target_compile_options(zelmo_glew PRIVATE -w -O1)
zelmo_for_python(zelmo_glew)
if(WIN32)
    target_compile_definitions(zelmo_glew PUBLIC GLEW_STATIC)
    target_link_libraries(zelmo_glew PUBLIC opengl32 gdi32)
else()
    # Headers alone: the libraries are loaded when the first picture is to be made (see
    # render/gl/gl_library_linux.cpp), so that programs start without them.
    find_package(OpenGL REQUIRED COMPONENTS OpenGL EGL)
    target_compile_definitions(zelmo_glew PUBLIC GLEW_EGL)
endif()

# Clipper, compiled here on every platform, so that it is the same to the bit
add_library(zelmo_clipper STATIC ${THIRD_PARTY}/libpolyclipping/cpp/clipper.cpp)
target_include_directories(zelmo_clipper SYSTEM PUBLIC ${THIRD_PARTY}/libpolyclipping/cpp)
target_compile_options(zelmo_clipper PRIVATE -w)
zelmo_for_python(zelmo_clipper)

# zlib
add_library(zelmo_zlib INTERFACE)
if(WIN32)
    find_library(MINGW_ZLIB NAMES libz.a PATHS /usr/x86_64-w64-mingw32/lib REQUIRED)
    target_link_libraries(zelmo_zlib INTERFACE ${MINGW_ZLIB})
else()
    find_package(ZLIB REQUIRED)
    target_link_libraries(zelmo_zlib INTERFACE ZLIB::ZLIB)
endif()

# libpng
if(WIN32)
    set(PNG_DIR ${THIRD_PARTY}/libpng1.6)
    configure_file(${PNG_DIR}/scripts/pnglibconf.h.prebuilt
                   ${CMAKE_BINARY_DIR}/third_party/png/pnglibconf.h COPYONLY)
    set(PNG_FILES png pngerror pngget pngmem pngpread pngread pngrio pngrtran pngrutil pngset
        pngtrans pngwio pngwrite pngwtran pngwutil)
    list(TRANSFORM PNG_FILES REPLACE "(.+)" "${PNG_DIR}/\\1.c")
    add_library(zelmo_png STATIC ${PNG_FILES})
    target_include_directories(zelmo_png SYSTEM PUBLIC ${PNG_DIR}
                               ${CMAKE_BINARY_DIR}/third_party/png)
    target_compile_definitions(zelmo_png PRIVATE PNG_INTEL_SSE_OPT=0)
    target_compile_options(zelmo_png PRIVATE -w)
    target_link_libraries(zelmo_png PUBLIC zelmo_zlib)
else()
    find_package(PNG REQUIRED)
    add_library(zelmo_png INTERFACE)
    target_link_libraries(zelmo_png INTERFACE PNG::PNG)
endif()

# WebP
if(WIN32)
    set(WEBP_DIR ${THIRD_PARTY}/libwebp)
    file(GLOB WEBP_FILES ${WEBP_DIR}/src/dec/*.c ${WEBP_DIR}/src/dsp/*.c ${WEBP_DIR}/src/enc/*.c
         ${WEBP_DIR}/src/mux/*.c ${WEBP_DIR}/src/demux/*.c ${WEBP_DIR}/src/utils/*.c ${WEBP_DIR}/sharpyuv/*.c)
    add_library(zelmo_webp STATIC ${WEBP_FILES})
    target_include_directories(zelmo_webp SYSTEM PUBLIC ${WEBP_DIR}/src PRIVATE ${WEBP_DIR})
    target_compile_options(zelmo_webp PRIVATE -w)
else()
    find_library(WEBP_LIBRARY webp REQUIRED)
    find_library(WEBP_MUX_LIBRARY webpmux REQUIRED)
    find_library(WEBP_DEMUX_LIBRARY webpdemux REQUIRED)
    add_library(zelmo_webp INTERFACE)
    target_link_libraries(zelmo_webp INTERFACE ${WEBP_MUX_LIBRARY} ${WEBP_DEMUX_LIBRARY}
                          ${WEBP_LIBRARY})
endif()
