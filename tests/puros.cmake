# The tests of the sources without Windows calls, for the Windows test program and for the sanitizer build.
set(ZU_TESTES_PUROS
    ${CMAKE_CURRENT_LIST_DIR}/andamento_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/blocos_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/codificacoes_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/json_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/caminhos_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/lista_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/logo_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/mutirao_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/registros_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/veredito_test.cpp)
