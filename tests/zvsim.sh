#!/bin/sh
# What zvsim does as a program: one of it on a machine, orders from outside, queues that go with it.
#
#     zvsim.sh ZVSIM
set -u
zvsim=$1
tested=$zvsim
. "$(dirname "$0")/support/program.sh"
queues=$folder/queues
mkdir "$queues"
mount -t mqueue none "$queues" || exit 77 # skipped where the queues cannot be seen
trap 'umount "$queues"; rm -rf "$folder"' EXIT

# end_camera SIGNAL: it ends well, and its queues with it.
end_camera() {
    kill "-$1" "$camera"
    wait "$camera" || fail "ended with $? at $1"
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
"$zvsim" fault restart:link=daemon,ms=60000 || fail "the restart"
[ "$(ls "$queues")" = "$(printf 'to_zvnet\nto_zvsim')" ] || fail "no restart when the order was given: $(ls "$queues")"
end_camera TERM
grep -q '^# zvsim --model 62 --seed 1' "$folder/trace" || fail "the trace's remark"

start_camera --fault restart:ms=60000
[ "$(ls "$queues")" = to_zvsim ] || fail "no restart from the start: $(ls "$queues")"
end_camera TERM

start_camera --model 51
kill -KILL "$camera"
wait "$camera" 2>/dev/null
[ -n "$(ls "$queues")" ] || fail "no queue left to take over"
start_camera --replay "$folder/trace"
end_camera INT

[ "$failures" -eq 0 ]
