#!/usr/bin/env bash
# The page script, printed by the launcher's own code, in headless Chromium.
set -eu
raiz=$(cd "$(dirname "$0")/.." && pwd)
pasta=$raiz/build/pagina-site
trap 'wait; rm -rf "$pasta"' EXIT
rm -rf "$pasta"
mkdir -p "$pasta"
"${CXX:-clang++}" -std=c++20 -I"$raiz" "$raiz/tests/pagina_site/imprimir.cpp" "$raiz/ui/site/script_site.cpp" \
    -o "$pasta/imprimir"
# The browser talks over descriptors 3 and 4.
mkfifo "$pasta/para" "$pasta/de"
chromium --headless --no-sandbox --disable-gpu --disable-background-networking --remote-debugging-pipe \
    --user-data-dir="$pasta/perfil" 3<"$pasta/para" 4>"$pasta/de" 2>/dev/null &
python3 "$raiz/tests/pagina_site/paginas.py" "$pasta"
