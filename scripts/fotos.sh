#!/usr/bin/env bash
# The pictures of docs/imagens: every window of the launcher, in a game folder on a drive of its own, J:, so that no path
# of this machine is in them. fotos.sh makes them anew; fotos.sh --conferir compares with what is there, pixel by pixel.
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
    if [ "${1:-}" != --conferir ]; then
        cp "$foto" docs/imagens/
    elif ! cmp -s "$foto" "docs/imagens/${foto##*/}"; then
        diferem=$(compare -metric AE "$foto" "docs/imagens/${foto##*/}" null: 2>&1) || true
        [ "$diferem" = 0 ] || { echo "docs/imagens/${foto##*/}: diferem $diferem pixels; veja, e rode scripts/fotos.sh"; outras=1; }
    fi
done
exit $outras
