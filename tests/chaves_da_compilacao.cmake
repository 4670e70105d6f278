# What the configuration takes for keys, tried on a build folder of its own:
# cmake -DRAIZ=… -DPASTA=… -DCHAVES=… -P chaves_da_compilacao.cmake
cmake_minimum_required(VERSION 3.25)
set(pub ${CHAVES}/lista.pub)
set(segredo ${CHAVES}/selo.segredo)

# configurar(LIST SECRET WORDS): configures, and finds the words in what it says; without words it must succeed.
function(configurar lista segredo palavras)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -S ${RAIZ} -B ${PASTA} -G Ninja
                -DCMAKE_TOOLCHAIN_FILE=${RAIZ}/cmake/mingw-w64.cmake -DCMAKE_BUILD_TYPE=Release
                "-DZU_CHAVE_LISTA=${lista}" "-DZU_SEGREDO_SELO=${segredo}"
        RESULT_VARIABLE codigo OUTPUT_VARIABLE saida ERROR_VARIABLE saida)
    # The tool breaks its lines by their length, which depends on the folder.
    string(REGEX REPLACE "[ \n]+" " " corrida "${saida}")
    string(FIND "${corrida}" "${palavras}" onde)
    if(onde EQUAL -1 OR (palavras STREQUAL "" AND NOT codigo EQUAL 0) OR (NOT palavras STREQUAL "" AND codigo EQUAL 0))
        message(FATAL_ERROR "\"${lista}\" \"${segredo}\": ${codigo}\n${saida}")
    endif()
endfunction()

file(REMOVE_RECURSE ${PASTA})
file(MAKE_DIRECTORY ${PASTA})
string(REPEAT "x" 411 outra)
file(WRITE ${PASTA}/outra.pub "${outra}")
configurar("${pub}" "" "give both or neither")
configurar("" "${segredo}" "give both or neither")
configurar("${CHAVES}/lista.chave" "${segredo}" "1755 bytes, expected 411")
configurar("${pub};${PASTA}/outra.pub" "${segredo}" "not the public key")
configurar("${pub}" "${pub}" "411 bytes, expected 32")

# The tests of a folder that began with development keys end with them. Relative paths count from the source folder.
configurar("" "" "")
file(RELATIVE_PATH relativa ${RAIZ} ${CHAVES})
configurar("${relativa}/lista.pub" "${relativa}/selo.segredo" "")
file(READ ${PASTA}/build.ninja regras)
if(regras MATCHES "testes\\.exe" OR NOT regras MATCHES "${pub}")
    message(FATAL_ERROR "the tests are still built, or the key is another one")
endif()
file(REMOVE_RECURSE ${PASTA})
