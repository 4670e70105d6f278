#!/usr/bin/env bash
# The tests' share of all lines, blank and // lines left out: prints it, and fails above a third. 30 % is the aim.
# proporcao.sh [--tudo] also prints each file of the tests.
set -eu
. "$(dirname "$0")/comum.sh"
cd "$RAIZ"
readonly LIMITE=33

contar() {
    git ls-files -z -- "$@" | xargs -0 -r awk '{ sub(/\r$/, "") } !/^[ \t]*(\/\/.*)?$/ { n++ } END { print n + 0 }'
}

[ "${1:-}" != --tudo ] || git ls-files -- 'tests/*.cpp' 'tests/*.h' 'tests/*.py' 'tests/*.sh' |
    while read -r arquivo; do printf '%6d %s\n' "$(contar "$arquivo")" "$arquivo"; done | sort -n
testes=$(contar 'tests/*.cpp' 'tests/*.h' 'tests/*.py' 'tests/*.sh')
programa=$(contar {core,app,update,game,ui,tools}'/*.cpp' {core,app,update,game,ui,tools}'/*.h')
echo "$testes de $((testes + programa)) linhas são de testes: $((100 * testes / (testes + programa))) %"
[ $((100 * testes)) -le $((LIMITE * (testes + programa))) ]
