#!/usr/bin/env bash
# What only real counterparts can show: openssl checks a list that Forjal signed, and nginx answers over HTTPS with a
# certificate that nobody trusts.
set -eu
. "$(dirname "$0")/../scripts/comum.sh"
pasta=$RAIZ/build/servidor-real
bin=$RAIZ/build/release/bin
chaves=$RAIZ/build/release/chaves-dev
trap 'encerrar_nginx "$pasta/nginx"; rm -rf "$pasta"' EXIT
rm -rf "$pasta"
mkdir -p "$pasta/cliente/Data" "$pasta/www" "$pasta/jogo" "$pasta/nginx"
janela() { printf 'Z:%s' "${1//\//\\}"; }
falhou() { echo "FALHOU: $*" >&2; exit 1; }

echo conteúdo >"$pasta/cliente/Data/um arquivo.txt"
no_wine release "$bin/Forjal.exe" publicar "--cliente=$(janela "$pasta/cliente")" "--saida=$(janela "$pasta/www")" \
    "--chave=$(janela "$chaves/lista.chave")" --seq=1
python3 - "$chaves/lista.pub" "$pasta/www/UpdateList.txt" "$pasta" <<'FIM'
import base64, pathlib, subprocess, sys
blob, lista, pasta = pathlib.Path(sys.argv[1]).read_bytes(), pathlib.Path(sys.argv[2]).read_bytes(), pathlib.Path(sys.argv[3])
expoente, modulo = int.from_bytes(blob[24:27], 'big'), int.from_bytes(blob[27:], 'big')
(pasta / 'chave.cnf').write_text('asn1=SEQUENCE:k\n[k]\nn=INTEGER:%d\ne=INTEGER:%d\n' % (modulo, expoente))
subprocess.run(['openssl', 'asn1parse', '-genconf', pasta / 'chave.cnf', '-noout', '-out', pasta / 'chave.der'], check=True)
subprocess.run(['openssl', 'rsa', '-RSAPublicKey_in', '-inform', 'DER', '-in', pasta / 'chave.der', '-pubout', '-out',
                pasta / 'chave.pem'], check=True, stderr=subprocess.DEVNULL)
assinados, assinatura = lista.split(b';assinatura\t')
(pasta / 'assinados').write_bytes(assinados)
(pasta / 'assinatura').write_bytes(base64.b64decode(assinatura))
FIM
openssl dgst -sha256 -verify "$pasta/chave.pem" -signature "$pasta/assinatura" "$pasta/assinados"
printf x >>"$pasta/assinados"
! openssl dgst -sha256 -verify "$pasta/chave.pem" -signature "$pasta/assinatura" "$pasta/assinados" 2>/dev/null ||
    falhou "openssl aceitou uma lista mexida"

openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=127.0.0.1 -keyout "$pasta/nginx/chave" \
    -out "$pasta/nginx/certificado" 2>/dev/null
iniciar_nginx "$pasta/nginx" "$pasta/www" ssl
no_wine release "$bin/Forjal.exe" selar "--segredo=$(janela "$chaves/selo.segredo")" \
    "--saida=$(janela "$pasta/jogo/Launcher.emu")" "--update=https://127.0.0.1:$PORTA/"
codigo=0
no_wine release "$bin/ZuLauncher.exe" --sem-interface "--cliente=$(janela "$pasta/jogo")" || codigo=$?
cat "$pasta/jogo/ZuLauncher.log"
[ "$codigo" = 1 ] || falhou "código $codigo"
grep -q 'terminou em "semservidor": Sem conexão com o servidor de atualização (download: ' "$pasta/jogo/ZuLauncher.log" ||
    falhou "o certificado sem confiança foi aceito"
[ ! -e "$pasta/jogo/Data" ] && [ ! -e "$pasta/jogo/Config" ] || falhou "algo foi gravado"
curl -sk "https://127.0.0.1:$PORTA/UpdateList.txt" | cmp - "$pasta/www/UpdateList.txt" || falhou "o nginx não respondia"
