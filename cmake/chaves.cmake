# The key material that goes into the launcher: the public keys of the update list and the secret of the settings file.
# What is not given is made once, in the build folder, by Forjal itself, and serves development only.

set(ZU_PASTA_CHAVES ${CMAKE_BINARY_DIR}/chaves-dev)
if("${ZU_CHAVE_LISTA}" STREQUAL "" AND "${ZU_SEGREDO_SELO}" STREQUAL "")
    set(ZU_CHAVES_DE_DESENVOLVIMENTO ON)
    set(chaves ${ZU_PASTA_CHAVES}/lista.pub)
    set(segredo ${ZU_PASTA_CHAVES}/selo.segredo)
    message(STATUS "Development keys are made in ${ZU_PASTA_CHAVES}: not for a launcher that players get")
    add_custom_command(
        OUTPUT ${ZU_PASTA_CHAVES}/lista.chave ${chaves} ${segredo}
        COMMAND ${CMAKE_COMMAND} -E rm -rf ${ZU_PASTA_CHAVES}
        COMMAND Forjal chaves --saida=chaves-dev
        WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
        COMMENT "Making development keys: not for a launcher that players get"
        VERBATIM)
elseif("${ZU_CHAVE_LISTA}" STREQUAL "" OR "${ZU_SEGREDO_SELO}" STREQUAL "")
    # The missing one would be made for development, and nobody would notice before the players do.
    message(FATAL_ERROR "ZU_CHAVE_LISTA and ZU_SEGREDO_SELO belong together: give both or neither")
else()
    set(ZU_CHAVES_DE_DESENVOLVIMENTO OFF)
    include(cmake/conferir_chaves.cmake)
    set(chaves "")
    foreach(chave IN LISTS ZU_CHAVE_LISTA)
        cmake_path(ABSOLUTE_PATH chave BASE_DIRECTORY ${CMAKE_SOURCE_DIR} NORMALIZE)
        conferir_publica("${chave}")
        list(APPEND chaves "${chave}")
    endforeach()
    cmake_path(ABSOLUTE_PATH ZU_SEGREDO_SELO BASE_DIRECTORY ${CMAKE_SOURCE_DIR} NORMALIZE OUTPUT_VARIABLE segredo)
    conferir_segredo("${segredo}")
endif()

# The tests sign their own lists, which only the private key of a development pair can do. What an earlier configuration
# of this folder has chosen does not count once the keys are real.
include(CMakeDependentOption)
cmake_dependent_option(ZU_TESTES "Build the tests" ON ZU_CHAVES_DE_DESENVOLVIMENTO OFF)

set(gerado ${CMAKE_BINARY_DIR}/gerado/chaves.cpp)
add_custom_command(
    OUTPUT ${gerado}
    COMMAND ${CMAKE_COMMAND} "-DCHAVES=${chaves}" "-DSEGREDO=${segredo}" "-DSAIDA=${gerado}"
            -P ${CMAKE_SOURCE_DIR}/cmake/gerar_chaves.cmake
    DEPENDS ${chaves} ${segredo} ${CMAKE_SOURCE_DIR}/cmake/gerar_chaves.cmake
    VERBATIM)
add_library(zu_chaves STATIC ${gerado})
target_link_libraries(zu_chaves PUBLIC zu_core)
