#!/bin/sh
# Installs the build into an empty folder and uses it from there, as a service would: with pkg-config in C11 and C++17,
# and with the CMake package. Compiles the code of the headers and the docs, and runs the docs' programs. Also compares
# what the libraries export with what their headers promise.
#
#     run.sh BUILD_FOLDER SOURCE_FOLDER
set -eu

build=$(cd "$1" && pwd)
source=$(cd "$2" && pwd)
project=$(cd "$source/../.." && pwd)
stage=$(mktemp -d "$build/stage.XXXXXX") # a namespace with a /tmp of its own sees it, too
trap 'rm -rf "$stage"' EXIT

cmake --install "$build" --prefix "$stage/usr" >/dev/null
library=$(find "$stage/usr" -name 'libzvCtrlD.so')
lib=$(dirname "$library")
"$stage/usr/bin/zvcam" --version >/dev/null
"$stage/usr/bin/zvsim" --help >/dev/null
for unit in "$stage"/usr/lib/systemd/system/*.service; do
    "$(sed -n 's/^ExecStart=\([^ ]*\).*/\1/p' "$unit")" --version >/dev/null
done
export LD_LIBRARY_PATH="$lib" PKG_CONFIG_PATH="$lib/pkgconfig"
warnings="-Wall -Wextra -Wpedantic -Werror"

# shellcheck disable=SC2046,SC2086
cc -std=c11 -D_POSIX_C_SOURCE=200809L $warnings "$source/service.c" -o "$stage/c" $(pkg-config --cflags --libs zvctrl)
# shellcheck disable=SC2046,SC2086
c++ -std=c++17 $warnings "$source/service.cpp" -o "$stage/cpp" $(pkg-config --cflags --libs zvctrl)
"$stage/c"
"$stage/cpp"

cmake -S "$source" -B "$stage/outside" -DCMAKE_PREFIX_PATH="$stage/usr" >/dev/null
cmake --build "$stage/outside" >/dev/null
"$stage/outside/outside_c" >/dev/null
"$stage/outside/outside_cpp" >/dev/null
"$stage/outside/outside_core" >"$stage/outcomes"
# shellcheck disable=SC2016
sed -nE 's/^\| `([A-Z_]+)` \|.*\| ([0-9]+) \| ([0-9]+) \|$/\1 \2 \3/p' "$project/docs/linking.md" >"$stage/told"
if ! diff "$stage/told" "$stage/outcomes"; then
    echo "Above: < an outcome in docs/linking.md, > what a service finds" >&2
    exit 1
fi

for header in "$stage"/usr/include/zvservice/*.h; do
    # shellcheck disable=SC2046,SC2086
    echo "#include <zvservice/$(basename "$header")>" |
        c++ -std=c++17 $warnings -fsyntax-only -x c++ - $(pkg-config --cflags zvservice)
done

mkdir "$stage/programs"
"$source/code_blocks.sh" "$stage/usr/include" "$project" "$stage/programs"
(cd "$project" && env -u ZVCTRL_NAMESPACE "$project/packaging/private-namespace.sh" \
    "$source/docs.sh" "$stage/usr/bin/zvsim" "$stage/programs")

# Every exported plain name is declared in a header as ZV_API, and the other way round.
cat "$stage"/usr/include/zvctrl/*.h | tr '\n' ' ' | sed 's|/\*[^*]*\*\+\([^/*][^*]*\*\+\)*/||g; s/[;{]/\n/g' |
    grep -w ZV_API | grep -vE '#define ZV_API|\b(class|friend) ' | sed -E 's/.*ZV_API//; s/[[(].*//' |
    grep -oE '[A-Za-z_][A-Za-z0-9_]* *$' | tr -d ' ' | grep -v '^operator' | sort -u >"$stage/promised"
nm -D --defined-only "$library" | awk '{print $3}' | grep -v '^_Z' | sort -u >"$stage/exported"
if ! diff "$stage/promised" "$stage/exported"; then
    echo "Above: < promised by a header and not exported, > exported and in no header" >&2
    exit 1
fi
if nm -D --defined-only "$library" "$lib/libzvService.so" | grep -E ' _Z(N|NK|T[ISV]N?)?(St|S[a-z])'; then
    echo "The standard library's symbols leave a library" >&2
    exit 1
fi
if nm -DC --defined-only "$lib/libzvService.so" | grep -vE '^[0-9a-f]+ . (.* for )?zvservice::'; then
    echo "The service core exports names outside its namespace" >&2
    exit 1
fi
