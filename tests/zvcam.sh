#!/bin/sh
# Runs the commands of zvcam against a simulated camera, in a namespace of its own.
#
#     zvcam.sh ZVCAM ZVSIM
set -u
zvcam=$1
zvsim=$2
failures=0
camera=
folder=$(mktemp -d)
trap 'stop_camera; rm -rf "$folder"' EXIT

start_camera() {
    : >"$folder/zvsim"
    "$zvsim" "$@" >>"$folder/zvsim" 2>&1 &
    camera=$!
    until grep -q ready "$folder/zvsim"; do
        kill -0 $camera || exit 1
        sleep 0.05
    done
}

stop_camera() {
    if [ -n "$camera" ]; then
        kill "$camera"
        wait "$camera"
        camera=
    fi
}

# try CODE PATTERN ARGUMENT...: the command ends with CODE, and standard output and error hold a line with PATTERN.
try() {
    code=$1
    pattern=$2
    shift 2
    "$zvcam" "$@" >"$folder/output" 2>&1 </dev/null
    found=$?
    if [ "$found" -ne "$code" ] || ! grep -qE -e "$pattern" "$folder/output"; then
        echo "FAILED: zvcam $*: ended with $found, not $code, or without \"$pattern\":"
        cat "$folder/output"
        failures=$((failures + 1))
    fi
}

# lines COUNT PATTERN: so many lines of the last output.
lines() {
    found=$(grep -cE -e "$2" "$folder/output")
    if [ "$found" -ne "$1" ]; then
        echo "FAILED: $found lines, not $1, with \"$2\""
        failures=$((failures + 1))
    fi
}

echo "Nothing to talk to"
try 0 '  6  forbidden' --help
try 2 'subcommand' bogus
try 2 'required' get
try 2 'number from 0 to 255' raw 256 1
try 2 'hexadecimal' raw 1 1 0g
try 3 'control daemon is not running' status
try 3 'relay to the firmware is not running' zoom
try 0 'REMOTE_APP_FLAT_MODE_GET' decode 00 35 00 04 00 00 02 41 59 59 00 00 05 42 00 01 07 00 00 00 00 01 57 01 00 00 07 \
    44 2F 74 6F 5F 77 65 62 00 00 0A 43 2F 74 6F 5F 63 61 6D 65 72 61 00 00 00 EE
try 1 'marked with !' decode 00 05

start_camera --trace "$folder/trace"
echo "Reads"
try 0 '^model number +62$' info
try 0 '^ 10 system_encoding_active +0$' status
lines 82 '^ *[0-9]+ [a-z]'
try 0 '^\{"status":\{$' status --json
try 0 '"118":[0-9]+\},"settings":\{"2":[0-9]+,.*"193":[0-9]+\}\}$' poll --json
try 0 '^  2 video/resolution +' settings
lines 89 '^ *[0-9]+ [a-z]'
try 0 '^\{"settings":\{"2":' settings --json
try 0 '^ +\* +[0-9]+ VIDEO +Video$' get 144
try 0 '^status   10 system_encoding_active +0$' watch --count 2 --interval 1
try 2 'several settings: 186 easy_presets, 187 easy_presets, 191 easy_presets' get easy_presets
try 2 'no setting "bogus"' get bogus
try 2 'no setting 4;' get 4

echo "The rest of the camera"
try 0 '^done, 2 bytes of answer$' raw 1 7
try 0 'explains|command|client' decode --trace "$folder/trace"
try 2 'say --yes' firmware flash
stop_camera

echo "Faults"
start_camera --fault refuse:group=2,action=27,code=3 --fault drop:link=camera,group=1,action=11
try 5 'acknowledge byte 3' shutter on
"$zvcam" zoom & zoom=$!
"$zvcam" watch >/dev/null & watch=$!
sleep 0.5
kill -TERM $zoom $watch
wait $zoom
[ $? -eq 143 ] || { echo "FAILED: an interrupted command does not say so"; failures=$((failures + 1)); }
wait $watch || { echo "FAILED: an interrupted watch is a failure"; failures=$((failures + 1)); }
stop_camera

mkdir "$folder/queues"
if mount -t mqueue none "$folder/queues" 2>/dev/null; then
    if ls "$folder/queues" | grep .; then
        echo "FAILED: these queues are left"
        failures=$((failures + 1))
    fi
    umount "$folder/queues"
fi
[ "$failures" -eq 0 ]
