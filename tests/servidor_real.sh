#!/usr/bin/env bash
# What only a real counterpart can show: nginx answers over HTTPS with a certificate that nobody trusts.
set -eu
. "$(dirname "$0")/../scripts/comum.sh"
pasta=$RAIZ/build/servidor-real
bin=$RAIZ/build/release/bin
chaves=$RAIZ/build/release/chaves-dev
trap 'encerrar_nginx "$pasta/nginx"; rm -rf "$pasta"' EXIT
rm -rf "$pasta"
mkdir -p "$pasta/www" "$pasta/jogo" "$pasta/nginx"
janela() { printf 'Z:%s' "${1//\//\\}"; }
falhou() { echo "FALHOU: $*" >&2; exit 1; }

echo lista >"$pasta/www/UpdateList.txt"
openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=127.0.0.1 -keyout "$pasta/nginx/chave" \
    -out "$pasta/nginx/certificado" 2>/dev/null
iniciar_nginx "$pasta/nginx" "$pasta/www" ssl
no_wine release "$bin/Forjal.exe" selar "--segredo=$(janela "$chaves/selo.segredo")" \
    "--saida=$(janela "$pasta/jogo/Launcher.emu")" "--update=https://127.0.0.1:$PORTA/"
no_wine release "$bin/ZuLauncher.exe" --sem-interface "--cliente=$(janela "$pasta/jogo")" || cat "$pasta/jogo/ZuLauncher.log"
grep -q 'terminou em "semservidor": Sem conexão com o servidor de atualização (download: ' "$pasta/jogo/ZuLauncher.log" ||
    falhou "o certificado sem confiança foi aceito"
curl -sk "https://127.0.0.1:$PORTA/UpdateList.txt" | cmp - "$pasta/www/UpdateList.txt" || falhou "o nginx não respondia"
