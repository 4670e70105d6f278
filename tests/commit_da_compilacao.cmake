# What a build takes for its commit, tried on a repository of its own:
# cmake -DRAIZ=… -DPASTA=… -P commit_da_compilacao.cmake
cmake_minimum_required(VERSION 3.25)
set(arvore ${PASTA}/arvore)
set(saida ${PASTA}/commit.rci)

function(git)
    execute_process(
        COMMAND git -c safe.directory=* -c user.name=teste -c user.email=teste@example.invalid -C ${arvore} ${ARGN}
        OUTPUT_VARIABLE disse OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(disse "${disse}" PARENT_SCOPE)
endfunction()

# esperar(TREE GIVEN COMMIT)
function(esperar raiz dado commit)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -DRAIZ=${raiz} -DCOMMIT=${dado} -DSAIDA=${saida} -P ${RAIZ}/cmake/gerar_commit.cmake
        COMMAND_ERROR_IS_FATAL ANY)
    file(READ ${saida} texto)
    if(NOT texto STREQUAL "#define ZU_COMMIT \"${commit}\"\n")
        message(FATAL_ERROR "expected ${commit}: ${texto}")
    endif()
endfunction()

file(REMOVE_RECURSE ${PASTA})
file(WRITE ${arvore}/pasta/arquivo "1")
git(init -q)
esperar(${arvore} "" desconhecido)
git(add pasta)
git(commit -q -m "um")
git(rev-parse HEAD)
esperar(${arvore} "" ${disse})
esperar(${arvore}/pasta "" desconhecido)
esperar(${arvore} abc abc)
# What is not tracked is not built. The same commit must not make the resources again.
file(WRITE ${arvore}/novo "2")
esperar(${arvore} "" ${disse})
execute_process(COMMAND touch -d @1 ${saida} COMMAND_ERROR_IS_FATAL ANY)
esperar(${arvore} "" ${disse})
file(TIMESTAMP ${saida} hora "%s")
if(NOT hora STREQUAL 1)
    message(FATAL_ERROR "written again")
endif()
file(WRITE ${arvore}/pasta/arquivo "mudou")
esperar(${arvore} "" ${disse}.mudado)
# As in a container that builds another user's folder.
execute_process(COMMAND chown -R 12345 ${arvore} RESULT_VARIABLE codigo ERROR_QUIET)
if(codigo EQUAL 0)
    esperar(${arvore} "" ${disse}.mudado)
endif()
file(REMOVE_RECURSE ${PASTA})
