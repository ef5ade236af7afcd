#!/bin/sh
# What zvsim does as a program: one of it on a machine, orders from outside, queues that go with it.
#
#     zvsim.sh ZVSIM
set -u
zvsim=$1
failures=0
folder=$(mktemp -d)
queues=$folder/queues
mkdir "$queues"
mount -t mqueue none "$queues" || exit 77 # skipped where the queues cannot be seen
trap 'umount "$queues"; rm -rf "$folder"' EXIT

fail() {
    echo "FAILED: $1"
    failures=$((failures + 1))
}

# Sets $camera.
start_camera() {
    : >"$folder/output"
    "$zvsim" "$@" >>"$folder/output" 2>&1 &
    camera=$!
    until grep -q ready "$folder/output"; do
        kill -0 $camera || exit 1
        sleep 0.05
    done
}

# try CODE PATTERN ARGUMENT...
try() {
    code=$1
    pattern=$2
    shift 2
    "$zvsim" "$@" >"$folder/tried" 2>&1
    found=$?
    if [ "$found" -ne "$code" ] || ! grep -qE -e "$pattern" "$folder/tried"; then
        fail "zvsim $*: ended with $found, not $code, or without \"$pattern\": $(head -n 5 "$folder/tried")"
    fi
}

# end_camera SIGNAL: it ends well, and its queues with it.
end_camera() {
    kill "-$1" $camera
    wait $camera || fail "ended with $? at $1"
    [ -z "$(ls "$queues")" ] || fail "left $(ls "$queues")"
}

try 1 'no simulated camera is running' media
try 1 'no simulated camera is running' fault clear
try 2 'unknown fault' --fault drip
try 1 'No such file' --replay "$folder/none"

start_camera --trace "$folder/trace"
try 1 'already running' # and leaves the first one its queues
try 0 '^100SIMUL.SIM00001.MP4 video' media
try 2 'no option' fault drop:ms=1
"$zvsim" fault drop:link=daemon || fail "the fault rule"
end_camera TERM
grep -q '^# zvsim --model 62 --seed 1' "$folder/trace" || fail "the trace's remark"

start_camera --model 51
kill -KILL $camera
wait $camera 2>/dev/null
[ -n "$(ls "$queues")" ] || fail "no queue left to take over"
start_camera --replay "$folder/trace"
end_camera INT

[ $failures -eq 0 ]
