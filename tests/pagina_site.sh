#!/usr/bin/env bash
# The page script, printed by the launcher's own code, in headless Chromium on pages that nginx serves.
set -eu
. "$(dirname "$0")/../scripts/comum.sh"
pasta=$RAIZ/build/pagina-site
trap 'encerrar_nginx "$pasta/nginx"; rm -rf "$pasta"' EXIT
rm -rf "$pasta"
mkdir -p "$pasta/www"
"${CXX:-clang++}" -std=c++20 -I"$RAIZ" "$RAIZ/tests/pagina_site/imprimir.cpp" "$RAIZ/ui/site/script_site.cpp" \
    -o "$pasta/imprimir"
iniciar_nginx "$pasta/nginx" "$pasta/www"
PYTHONDONTWRITEBYTECODE=1 python3 "$RAIZ/tests/pagina_site/paginas.py" "$pasta/imprimir" "$(command -v chromium)" \
    "$pasta/www" "http://127.0.0.1:$PORTA" "$pasta/perfil"
