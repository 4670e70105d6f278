# The key material that goes into the launcher: the public keys of the update list and the secret of the settings file.
# What is not given is made once, in the build folder, by Forjal itself, and serves development only.

set(ZU_PASTA_CHAVES ${CMAKE_BINARY_DIR}/chaves-dev)
set(chaves ${ZU_CHAVE_LISTA})
set(segredo ${ZU_SEGREDO_SELO})

if(NOT chaves OR NOT segredo)
    message(STATUS "Development keys are made in ${ZU_PASTA_CHAVES}: not for a launcher that players get")
    add_custom_command(
        OUTPUT ${ZU_PASTA_CHAVES}/lista.chave ${ZU_PASTA_CHAVES}/lista.pub ${ZU_PASTA_CHAVES}/selo.segredo
        COMMAND ${CMAKE_COMMAND} -E rm -rf ${ZU_PASTA_CHAVES}
        COMMAND Forjal chaves --saida=chaves-dev
        WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
        COMMENT "Making development keys: not for a launcher that players get"
        VERBATIM)
    if(NOT chaves)
        set(chaves ${ZU_PASTA_CHAVES}/lista.pub)
    endif()
    if(NOT segredo)
        set(segredo ${ZU_PASTA_CHAVES}/selo.segredo)
    endif()
    set(ZU_CHAVES_DE_DESENVOLVIMENTO ON)
else()
    set(ZU_CHAVES_DE_DESENVOLVIMENTO OFF)
endif()

# The tests sign their own lists, which only the private key of a development pair can do.
option(ZU_TESTES "Build the tests" ${ZU_CHAVES_DE_DESENVOLVIMENTO})

set(gerado ${CMAKE_BINARY_DIR}/gerado/chaves.cpp)
add_custom_command(
    OUTPUT ${gerado}
    COMMAND ${CMAKE_COMMAND} "-DCHAVES=${chaves}" "-DSEGREDO=${segredo}" "-DSAIDA=${gerado}"
            -P ${CMAKE_SOURCE_DIR}/cmake/gerar_chaves.cmake
    DEPENDS ${chaves} ${segredo} ${CMAKE_SOURCE_DIR}/cmake/gerar_chaves.cmake
    VERBATIM)
add_library(zu_chaves STATIC ${gerado})
target_link_libraries(zu_chaves PUBLIC zu_core)
