# What ./rodar, ./testar and ./medir share. Sourced by bash; RAIZ is the repository.

RAIZ=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Debian 12 packages of the build and the run; ./testar adds its own.
PACOTES_BASE="cmake ninja-build g++-mingw-w64-x86-64-posix wine wine64 nginx-light python3 googletest git"
# What the windows need where there is no display; imagemagick takes the screenshot.
PACOTES_TELA="xvfb fonts-liberation imagemagick"
PACOTES_TESTES="chromium clang clang-format clang-tidy libclang-rt-14-dev openssl curl nsis osslsigncode ca-certificates"

dizer() { printf '\n== %s\n' "$*"; }

# garantir_pacotes PACKAGE...: installs what is missing.
garantir_pacotes() {
    local faltam=() pacote
    for pacote in "$@"; do
        dpkg-query -W -f='${Status}' "$pacote" 2>/dev/null | grep -q 'install ok installed' || faltam+=("$pacote")
    done
    [ ${#faltam[@]} -eq 0 ] && return 0
    dizer "Instalando: ${faltam[*]}"
    local como=()
    [ "$(id -u)" -eq 0 ] || como=(sudo)
    "${como[@]}" apt-get update -q
    "${como[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${faltam[@]}"
}

# no_wine PRESET PROGRAM...: runs a Windows program in the build's own Wine prefix.
no_wine() {
    local preset=$1
    shift
    "$RAIZ/cmake/no-wine" "$RAIZ/build/$preset/wine" "$@"
}

# manter_wine PRESET: starts Wine and its desktop and keeps them up until encerrar_wine. Otherwise the first test would
# start them, they would hold its output open, and it would count as running for as long as they do.
manter_wine() {
    no_wine "$1" "$RAIZ/build/$1/bin/processo_parado.exe" 7200000 >/dev/null 2>&1 &
    sleep 2
    no_wine "$1" cmd /c exit >/dev/null 2>&1 || true
    sleep 2
}

# encerrar_wine PRESET: what runs in the build's Wine prefixes.
encerrar_wine() {
    local prefixo
    for prefixo in "$RAIZ/build/$1"/wine "$RAIZ/build/$1"/wine-*; do
        [ -d "$prefixo" ] || continue
        WINEPREFIX="$prefixo" wineserver -k 2>/dev/null || true
        WINEPREFIX="$prefixo" wineserver -w 2>/dev/null || true
    done
}

# testar_por_nucleo PRESET CTEST-OPTION...: ctest, with a Wine prefix and server for each of up to four cores. A program
# and its server talk all the time; on one core they do so three times as fast as across two.
testar_por_nucleo() {
    local preset=$1 pasta=$RAIZ/build/$1 nucleos nucleo esperas=()
    shift
    mapfile -t nucleos < <(python3 -c 'import os; print(*sorted(os.sched_getaffinity(0))[:4], sep="\n")')
    for nucleo in "${nucleos[@]}"; do
        [ -d "$pasta/wine-$nucleo" ] || dividir_prefixo "$pasta/wine" "$pasta/wine-$nucleo"
        CTEST_RESOURCE_GROUP_0_NUCLEO=id:$nucleo manter_wine "$preset" &
        esperas+=($!)
    done
    wait "${esperas[@]}"
    printf '{"version": {"major": 1, "minor": 0}, "local": [{"nucleo": [%s]}]}\n' \
        "$(printf '{"id": "%s"}\n' "${nucleos[@]}" | paste -sd,)" >"$pasta/nucleos.json"
    # What ctest itself starts, to learn the tests' names, is the first core's.
    CTEST_RESOURCE_GROUP_0_NUCLEO=id:${nucleos[0]} ctest --preset "$preset" -j ${#nucleos[@]} \
        --resource-spec-file "$pasta/nucleos.json" "$@"
}

# dividir_prefixo PREFIX NEW: one more Wine prefix. Wine's own files are never written to and need no second place on
# the disk; its registry is.
dividir_prefixo() {
    rm -rf "$2.novo"
    cp -al "$1" "$2.novo"
    rm "$2.novo"/*.reg
    cp -a "$1"/*.reg "$2.novo"
    mv "$2.novo" "$2"
}

# abrir_tela: a virtual display for the rest of the script, in DISPLAY; TELA is the process to end. Before the first Wine
# program, since Wine's desktop keeps the display that it began with.
abrir_tela() {
    local numero
    exec {numero_da_tela}< <(exec 3>&1; exec Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 2>/dev/null)
    TELA=$!
    read -r numero <&"$numero_da_tela" || { echo "o Xvfb não abriu" >&2; return 1; }
    export DISPLAY=:$numero
}

fechar_tela() { [ -z "${TELA:-}" ] || kill "$TELA" 2>/dev/null || true; }

# preparar PRESET [TARGET...]: packages, Wine prefix, configuration and build.
preparar() {
    local preset=$1
    shift
    # shellcheck disable=SC2086
    garantir_pacotes $PACOTES_BASE
    mkdir -p "$RAIZ/build/$preset"
    # A build alone makes a prefix too, for the development keys.
    if ! grep -qs testes_janela.exe "$RAIZ/build/$preset/wine/user.reg"; then
        dizer "Preparando o prefixo do Wine"
        no_wine "$preset" wineboot -i >/dev/null 2>&1
        # Without a window manager Wine would wait for one, two seconds a window.
        no_wine "$preset" reg add 'HKCU\Software\Wine\AppDefaults\testes_janela.exe\X11 Driver' /v Managed /d N /f \
            >/dev/null 2>&1
        WINEPREFIX="$RAIZ/build/$preset/wine" wineserver -w
    fi
    (cd "$RAIZ" && cmake --preset "$preset" >"build/$preset/configuracao.log" 2>&1) ||
        { cat "$RAIZ/build/$preset/configuracao.log"; return 1; }
    (cd "$RAIZ" && cmake --build --preset "$preset" ${1:+--target "$@"} >"build/$preset/compilacao.log" 2>&1) ||
        { tail -n 60 "$RAIZ/build/$preset/compilacao.log"; return 1; }
}

# iniciar_nginx FOLDER ROOT [ssl]: serves ROOT on a free loopback port until encerrar_nginx FOLDER; leaves the port in
# PORTA. NGINX_EXTRA may hold directives. With ssl, FOLDER holds "certificado" and "chave".
iniciar_nginx() {
    local pasta=$1 raiz=$2 tentativa ssl=
    [ "${3:-}" != ssl ] || ssl="ssl; ssl_certificate $pasta/certificado; ssl_certificate_key $pasta/chave"
    mkdir -p "$pasta"
    for tentativa in 1 2 3 4 5; do
        PORTA=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
        cat >"$pasta/nginx.conf" <<FIM
daemon on;
pid $pasta/nginx.pid;
error_log $pasta/erros.log;
worker_processes 1;
events { worker_connections 256; }
http {
    access_log $pasta/acessos.log;
    client_body_temp_path $pasta/t1; proxy_temp_path $pasta/t2; fastcgi_temp_path $pasta/t3;
    uwsgi_temp_path $pasta/t4; scgi_temp_path $pasta/t5;
    default_type application/octet-stream;
    sendfile on;
    ${NGINX_EXTRA:-}
    server { listen 127.0.0.1:$PORTA $ssl; root "$raiz"; }
}
FIM
        [ "$(id -u)" -eq 0 ] && sed -i '1i user root;' "$pasta/nginx.conf"
        PATH=$PATH:/usr/sbin nginx -p "$pasta" -e "$pasta/erros.log" -c "$pasta/nginx.conf" && return 0
    done
    echo "nginx não abriu nenhuma porta" >&2
    return 1
}

encerrar_nginx() {
    local pasta=$1 pid i
    [ -f "$pasta/nginx.pid" ] || return 0
    pid=$(cat "$pasta/nginx.pid")
    kill -QUIT "$pid" 2>/dev/null || return 0
    for i in $(seq 50); do
        kill -0 "$pid" 2>/dev/null || return 0
        sleep 0.1
    done
    kill -KILL "$pid" 2>/dev/null || true
}

# servir_em_primeiro_plano FOLDER ROOT: prints the address and serves until it is told to end.
servir_em_primeiro_plano() {
    iniciar_nginx "$@" || return 1
    trap 'encerrar_nginx "'"$1"'"; exit 0' TERM INT
    echo "http://127.0.0.1:$PORTA"
    while :; do sleep 1 & wait $!; done
}
