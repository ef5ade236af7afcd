#!/bin/sh
# Runs the programs of the docs against a simulated camera, in a namespace of its own.
#
#     docs.sh ZVSIM FOLDER      with the programs that code_blocks.sh left in the folder
set -u
zvsim=$1
service=$2/linking.md-1
poll=$2/library-alone.md-1
write=$2/library-alone.md-2
tested=$service
. "$(dirname "$0")/../support/program.sh"
camera=
trap 'kill $camera 2>/dev/null; rm -rf "$folder"' EXIT

# A program that takes lines from its standard input, which descriptor 3 leads to. It ends when nobody has that open.
begin() {
    rm -f "$folder/in"
    mkfifo "$folder/in"
    "$1" <"$folder/in" >"$folder/out" 2>"$folder/err" &
    program=$!
    exec 3>"$folder/in"
}

# await COUNT PATTERN: so many lines of the program's have it before long.
await() {
    for _ in $(seq 100); do
        [ "$(cat "$folder/out" "$folder/err" | grep -cE -e "$2")" -ge "$1" ] && return
        sleep 0.05
    done
    fail "no $1 lines with \"$2\":
$(cut -c 1-200 "$folder/out" "$folder/err")"
}

# It ends well, and before long.
finish() {
    exec 3>&-
    for _ in $(seq 40); do
        kill -0 "$program" 2>/dev/null || break
        sleep 0.05
    done
    kill -KILL "$program" 2>/dev/null
    wait "$program" || fail "$(basename "$1") ended with $?"
}

# The first service: there before its camera, and after it.
begin "$service"
await 1 '^\{"link":"down"\}$'
start_camera 3>&-
await 1 '^\{"revision":1,"status":\{"1":.*\},"settings":\{"2":.*"3":5'
await 1 '^\{"link":"up"\}$'
echo 'video/fps 30' >&3
await 1 '^video/fps 30: done$'
await 1 '^\{"revision":[0-9]+,"status":.*,"settings":\{.*"3":8'
echo 'video/fsp 30' >&3
await 1 '^video/fsp 30: .*video/fps'
kill -KILL "$camera"
wait "$camera" 2>/dev/null
await 1 '^\{"link":"stale"\}$'
start_camera 3>&-
await 2 '^\{"link":"up"\}$'
await 2 '"settings":\{.*"3":5' # it is another camera's state
echo 'video/fps 30' >&3
await 2 '^video/fps 30: done$'
await 2 '"settings":\{.*"3":8'
finish "$service"
sed -nE 's/^\{"revision":([0-9]+).*/\1/p' "$folder/out" | sort -n -u -c || fail "the revisions do not go on"

# The library alone: the thread that owns the link, and a setting's write.
begin "$poll"
for _ in $(seq 10); do # until the first answer is there
    echo >&3
    sleep 0.1
done
await 1 '^\{"stale":false,"age_ms":[0-9]+,"status":'
await 1 '"117":.*\},"settings":\{"2":'
finish "$poll"
kill "$camera"
wait "$camera"

start_camera --fault refuse:link=camera,group=7,skip=1
tested=$write
try 1 '^ZV_ERR_INVALID_PARAM, ' 59 5
try 0 '^setting 59 has option 4$' 59 4
try 1 '^ZV_ERR_NAK, the camera.s code is 1$' 59 6
[ "$failures" -eq 0 ]
