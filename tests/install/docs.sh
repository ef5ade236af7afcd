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

# A program that answers lines on its standard input, which descriptor 3 leads to. It ends when nobody has that open.
begin() {
    rm -f "$folder/in"
    mkfifo "$folder/in"
    "$1" <"$folder/in" >>"$folder/out" 2>&1 &
    program=$!
    exec 3>"$folder/in"
}

# ask LINE PATTERN: the answer has it, at once or when it is asked again.
ask() {
    for _ in $(seq 20); do
        : >"$folder/out"
        echo "$1" >&3
        for _ in $(seq 10); do
            sleep 0.05
            grep -qE -e "$2" "$folder/out" && return
        done
    done
    fail "$1 is not answered with \"$2\":
$(cut -c 1-200 "$folder/out")"
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
ask state '^\{"link":"down","revision":0,"age_ms":0\}$'
ask 'video/fps 30' '^the control daemon is not running'
start_camera 3>&-
ask state '^\{"link":"up","revision":[0-9]+,"age_ms":[0-9]+,"status":\{$'
ask state '^"1":.*\},"settings":\{"2":.*"3":5.*\}\}$'
ask 'video/fsp 30' 'video/fps'
ask 'video/fps 30' '^done$'
ask state '"settings":\{.*"3":8'
before=$(sed -nE 's/.*"revision":([0-9]+).*/\1/p' "$folder/out")
kill -KILL "$camera"
wait "$camera" 2>/dev/null
ask state '^\{"link":"stale",'
ask state '"settings":\{.*"3":8' # as it was
start_camera 3>&-
ask state '^\{"link":"up",'
ask state '"settings":\{.*"3":5' # another camera's state, and the same service's revisions
[ "$(sed -nE 's/.*"revision":([0-9]+).*/\1/p' "$folder/out")" -gt "$before" ] || fail "the revisions do not go on"
ask 'video/fps 30' '^done$'
finish "$service"

# The library alone: the thread that owns the link, and a setting's write.
begin "$poll"
ask poll '^\{"stale":false,"age_ms":[0-9]+,"status":'
ask poll '"117":.*\},"settings":\{"2":'
finish "$poll"
kill "$camera"
wait "$camera"

start_camera --fault refuse:link=camera,group=7,skip=1
tested=$write
try 1 '^ZV_ERR_INVALID_PARAM, ' 59 5
try 0 '^setting 59 has option 4$' 59 4
try 1 '^ZV_ERR_NAK, the camera.s code is 1$' 59 6
[ "$failures" -eq 0 ]
