# Each folder is one library. What it links is what it may include.

add_library(tidewell_warnings INTERFACE)
target_compile_options(tidewell_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# GCC 12 sees overlapping copies in "text" + std::string when it optimises fully; there are none.
target_compile_options(tidewell_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

# tidewell_library(<folder> SOURCES ... LINKS ...)
function(tidewell_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(tidewell_${name} STATIC ${ARG_SOURCES})
    target_include_directories(tidewell_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(tidewell_${name} PUBLIC ${ARG_LINKS} PRIVATE tidewell_warnings ${ARG_PRIVATE_LINKS})
endfunction()

# tidewell_in_batches(<target>): a test folder's sources make two objects. Most of their time goes into headers that they
# share, so a batch takes little longer than one of them, and two cores both have work.
function(tidewell_in_batches target)
    get_target_property(sources ${target} SOURCES)
    list(LENGTH sources count)
    math(EXPR half "(${count} + 1) / 2")
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${half})
    # A fixture in the unnamed namespace of its file is the base of a test outside of it, as it should be.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endfunction()

# tidewell_test(<folder> SOURCES ... LINKS ...): one test program per folder, run under three locales, or with ONE_LOCALE
# under one. With OWN_MAIN the sources hold a main of their own.
function(tidewell_test name)
    cmake_parse_arguments(ARG "OWN_MAIN;ONE_LOCALE" "" "SOURCES;LINKS" ${ARGN})
    if(NOT ARG_OWN_MAIN)
        list(APPEND ARG_SOURCES ${PROJECT_SOURCE_DIR}/tests/rig/Main.cpp)
    endif()
    add_executable(${name}_tests ${ARG_SOURCES})
    tidewell_in_batches(${name}_tests)
    target_link_libraries(${name}_tests PRIVATE ${ARG_LINKS} tidewell_test_support tidewell_warnings GTest::gmock)
    target_include_directories(${name}_tests PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
    set(locales C.UTF-8)
    if(NOT ARG_ONE_LOCALE)
        list(APPEND locales de_DE.UTF-8 da_DK.UTF-8)
    endif()
    foreach(locale ${locales})
        add_test(NAME ${name}.${locale} COMMAND ${name}_tests)
        set_tests_properties(${name}.${locale} PROPERTIES ENVIRONMENT "LC_ALL=${locale};LANG=${locale};QT_QPA_PLATFORM=offscreen" TIMEOUT 300)
    endforeach()
endfunction()
