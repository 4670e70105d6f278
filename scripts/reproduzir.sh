#!/usr/bin/env bash
# Proves that programs were built from this tree with these keys: builds them again in another folder, under another
# clock, language and umask, and compares every byte.
set -eu
. "$(dirname "$0")/comum.sh"

ajuda() {
    cat <<'FIM'
scripts/reproduzir.sh [opções] PASTA_DOS_PROGRAMAS PASTA_DAS_CHAVES [PASTA_DAS_OUTRAS_CHAVES...]

Compila esta árvore de novo, noutra pasta, e compara byte a byte os programas que há em PASTA_DOS_PROGRAMAS
(ZuLauncher.exe, UpdaterHelper.exe, Forjal.exe). Uma assinatura Authenticode fica de fora da comparação.
PASTA_DAS_CHAVES tem lista.pub e selo.segredo; de outras pastas vale só a lista.pub, na ordem da compilação original.

  --so=NOME        só este programa ("ZuLauncher"); pode repetir
  --commit=NOME    o commit, para uma árvore sem git
  --ajuda          esta ajuda
FIM
}

so=()
commit=
while [ $# -gt 0 ]; do
    case $1 in
        --ajuda) ajuda; exit 0 ;;
        --so=?*) so+=("${1#*=}") ;;
        --commit=?*) commit=${1#*=} ;;
        --*) echo "opção desconhecida: $1 (veja scripts/reproduzir.sh --ajuda)" >&2; exit 2 ;;
        *) break ;;
    esac
    shift
done
[ $# -ge 2 ] || { ajuda >&2; exit 2; }
programas=$(realpath "$1")
segredo=$(realpath "$2")/selo.segredo
shift
listas=
for pasta in "$@"; do listas+="${listas:+;}$(realpath "$pasta")/lista.pub"; done
[ ${#so[@]} -gt 0 ] || for nome in ZuLauncher UpdaterHelper Forjal; do
    [ ! -f "$programas/$nome.exe" ] || so+=("$nome")
done
[ ${#so[@]} -gt 0 ] || { echo "nenhum programa em $programas" >&2; exit 2; }

# shellcheck disable=SC2086
garantir_pacotes $PACOTES_BASE
LUGAR=$RAIZ/build/reproduzir
rm -rf "$LUGAR"
FONTES=$LUGAR/uma-pasta-de-nome-bem-mais-comprido-do-que-o-da-outra/fontes
COMPILADO=$LUGAR/b
mkdir -p "$FONTES"
# The copy has no repository, so it is told the commit that this tree would name.
cmake "-DRAIZ=$RAIZ" "-DCOMMIT=$commit" "-DSAIDA=$LUGAR/commit.rci" -P "$RAIZ/cmake/gerar_commit.cmake"
commit=$(cut -d'"' -f2 "$LUGAR/commit.rci")
echo "commit $commit"
tar -C "$RAIZ" --exclude=./build --exclude=./out --exclude=./.git -c . | tar -C "$FONTES" -x

# Nothing of what the first build has made is taken over: that would prove nothing.
(
    umask 077
    export CCACHE_DISABLE=1 TZ=Asia/Tokyo LC_ALL=C HOME="$LUGAR" SOURCE_DATE_EPOCH=1000000000
    cd "$FONTES"
    cmake --preset release -B "$COMPILADO" "-DZU_CHAVE_LISTA=$listas" "-DZU_SEGREDO_SELO=$segredo" \
        "-DZU_COMMIT=$commit" >"$LUGAR/registro.log" 2>&1 &&
        cmake --build "$COMPILADO" --target "${so[@]}" >>"$LUGAR/registro.log" 2>&1
) || { tail -n 60 "$LUGAR/registro.log"; exit 1; }

diferentes=0
for nome in "${so[@]}"; do
    python3 "$RAIZ/scripts/comparar_programas.py" "$programas/$nome.exe" "$COMPILADO/bin/$nome.exe" || diferentes=1
done
if [ $diferentes = 0 ]; then
    rm -rf "$LUGAR"
    exit 0
fi
# Beside a build's own programs lie the objects that they were linked from.
if [ -d "$programas/../CMakeFiles" ]; then
    (cd "$COMPILADO" && find . -name '*.obj' -o -name '*.res') | sort | while read -r parte; do
        cmp -s "$COMPILADO/$parte" "$programas/../$parte" || echo "  difere: $parte"
    done
fi
echo "o que foi compilado de novo ficou em $COMPILADO" >&2
exit 1
