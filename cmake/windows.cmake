# The Windows programs. Everything is linked statically; the programs import system DLLs only.

if(NOT WIN32)
    message(FATAL_ERROR "Use a preset: release or debug for the Windows programs, sanitize for the native checks.")
endif()
enable_language(RC)

target_compile_definitions(zu_opcoes INTERFACE
    UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0A00 NTDDI_VERSION=0x0A000003)
target_compile_options(zu_opcoes INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-ffunction-sections -fdata-sections>)
target_link_options(zu_opcoes INTERFACE -static -Wl,--gc-sections)

include(cmake/imagem.cmake)
include(cmake/atraso.cmake)
include(cmake/chaves.cmake)

add_library(zu_core STATIC
    core/arquivo.cpp
    core/assinatura.cpp
    core/config.cpp
    core/excecao.cpp
    core/hash.cpp
    core/instancia.cpp
    core/log.cpp
    core/pasta.cpp
    core/processo.cpp
    core/so_este_usuario.cpp
    core/utf16.cpp)
target_link_libraries(zu_core PUBLIC zu_puro zu_bcrypt)

add_library(zu_update STATIC
    update/acabamento.cpp
    update/agendador.cpp
    update/andamento.cpp
    update/aplicar.cpp
    update/atualizador.cpp
    update/blocos.cpp
    update/busca_lista.cpp
    update/cache.cpp
    update/cliente.cpp
    update/espaco.cpp
    update/estado.cpp
    update/faixa.cpp
    update/hash_arquivo.cpp
    update/http.cpp
    update/item.cpp
    update/jogo_aberto.cpp
    update/limpeza.cpp
    update/partes.cpp
    update/prefixo.cpp
    update/remocao.cpp
    update/seguidor_hash.cpp
    update/trocas.cpp
    update/verificacao.cpp)
target_link_libraries(zu_update PUBLIC zu_core zu_winhttp)

add_library(zu_game STATIC
    game/jogo.cpp
    game/opcoes.cpp
    game/requisitos.cpp
    game/token.cpp)
target_link_libraries(zu_game PUBLIC zu_core shell32)

add_library(zu_app STATIC
    app/controlador.cpp
    app/instancia_unica.cpp
    app/linha_de_comando.cpp
    app/selo.cpp
    app/sem_interface.cpp)
target_link_libraries(zu_app PUBLIC zu_update zu_game shell32 ole32)

add_library(zu_ui STATIC
    ui/acessibilidade/acessivel.cpp
    ui/captura/captura.cpp
    ui/controles/controle.cpp
    ui/controles/controle_acessivel.cpp
    ui/controles/face_guardada.cpp
    ui/controles/lista.cpp
    ui/controles/pintor_controle.cpp
    ui/desenho/contraste.cpp
    ui/desenho/desenho.cpp
    ui/desenho/fontes.cpp
    ui/desenho/moldura.cpp
    ui/interface.cpp
    ui/janelas/area_de_transferencia.cpp
    ui/janelas/barra_de_tarefas.cpp
    ui/janelas/conselhos.cpp
    ui/janelas/diagnostico.cpp
    ui/janelas/dica.cpp
    ui/janelas/estado_interface.cpp
    ui/janelas/fim_da_interface.cpp
    ui/janelas/janela.cpp
    ui/janelas/janela_acessivel.cpp
    ui/janelas/modal.cpp
    ui/janelas/molde.cpp
    ui/janelas/opcoes.cpp
    ui/janelas/pintor_diagnostico.cpp
    ui/janelas/pintor_modal.cpp
    ui/janelas/pintor_opcoes.cpp
    ui/janelas/pintor_principal.cpp
    ui/janelas/pintor_requisitos.cpp
    ui/janelas/principal.cpp
    ui/janelas/requisitos.cpp
    ui/janelas/rolagem.cpp
    ui/site/runtime_site.cpp
    ui/site/visao_site.cpp)
target_link_libraries(zu_ui PUBLIC zu_app zu_gdiplus zu_dwmapi zu_oleacc zu_oleaut32 gdi32 user32 ole32 uuid)

add_executable(ZuLauncher WIN32 app/main.cpp ui/recursos/launcher.rc)
# The keys last: what needs them comes before.
target_link_libraries(ZuLauncher PRIVATE zu_ui zu_app zu_update zu_chaves)

add_library(zu_trocas STATIC
    tools/updater_helper/aplicar_trocas.cpp
    tools/updater_helper/argumentos.cpp
    tools/updater_helper/execucao.cpp)
target_link_libraries(zu_trocas PUBLIC zu_core)

add_executable(UpdaterHelper WIN32 tools/updater_helper/main.cpp ui/recursos/helper.rc)
target_link_libraries(UpdaterHelper PRIVATE zu_trocas)

add_library(zu_forjal STATIC
    tools/forjal/arquivo_secreto.cpp
    tools/forjal/chave_da_lista.cpp
    tools/forjal/chaves.cpp
    tools/forjal/conferir.cpp
    tools/forjal/conferir_pasta.cpp
    tools/forjal/conferir_url.cpp
    tools/forjal/forjal.cpp
    tools/forjal/lista_publicada.cpp
    tools/forjal/opcoes.cpp
    tools/forjal/paralelo.cpp
    tools/forjal/publicados.cpp
    tools/forjal/publicar/chaves_no_cliente.cpp
    tools/forjal/publicar/continuar.cpp
    tools/forjal/publicar/copia.cpp
    tools/forjal/publicar/exclusoes.cpp
    tools/forjal/publicar/mudancas.cpp
    tools/forjal/publicar/na_saida.cpp
    tools/forjal/publicar/pedido.cpp
    tools/forjal/publicar/publicar.cpp
    tools/forjal/publicar/remocoes.cpp
    tools/forjal/publicar/trava.cpp
    tools/forjal/publicar/troca.cpp
    tools/forjal/relatorio.cpp
    tools/forjal/saida.cpp
    tools/forjal/selar.cpp
    tools/forjal/sonda.cpp
    tools/forjal/varredura.cpp)
target_link_libraries(zu_forjal PUBLIC zu_app)

add_executable(Forjal tools/forjal/main.cpp ui/recursos/forjal.rc)
target_link_libraries(Forjal PRIVATE zu_forjal)

string(REPLACE "." "," versao_numerica "${PROJECT_VERSION}.0")
# Asked in every build, since a commit needs no new configuration; only what changes here is made again: the resources.
if(NOT ZU_COMMIT MATCHES "^[0-9A-Za-z.-]*$")
    message(FATAL_ERROR "ZU_COMMIT: \"${ZU_COMMIT}\" is no name of a commit")
endif()
set(pasta_do_commit ${CMAKE_BINARY_DIR}/gerado)
add_custom_target(zu_commit
    COMMAND ${CMAKE_COMMAND} "-DRAIZ=${CMAKE_SOURCE_DIR}" "-DCOMMIT=${ZU_COMMIT}"
            "-DSAIDA=${pasta_do_commit}/commit.rci" -P ${CMAKE_SOURCE_DIR}/cmake/gerar_commit.cmake
    BYPRODUCTS ${pasta_do_commit}/commit.rci
    COMMENT "Asking for the commit"
    VERBATIM)
# What the resources of a program say of its version.
function(zu_versao alvo)
    target_compile_definitions(${alvo} PRIVATE
        $<$<COMPILE_LANGUAGE:RC>:ZU_VERSAO_NUMERICA=${versao_numerica}>
        $<$<COMPILE_LANGUAGE:RC>:ZU_VERSAO_TEXTO=${PROJECT_VERSION}>)
    target_include_directories(${alvo} PRIVATE $<$<COMPILE_LANGUAGE:RC>:${pasta_do_commit}>)
    add_dependencies(${alvo} zu_commit)
endfunction()
foreach(programa ZuLauncher UpdaterHelper Forjal)
    target_link_options(${programa} PRIVATE -municode $<$<CONFIG:Release>:-s>)
    zu_versao(${programa})
endforeach()
set_property(SOURCE ui/recursos/launcher.rc ui/recursos/helper.rc ui/recursos/forjal.rc
    PROPERTY OBJECT_DEPENDS
    ${pasta_do_commit}/commit.rci
    ${CMAKE_SOURCE_DIR}/ui/recursos/comum.rci
    ${CMAKE_SOURCE_DIR}/ui/recursos/icone.ico
    ${CMAKE_SOURCE_DIR}/ui/recursos/logo.tga
    ${CMAKE_SOURCE_DIR}/ui/recursos/programa.manifest)
