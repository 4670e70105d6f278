# Writes the commit that the tree stands at, for the version resource, and leaves the file alone when it says so already:
# cmake -DRAIZ=folder -DCOMMIT=given -DSAIDA=file -P gerar_commit.cmake
cmake_minimum_required(VERSION 3.25)

# git(OUTPUT ARGUMENT...): what git says, and nothing when it fails or is not there. Whose the folder is does not matter:
# its scripts are being run already. Neither does a hook that has called this, nor a lock that somebody holds.
function(git saida)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env --unset=GIT_DIR --unset=GIT_WORK_TREE --unset=GIT_INDEX_FILE
                git --no-optional-locks -c safe.directory=* -C ${RAIZ} ${ARGN}
        RESULT_VARIABLE codigo OUTPUT_VARIABLE texto ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT codigo EQUAL 0)
        set(texto "")
    endif()
    set(${saida} "${texto}" PARENT_SCOPE)
endfunction()

if("${COMMIT}" STREQUAL "")
    git(COMMIT rev-parse HEAD)
    git(acima rev-parse --show-prefix)
    git(mudancas status --porcelain --untracked-files=no)
    if("${COMMIT}" STREQUAL "" OR NOT "${acima}" STREQUAL "")
        set(COMMIT desconhecido)  # no repository, or somebody else's that this tree lies in
    elseif(NOT "${mudancas}" STREQUAL "")
        string(APPEND COMMIT ".mudado")
    endif()
endif()

file(CONFIGURE OUTPUT ${SAIDA} CONTENT "#define ZU_COMMIT \"${COMMIT}\"\n")
