#!/usr/bin/env bash
# The pictures of docs/imagens: every window of the launcher, in a game folder on a drive of its own, J:, so that no path
# of this machine is in them. fotos.sh makes them anew; fotos.sh --conferir compares with what is there: the fonts of
# another machine may change two pixels of a hundred, and the windows none.
set -eu
. "$(dirname "$0")/comum.sh"
cd "$RAIZ"
readonly NOVAS=$RAIZ/build/fotos DISCO=$RAIZ/build/fotos-disco
readonly UNIDADE=$RAIZ/build/release/wine/dosdevices/j:

[ -n "${DISPLAY:-}" ] || { abrir_tela; trap fechar_tela EXIT; }
preparar release ZuLauncher Forjal jogo_falso
rm -rf "$NOVAS" "$DISCO"
mkdir -p "$DISCO/Zu"
ln -sfn "$DISCO" "$UNIDADE"
cp build/release/bin/jogo_falso.exe "$DISCO/Zu/Zu.exe"
echo 'relatorio=bom' >"$DISCO/Zu/jogo_falso.txt"
# Nobody serves there: the launcher goes on with the client as it is.
no_wine release build/release/bin/Forjal.exe selar --segredo=build/release/chaves-dev/selo.segredo \
    '--saida=J:\Zu\Launcher.emu' '--nome=Zu Demonstração' --update=http://127.0.0.1:9/ >/dev/null
no_wine release build/release/bin/ZuLauncher.exe '--cliente=J:\Zu' "--captura=Z:${NOVAS//\//\\}"
rm -rf "$UNIDADE" "$DISCO"

outras=0
for foto in "$NOVAS"/*.png; do
    antes=docs/imagens/${foto##*/}
    if [ "${1:-}" != --conferir ]; then
        cp "$foto" "$antes"
    elif ! cmp -s "$foto" "$antes"; then
        diferem=$(compare -metric AE "$foto" "$antes" null: 2>&1) || true
        echo "$antes: diferem $diferem pixels; veja, e rode scripts/fotos.sh"
        [ $((50 * diferem)) -le "$(identify -format '%[fx:w*h]' "$antes")" ] || outras=1
    fi
done
exit $outras
