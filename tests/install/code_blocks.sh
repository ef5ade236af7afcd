#!/bin/sh
# Compiles every code block of the installed headers, of README.md and of docs/, as a reader would use it: C11 or C++17
# against what is installed. Programs are linked and left in a folder, as "<page>-<number of the block>". Blocks that are
# lines of the project's own tables are put into a copy of the sources, which then compiles.
#
#     code_blocks.sh INCLUDE_FOLDER PROJECT_FOLDER PROGRAM_FOLDER      with PKG_CONFIG_PATH set to what is installed
set -eu

include=$1
project=$2
programs=$3
here=$(dirname "$0")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
warnings="-Wall -Wextra -Wpedantic -Werror -Wno-unused"

for page in "$include"/zvctrl/*.h "$include"/zvservice/*.h; do
    name=$(basename "$page")
    header=${page#"$include/"}
    awk -v folder="$folder" -v page="$name" -v header="$header" -f "$here/code_blocks.awk" "$page"
done >"$folder/blocks"
for page in "$project"/README.md "$project"/docs/*.md; do
    awk -v folder="$folder" -v page="$(basename "$page")" -v header= -f "$here/code_blocks.awk" "$page"
done >>"$folder/blocks"

tree=$folder/tree
mkdir "$tree"
cp -r "$project/protocol" "$project/libzvCommon" "$project/libzvCtrlD" "$project/platform" "$tree"

# put_in FILE LINES BEGINNING: the lines go before the first one of the file that begins so.
put_in() {
    file=$(find "$tree" -name "$1")
    BEGINNING=$3 awk -v lines="$2" '
        !done && index($0, ENVIRON["BEGINNING"]) == 1 {
            while ((getline line <lines) > 0) {
                print line
            }
            done = 1
        }
        { print }
        END { exit !done }' "$file" >"$folder/changed" || {
        echo "$(basename "$2"): no line of $1 begins with \"$3\"" >&2
        return 1
    }
    cp "$folder/changed" "$file"
}

failures=0
edited=no
while read -r block; do
    case $block in
    *.lines:*)
        file=${block%%: *}
        rest=${block#*: }
        put_in "$file" "${rest%%: *}" "${rest#*: }" || failures=$((failures + 1))
        edited=yes
        continue
        ;;
    *.c) compile="cc -std=c11 -D_POSIX_C_SOURCE=200809L" ;;
    *) compile="c++ -std=c++17 -pthread" ;;
    esac
    package=zvctrl
    if grep -q '^#include <zvservice/' "$block"; then
        package=zvservice
    fi
    if grep -q '^int main' "$block"; then
        # shellcheck disable=SC2046,SC2086
        $compile $warnings "$block" -o "$programs/$(basename "${block%.*}")" $(pkg-config --cflags --libs $package) ||
            failures=$((failures + 1))
    else
        # shellcheck disable=SC2046,SC2086
        $compile $warnings -fsyntax-only "$block" $(pkg-config --cflags $package) || failures=$((failures + 1))
    fi
done <"$folder/blocks"

if [ "$edited" = yes ]; then
    rooms=$(find "$tree" -name '*.h' -exec dirname {} + | sort -u | sed 's/^/-I/')
    for source in options rules tables; do
        # shellcheck disable=SC2086
        c++ -std=c++20 -fsyntax-only $rooms "$tree/libzvCtrlD/src/settings/camera_settings_$source.cpp" ||
            failures=$((failures + 1))
    done
fi

count=$(wc -l <"$folder/blocks")
echo "$count code blocks, $failures failures"
[ "$count" -gt 0 ] && [ "$failures" -eq 0 ]
