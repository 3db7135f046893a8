# GoogleTest and Google Benchmark: the system's, or GoogleTest's sources where the build is for
# another machine than this one
if(CMAKE_CROSSCOMPILING)
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/third_party/googletest
                     EXCLUDE_FROM_ALL)
    foreach(target gtest gtest_main)
        set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY
                              ${CMAKE_BINARY_DIR}/third_party)
    endforeach()
    if(NOT TARGET GTest::gtest_main)
        add_library(GTest::gtest_main ALIAS gtest_main)
        add_library(GTest::gtest ALIAS gtest)
    endif()
else()
    find_package(GTest REQUIRED)
    find_package(benchmark REQUIRED)
endif()
