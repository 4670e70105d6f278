# Native build with ASan and UBSan: the sources without Windows calls, their tests, and a fuzz target for each parser of
# bytes that come from a server or from a disk.

set(sanitizar -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
target_compile_options(zu_opcoes INTERFACE ${sanitizar})
target_link_options(zu_opcoes INTERFACE ${sanitizar})
target_compile_options(zu_puro PRIVATE -fsanitize=fuzzer-no-link)

set(ZU_GOOGLETEST /usr/src/googletest CACHE PATH "Sources of GoogleTest")
add_subdirectory(${ZU_GOOGLETEST} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
include(GoogleTest)
include(tests/puros.cmake)

add_executable(testes_puros ${ZU_TESTES_PUROS})
target_link_libraries(testes_puros PRIVATE zu_puro GTest::gtest_main)
gtest_discover_tests(testes_puros)

# Threads under the sanitizer for them, which does not go together with the others.
add_executable(testes_threads update/mutirao.cpp tests/mutirao_test.cpp)
target_include_directories(testes_threads PRIVATE ${CMAKE_SOURCE_DIR})
target_compile_options(testes_threads PRIVATE -fsanitize=thread)
target_link_options(testes_threads PRIVATE -fsanitize=thread)
target_link_libraries(testes_threads PRIVATE GTest::gtest_main)
gtest_discover_tests(testes_threads TEST_PREFIX threads.)

set(ZU_SEGUNDOS_DE_FUZZ 60 CACHE STRING "How long each fuzz target runs in the tests")
foreach(alvo blocos lista registros caminhos json relatorio)
    add_executable(fuzz_${alvo} tests/fuzz/${alvo}_fuzz.cpp)
    target_link_libraries(fuzz_${alvo} PRIVATE zu_puro)
    target_compile_options(fuzz_${alvo} PRIVATE -fsanitize=fuzzer)
    target_link_options(fuzz_${alvo} PRIVATE -fsanitize=fuzzer)
    # Starts from the committed seeds and keeps what it finds in the build folder.
    set(achados ${CMAKE_BINARY_DIR}/fuzz/${alvo})
    file(MAKE_DIRECTORY ${achados})
    add_test(NAME fuzz_${alvo}
        COMMAND fuzz_${alvo} -max_total_time=${ZU_SEGUNDOS_DE_FUZZ} -max_len=4096 -timeout=10 -print_final_stats=1
                -artifact_prefix=${CMAKE_BINARY_DIR}/fuzz/ ${achados} ${CMAKE_SOURCE_DIR}/tests/fuzz/sementes/${alvo})
    set_tests_properties(fuzz_${alvo} PROPERTIES LABELS fuzz TIMEOUT 600)
endforeach()
