#!/usr/bin/env bash
# clang-tidy over the shipped sources as the cross build compiles them: tidy.sh [FILE...]
set -eu
. "$(dirname "$0")/comum.sh"
cd "$RAIZ"
mapfile -t pastas < <(x86_64-w64-mingw32-g++-posix -x c++ -E -v /dev/null 2>&1 |
    sed -n '/#include <...>/,/End of search/p' | sed -n 's/^ //p')
extras=(--extra-arg=--target=x86_64-w64-mingw32 --extra-arg=-nostdinc++ --extra-arg=-Wno-unknown-warning-option)
for pasta in "${pastas[@]}"; do
    # The compiler's own headers are clang's; GCC's would not parse.
    case $pasta in */include/c++* | */x86_64-w64-mingw32/include) extras+=("--extra-arg=-isystem$pasta") ;; esac
done
[ $# -gt 0 ] || set -- $(git ls-files 'core/*.cpp' 'app/*.cpp' 'update/*.cpp' 'game/*.cpp' 'ui/*.cpp' 'tools/*.cpp')
printf '%s\n' "$@" | xargs -P "$(nproc)" -n 4 clang-tidy --quiet -p build/release "${extras[@]}" 2>build/tidy.erros ||
    { grep -v 'warnings generated' build/tidy.erros >&2; exit 1; }
