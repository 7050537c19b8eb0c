# How a room (a library), a test program and a benchmark are declared: the same flags and include root for all.

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

add_library(fretvane_flags INTERFACE)
target_compile_options(fretvane_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
    -Woverloaded-virtual -Wcast-align -Wformat=2 -Werror)
# Sums are rounded to float at each step, in the order written: nothing may contract or reorder them.
target_compile_options(fretvane_flags INTERFACE -ffp-contract=off -fno-fast-math)
if(FRETVANE_SANITIZE)
    # Instrumented code of the standard library looks uninitialised to the compiler, in places that are not ours.
    target_compile_options(fretvane_flags INTERFACE -fsanitize=${FRETVANE_SANITIZE} -fno-omit-frame-pointer -g
        -fno-sanitize-recover=all $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(fretvane_flags INTERFACE -fsanitize=${FRETVANE_SANITIZE})
endif()

# fretvane_room(<target> SOURCES <files...> [USES <targets...>] [PRIVATE_USES <targets...>])
function(fretvane_room target)
    cmake_parse_arguments(ROOM "" "" "SOURCES;USES;PRIVATE_USES" ${ARGN})
    add_library(${target} STATIC ${ROOM_SOURCES})
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${target} PUBLIC ${ROOM_USES} PRIVATE fretvane_flags ${ROOM_PRIVATE_USES})
endfunction()

# fretvane_test(<name> SOURCES <files...> USES <targets...> [LABELS <labels...>] [TIMEOUT <seconds>] [SERIAL])
# A label "toolkit" marks tests that open windows: the thread sanitizer build leaves them out.
function(fretvane_test name)
    cmake_parse_arguments(TEST "SERIAL" "TIMEOUT" "SOURCES;USES;LABELS;ENVIRONMENT" ${ARGN})
    if(NOT TEST_TIMEOUT)
        set(TEST_TIMEOUT 120)
    endif()
    set(properties TIMEOUT ${TEST_TIMEOUT})
    if(TEST_LABELS)
        # One label: the discovery of tests takes no lists. Filters are patterns, so "toolkit-sound" is both.
        list(JOIN TEST_LABELS "-" label)
        list(APPEND properties LABELS "${label}")
    endif()
    if(TEST_SERIAL)
        list(APPEND properties RUN_SERIAL ON)
    endif()
    if(TEST_ENVIRONMENT)
        list(APPEND properties ENVIRONMENT "${TEST_ENVIRONMENT}")
    endif()
    add_executable(${name} ${TEST_SOURCES})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE fretvane_flags ${TEST_USES} GTest::gmock GTest::gtest_main)
    target_compile_definitions(${name} PRIVATE
        FRETVANE_SOURCE_DIR="${PROJECT_SOURCE_DIR}" FRETVANE_BINARY_DIR="${PROJECT_BINARY_DIR}")
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES ${properties})
endfunction()

# fretvane_bench(<name> SOURCES <files...> USES <targets...>)
function(fretvane_bench name)
    cmake_parse_arguments(BENCH "" "" "SOURCES;USES" ${ARGN})
    add_executable(${name} ${BENCH_SOURCES})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE fretvane_flags ${BENCH_USES} benchmark::benchmark_main)
endfunction()
