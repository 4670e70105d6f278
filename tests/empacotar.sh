#!/usr/bin/env bash
# The package as players meet it: signed by a certificate of the test's own, installed for a Windows user who has nothing
# yet, brought up to date, updated, repaired, refused where it must be, and removed again.
set -eu
. "$(dirname "$0")/../scripts/comum.sh"
pasta=$RAIZ/build/teste-pacote
bin=$RAIZ/build/release/bin
chaves=$RAIZ/build/release/chaves-dev
disco=$pasta/wine/drive_c
jogo="$disco/users/$(id -un)/AppData/Local/Programs/Zu & Cia"
entrada='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\ZuLauncher-Zu & Cia'
limpar() {
    local codigo=$?
    kill "${servico:-}" 2>/dev/null || true
    encerrar_nginx "$pasta/nginx"
    encerrar_wine teste-pacote
    # Signatures of this test's own certificate are of no use to the next one.
    [ ! -e "$pasta/inicio" ] || find "$RAIZ/build/empacotar/assinados" -type f -newer "$pasta/inicio" -delete
    [ $codigo != 0 ] || rm -rf "$pasta"
    exit $codigo
}
falhou() { echo "FALHOU: $*" >&2; cat "$jogo/ZuLauncher.log" >&2 2>/dev/null || true; exit 1; }
janela() { printf 'Z:%s' "${1//\//\\}"; }
# A Windows program of the new user, whose desktop is not that of whoever runs the tests.
w() { HOME=$pasta/casa no_wine teste-pacote "$@"; }
# codigo CODE COMMAND...: fails unless it ends with the code.
codigo() {
    local esperado=$1 veio=0
    shift
    "$@" || veio=$?
    [ $veio = "$esperado" ] || falhou "código $veio, esperado $esperado: $*"
}
retrato() { (cd "$1" && find . -type d && find . -type f ! -name '*.log' -exec sha256sum {} +) | sort; }
esperar() {
    for _ in $(seq 600); do
        if "$@"; then return 0; fi
        sleep 0.1
    done
    falhou "não aconteceu: $*"
}
launcher() { codigo "$1" w "$jogo/ZuLauncher.exe" --sem-interface "${@:2}"; }
instalar() { codigo "$1" w "$pasta/o pacote/$instalador" /S "${@:2}"; }
conferir_jogo() { [ -z "$(cd "$pasta/cliente" && find . -type f -exec cmp {} "$jogo"/{} \; 2>&1)" ]; }
publicar() {
    w "$bin/Forjal.exe" publicar "--cliente=$(janela "$pasta/cliente")" "--saida=$(janela "$pasta/www")" \
        "--chave=$(janela "$chaves/lista.chave")" "--seq=$1" >/dev/null
}
empacotar() {
    ZU_SENHA='sen ha$1' "$RAIZ/empacotar" "--nome=Zu & Cia" "--update=http://127.0.0.1:$PORTA/" "--compilacao=$RAIZ/build/release" \
        --certificado="$pasta/c.pfx" --raiz="$pasta/c.pem" --carimbo="http://127.0.0.1:$carimbo/" --raiz-do-carimbo="$1" --chaves="$2" \
        --saida="$pasta/o pacote" >"$pasta/empacotar.log" 2>&1
}

trap limpar EXIT
rm -rf "$pasta"
mkdir -p "$pasta/casa" "$pasta/cliente/Data" "$pasta/www" "$pasta/outras"
touch "$pasta/inicio"
cd "$pasta"
w wineboot -i >/dev/null 2>&1
certificado() {
    openssl req -x509 -newkey rsa:2048 -nodes -days 9 -subj "/CN=$1" -addext "extendedKeyUsage=$2" -keyout "$1.key" \
        -out "$1.pem" 2>/dev/null
}
certificado c codeSigning
certificado t critical,timeStamping
openssl pkcs12 -export -inkey c.key -in c.pem -out c.pfx -passout 'pass:sen ha$1'
echo 01 >serie
printf '%s\n' '[tsa]' 'default_tsa = t' '[t]' 'serial = serie' 'signer_cert = t.pem' 'signer_key = t.key' \
    'signer_digest = sha256' 'default_policy = 1.2.3.4' 'digests = sha256' >carimbo.cnf
# A time stamp server, and a port where nobody ever answers.
python3 - >portas 2>carimbos.log <<'FIM' &
import http.server, socket, subprocess
class Carimbo(http.server.BaseHTTPRequestHandler):
    def do_POST(self):
        open('pedido', 'wb').write(self.rfile.read(int(self.headers['Content-Length'])))
        resposta = subprocess.check_output('openssl ts -reply -config carimbo.cnf -queryfile pedido'.split())
        self.wfile.write(b'HTTP/1.0 200 OK\r\nContent-Type: application/timestamp-reply\r\n\r\n' + resposta)
mudo = socket.create_server(('127.0.0.1', 0))
carimbo = http.server.HTTPServer(('127.0.0.1', 0), Carimbo)
print(carimbo.server_port, mudo.getsockname()[1], flush=True)
carimbo.serve_forever()
FIM
servico=$!
esperar test -s portas
read -r carimbo mudo <portas
iniciar_nginx "$pasta/nginx" "$pasta/www"

dizer "O pacote, duas vezes; e o de outras chaves e o de um carimbo em que ninguém confia, que deixam o que há"
empacotar t.pem "$chaves" || falhou "$(cat empacotar.log)"
cp "o pacote/SHA256SUMS.txt" somas
head -c 32 /dev/urandom >outras/selo.segredo
cp "$chaves/lista.pub" outras/
codigo 1 empacotar t.pem outras
codigo 1 empacotar c.pem "$chaves"
empacotar t.pem "$chaves" || falhou "$(cat empacotar.log)"
(cd "o pacote" && sha256sum -c --quiet ../somas)
! grep -r 'sen ha' empacotar.log "$RAIZ/build/empacotar/"*.log || falhou "a senha num registro"
instalador=$(cd "o pacote" && echo *.exe)
python3 -m zipfile -e "o pacote/"*.zip cliente

dizer "Onde não se instala"
mkdir -p "$disco/alheia/Data"
echo meu | tee "$disco/alheia/Data/macro.txt" >"$disco/alheia/meu.txt"
ln -s "$disco/Program Files" "$disco/atalho"
retrato "$disco" >antes
for caso in '4 C:\atalho\Zu' '4 C:\windows\..\WINDOWS\Zu' '4 C:\users' '4 C:\' '4 C:\windows' '5 C:\alheia'; do
    instalar "${caso%% *}" "/D=${caso#* }"
done
retrato "$disco" | diff antes - || falhou "uma instalação recusada deixou rastro"

dizer "A instalação, o primeiro download e uma atualização do próprio launcher"
cp "$bin/jogo_falso.exe" cliente/Zu.exe
head -c 3000000 /dev/urandom >"cliente/Data/praça.pak"
publicar 1
instalar 0
w reg query "$entrada" >/dev/null
[ "$(find casa "$disco" -name '*.lnk' | wc -l)" = 2 ] || falhou "faltam atalhos"
for programa in "$jogo"/*.exe "o pacote/$instalador"; do
    osslsigncode verify -in "$programa" -CAfile c.pem -TSA-CAfile t.pem | grep -q 'Timestamp Server Signature verification: ok' ||
        falhou "$programa: sem assinatura ou sem carimbo"
done
launcher 0
conferir_jogo || falhou "o primeiro download"
mv cliente/ZuLauncher.exe antigo.exe
osslsigncode sign -pkcs12 c.pfx -readpass <(printf 'sen ha$1') -n outro -in antigo.exe -out cliente/ZuLauncher.exe >/dev/null
publicar 2
launcher 3
esperar grep -qs 'terminou em "pronto"' "$jogo/ZuLauncher.log"
conferir_jogo || falhou "a atualização do launcher"

dizer "Consertos: um arquivo pelo launcher, o launcher pelo instalador, que não mexe no que é do jogador"
mkdir -p "$jogo/Screenshots"
echo foto >"$jogo/Screenshots/uma.png"
echo '[Video]' >"$jogo/Config/Zu.ini"
printf estrago | dd of="$jogo/Data/praça.pak" seek=1000 conv=notrunc status=none
launcher 0 --reparar
conferir_jogo || falhou "o conserto"
cp "$jogo/Config/Zu.ini" opcoes
echo estragado >"$jogo/ZuLauncher.exe"
instalar 0
cmp antigo.exe "$jogo/ZuLauncher.exe"

dizer "Com o launcher, de onde quer que seja, ou com o jogo aberto: nada muda"
recusar_aberto() {
    retrato "$jogo" >antes
    instalar 3
    codigo 3 w "$jogo/Desinstalar.exe" /S '_?=C:\elo'
    retrato "$jogo" | diff antes - || falhou "o que foi recusado deixou rastro"
}
cp cliente/{ZuLauncher.exe,Launcher.emu} outras/
ln -s "$jogo" "$disco/elo"
rm "$jogo/ZuLauncher.log"
w outras/ZuLauncher.exe --sem-interface "--cliente=$(janela "$jogo")" "--manifesto=http://127.0.0.1:$mudo/" &
esperar grep -qs Conectando "$jogo/ZuLauncher.log"
recusar_aberto
w taskkill /f /im ZuLauncher.exe >/dev/null
wait $! || true
cp "$bin/processo_parado.exe" "$jogo/Zu.exe"
w "$jogo/Zu.exe" &
esperar w taskkill /im Zu.exe >/dev/null 2>&1 # it has no window to be closed by this
recusar_aberto
w taskkill /f /im Zu.exe >/dev/null

dizer "A desinstalação: uma cópia da pasta não vai, e dela ficam só as coisas do jogador e o que um atalho de pasta mostra"
cp -r "$jogo" "$disco/copia"
retrato "$disco/copia" >antes
codigo 5 w 'C:\copia\Desinstalar.exe' /S '_?=C:\copia'
retrato "$disco/copia" | diff antes - || falhou "a desinstalação mexeu numa cópia"
ln -s "$disco/alheia" "$jogo/Data/elo"
retrato "$disco/alheia" >antes
w "$jogo/Desinstalar.exe" /S
esperar test ! -e "$jogo/Desinstalar.txt"
(cd "$jogo" && find . ! -type d | sort | tr '\n' ' ') >sobrou
[ "$(cat sobrou)" = "./Config/Zu.ini ./Data/elo ./Screenshots/uma.png " ] || falhou "sobrou $(cat sobrou)"
retrato "$disco/alheia" | diff antes - || falhou "a desinstalação mexeu no que é alheio"
[ -z "$(find casa "$disco" -name '*.lnk')" ] || falhou "ficou um atalho"
codigo 1 w reg query "$entrada" >/dev/null 2>&1

dizer "De volta, depois de uma instalação que mal começou"
rm "$jogo/Data/elo"
touch "$jogo/Desinstalar.txt.instalando"
instalar 0
cmp opcoes "$jogo/Config/Zu.ini"
