# What every target of ours is compiled with. Contraction is off so that a build gives the same
# digits everywhere; the kernels with fused multiply-add switch it on for their own files.
add_library(tsm_options INTERFACE)
target_compile_features(tsm_options INTERFACE cxx_std_20)
target_include_directories(tsm_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(tsm_options INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -Werror
    -fvisibility=hidden -ffp-contract=off -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
    -mcx16)
# g++ 12 sees overlaps in std::string's operator+ where there are none (GCC bug 105651).
target_compile_options(tsm_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(TSM_FUZZ)
    # g++ is who judges warnings; clang's -Wconversion also means signs.
    target_compile_options(tsm_options INTERFACE -w)
endif()
if(TSM_SANITIZE)
    target_compile_options(tsm_options INTERFACE
        -fsanitize=${TSM_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(tsm_options INTERFACE -fsanitize=${TSM_SANITIZE})
endif()
if(TSM_SANITIZE MATCHES "address")
    # Every block from the system with its exact size, so that an overrun of one byte is found.
    target_compile_definitions(tsm_options INTERFACE TSM_EXACT_BLOCKS)
endif()

# Data folders of its own for every test and benchmark.
set(TSM_OWN_DATA_FOLDER ${PROJECT_SOURCE_DIR}/Tests/Support/OwnDataFolder.cpp)

# Optimised std::vector code of tests brings g++ 12's false alarms on sizes (GCC bug 105329).
set(TSM_VECTOR_OPTIONS
    $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow;-Wno-stringop-overread;-Wno-array-bounds>)

# tsm_add_test(name SOURCES... LIBS...): one test program, its cases known to ctest one by one.
function(tsm_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBS")
    add_executable(${name} ${arg_SOURCES} ${TSM_OWN_DATA_FOLDER})
    target_compile_options(${name} PRIVATE ${TSM_VECTOR_OPTIONS})
    target_link_libraries(${name} PRIVATE tsm_options ${arg_LIBS} GTest::gmock GTest::gtest_main)
    gtest_discover_tests(${name} NO_PRETTY_VALUES DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()

# tsm_add_bench(name SOURCES... LIBS...): one benchmark program.
function(tsm_add_bench name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBS")
    add_executable(${name} ${arg_SOURCES} ${TSM_OWN_DATA_FOLDER})
    target_link_libraries(${name} PRIVATE tsm_options ${arg_LIBS} benchmark::benchmark_main)
endfunction()
