#!/bin/bash
# SPDX-License-Identifier: BSD-2-Clause
# Times the library by each way in which programs reach it: linked by name, opened by a path, linked statically, with
# musl's C library, and as 64-bit DLL under Wine. Prints the least nanoseconds of each case and, behind them, the ratio to the first way.
#   bench/ways/ways.sh [ROUNDS]     after ./check (and, for the last way, cmake --build --preset win64)
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
rounds=${1:-5}
out=build/ways
mkdir -p "$out"
include=(-O1 -Ibuild/release/include -Iinclude bench/ways/ways.c)
ways=()

# A way that can't be built here is left out, and said.
add_way() { # NAME COMMAND-TO-RUN... -- COMMAND-TO-BUILD...
    local name=$1 run=()
    shift
    while [ "$1" != -- ]; do run+=("$1"); shift; done
    shift
    if "$@" 2>"$out/$name.log"; then
        ways+=("$name")
        printf '%q ' "${run[@]}" >"$out/$name.command"
    else
        echo "left out: $name ($out/$name.log)"
    fi
}

lib=$PWD/build/release/lib
add_way name "$out/name" -- gcc "${include[@]}" -o "$out/name" -L"$lib" -lpxk -Wl,-rpath,"$lib"
add_way path "$out/path" "$lib/libpxk.so" -- gcc -DWAYS_BY_PATH "${include[@]}" -o "$out/path" -ldl
add_way static "$out/static" -- gcc -DPXK_STATIC "${include[@]}" -o "$out/static" "$lib/libpxk.a" -lm
add_way musl "$out/musl" -- musl-gcc -static -DPXK_STATIC "${include[@]}" -o "$out/musl" "$lib/libpxk.a"
dll=$(find build -path '*win64*' -name pxkQ6.dll | head -n 1)
if [ -n "$dll" ] && cp "$dll" "$out/"; then
    add_way wine env WINEDEBUG=-all cmake/wine64 "$out/wine.exe" pxkQ6.dll -- \
        x86_64-w64-mingw32-gcc -DWAYS_BY_PATH "${include[@]}" -o "$out/wine.exe"
fi

for ((round = 1; round <= rounds; ++round)); do
    for way in "${ways[@]}"; do
        echo "round $round of $rounds: $way" >&2
        # shellcheck source=/dev/null
        (eval "$(cat "$out/$way.command")") | tr -d '\r' | sed "s/^/$way\t/"
    done
done | awk -F'\t' -v ways="${ways[*]}" '
    !($2 in seen) { seen[$2] = 1; order[++n] = $2 }
    !(($2, $1) in least) || $3 < least[$2, $1] { least[$2, $1] = $3 }
    END {
        count = split(ways, way, " ")
        printf "%-16s %10s", "least ns a call", way[1]
        for (w = 2; w <= count; ++w) printf " %9s", way[w]
        print ""
        for (i = 1; i <= n; ++i) {
            printf "%-16s %10d", order[i], least[order[i], way[1]]
            for (w = 2; w <= count; ++w) printf " %9.3f", least[order[i], way[w]] / least[order[i], way[1]]
            print ""
        }
    }'
