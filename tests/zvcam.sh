#!/bin/sh
# Runs the commands of zvcam against a simulated camera, in a namespace of its own.
#
#     zvcam.sh ZVCAM ZVSIM
set -u
zvcam=$1
zvsim=$2
tested=$zvcam
. "$(dirname "$0")/support/program.sh"
camera=
watch=
trap 'stop_camera; stop_watch; rm -rf "$folder"' EXIT

stop_camera() {
    if [ -n "$camera" ]; then
        kill "$camera"
        wait "$camera"
        camera=
    fi
}

# lines COUNT PATTERN: so many lines of the last output.
lines() {
    found=$(grep -cE -e "$2" "$folder/output")
    if [ "$found" -ne "$1" ]; then
        fail "$found lines, not $1, with \"$2\""
    fi
}

# json CODE PATTERN ARGUMENT...: the same as try with --json; what it prints and the help of the command are kept.
documents=0
json() {
    try "$@" --json
    documents=$((documents + 1))
    cp "$folder/output" "$folder/$documents.json"
    shift 2
    "$zvcam" "$@" --help >"$folder/$documents.help" </dev/null
}

# await FILE PATTERN [COUNT]: the file gets a line with PATTERN, or so many, within 2 seconds.
await() {
    tries=40
    until [ "$(grep -cE -e "$2" "$1")" -ge "${3:-1}" ]; do
        tries=$((tries - 1))
        if [ $tries -eq 0 ]; then
            fail "no line with \"$2\" comes, ${3:-1} of them"
            return
        fi
        sleep 0.05
    done
}

stop_watch() {
    if [ -n "$watch" ]; then
        kill -TERM "$watch"
        wait "$watch" || fail "an interrupted watch is a failure"
        watch=
    fi
}

# kill_camera: it leaves its queues.
kill_camera() {
    kill -KILL "$camera"
    wait "$camera" 2>/dev/null
    camera=
}

# commands [GROUP]: the commands that the help lists, by their last word.
commands() {
    "$zvcam" "$@" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z-]*\) .*/\1/p'
}

echo "Nothing to talk to"
try 0 '  6  forbidden' --help
lines 1 '^  firmware +a firmware update'
cp "$folder/output" "$folder/words"
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
lines 8 ' (Simulated camera 62|62|SIMULATED|SIM\.62\.01\.00\.00|SIM6200000001|SIM62-0001|02005e000001|15)$'
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

echo "Queues that a killed command leaves"
: >"$folder/killed"
"$zvcam" watch >"$folder/killed" & watch=$!
await "$folder/killed" '^setting'
kill -KILL $watch
wait $watch 2>/dev/null
left=$watch
watch=
json 0 "^\{\"removed\":\[\"/to_ZVCU$left\"\]\}\$" clean
try 0 '^no queues were left behind$' clean

echo "Settings"
try 0 '^setting   3 video/fps +60 -> 30$' set video/fps 30
try 0 '"3":5' set 3 60 --json
try 0 '"2":9' set video/resolution 1080 --json
try 0 '^setting   2 video/resolution +1080 \[1080\] -> 4K \[4K\]$' set modes/video/settings/resolution 1
try 2 'several options of setting 2: 100 5_3K, 107 5_3K_8BY7_V2' set 2 5.3k
try 2 'no option "99"; it has 0 240, 13 200' set 3 99
try 2 ', 115 [0-9A-Z_]+, .*, [0-9]+ [0-9A-Z_]+$' set 176 nothing # all of the many
try 0 '^setting 118 vellix_ev +0.0 -> -2.0$' set vellix_ev -2.0
try 0 '88 setup/lcd_brightness .*-> 55' set lcd_brightness 55
try 0 '^168 scheduled_capture: 07:30 is available$' why 168 7:30
try 0 '168 scheduled_capture +off -> 07:30' set 168 7:30
try 2 'a time of day such as 07:30' why 168 4000
try 0 '168 scheduled_capture +07:30 -> off' set scheduled_capture off
try 2 'a time of day such as 07:30' set 168 24:00
try 6 'rule 89, because setting 2 video/resolution is 4K' set video/fps 240
try 1 'rule 89, because setting 2 video/resolution is 4K' why video/fps 240
try 0 '^  50 is not available$' why video/fps
try 0 '^3 video/fps: 24 is available$' why 3 24
try 0 ' 0 240 +240  \(not available now\)$' get 3
try 0 '^ +120 1, 60 5, 30 8, 24 10$' settings --available
try 0 'video/fps +60 -> 240' set video/fps 240 --force
try 0 '^  3 video/fps +240  \(not available now\)' settings --available
lines 1 'not available now'
try 0 '^  240, the present option, is not available$' why 3
lines 1 'present option'
try 1 '^3 video/fps: 240, the present option, is not available$' why 3 240
try 0 '^Time Lapse Video' mode 13
try 0 'video/aspect_ratio +16:9 -> 4:3' set video/aspect_ratio 4:3 --force
try 1 '^2 video/resolution is not available: no option is left$' why 2
lines 10 '^  .* is not available$'
json 1 '^\{"setting":2,"name":"video/resolution","available":false,.*"rules":\[\],"options":' why 2
try 0 '^ +no option is left$' settings --available
lines 1 'no option'
try 0 'video/aspect_ratio +4:3 -> 16:9' set video/aspect_ratio 16:9 --force
try 0 '^Video' mode video
try 1 '^31 multi_shot/exposure_time is not available$' why 31

echo "JSON of the settings"
json 0 '^\{"setting":144,.*"present":\{"id":12,"key":"VIDEO","name":"Video","available":true\}' get 144
json 0 '"default":\{"id":5,"key":"60","name":"60"\},"options":\[\{"id":0,.*,"available":false\},\{"id":13,' get 3
json 0 '"present":\{"id":55,"available":true\}' get 88
json 0 '"present":\{"id":0,"key":"OFF","name":"off",' get 168
json 0 '^\{"available":\[\{"setting":2,.*"options":\[.*\{"id":10,"key":"24","name":"24"\}\]\}' settings --available
json 0 '^\{"status":\{\},"settings":\{"3":8,' set 3 30
json 0 '^\{"status":\{.*\},"settings":\{"2":' watch --count 1
json 0 '"rule":89,"because":\[\{"setting":2,"name":"video/resolution","is":"4K"\}\]' why 3
json 1 '^\{"setting":31,.*,"available":false,.*\{"status":89,"name":"app_current_mode","is":12\}' why 31
json 1 '"option":\{"id":13,"key":"200","name":"200","available":false,"rules":\[\{"rule":0,' why 3 200
json 0 '"present":\{"id":0,.*"option":\{"id":[0-9]+,"name":"23:59","available":true,"rules":\[\]\}\}$' why 168 23:59

echo "The camera"
json 0 '^\{"model":"Simulated camera 62","model_number":62,.*"features":15,' info
json 0 '^\{"resolution":\{"value":1,"id":1,"key":"4K",.*"wanted":' format 4K 60
json 0 '^\{"flat_mode":\{"value":12,"id":12,"key":"VIDEO","name":"Video"\},"mode":0,"sub_mode":0\}$' mode
json 0 '^\{"digital_zoom":\{"value":20\}\}$' zoom 20
json 0 '^\{"capture_delay":\{"value":2,"id":2,"key":"10_SECONDS",' delay 2
json 0 '^\{"lens_type":\{"value":0,"id":0,"key":"NONE",.*"lens_in_use":\{"value":0\}\}$' lens
json 0 '^\{"done":"shutter"\}$' shutter off
json 0 '"record_format":\{.*"gop_size":\{"value":0\}.*"status":"[0-9a-f]+"\}$' broadcast
json 0 '^\{"resolution":\{"value":12,"id":12,"key":"720",' broadcast format
json 0 '^\{"window_size":\{"value":4\}\}$' broadcast window 4
json 0 '^\{"done":"broadcast stop"\}$' broadcast stop
json 0 '^\{"interval":\{"value":1,"id":1,"key":"5_MINUTES","name":"5 Minutes"\},"room":true\}$' media room '5 minutes'
json 0 '^\{"done":"media delete"\}$' media delete 100SIMUL/SIM00002.JPG
json 0 '^\{"done":"firmware download-cancel"\}$' firmware download-cancel --yes
json 0 '^\{"answer":"0c00"\}$' raw 1 7
json 0 '^\{"messages":\[\{"link":"camera","response":false,.*"tag":68,"name":"SRC","meaning":"\\"/\\"\\\\\\"",' \
    decode 00 24 00 04 00 00 02 41 59 59 00 00 05 42 00 01 07 00 00 00 00 03 44 2F 22 5C 00 00 02 43 2F 61 00 00 00 EE
try 1 '"faults":\["the message is shorter than its head of 4 bytes"\],"bytes":"00"\}\]' decode --json 00
try 2 'a trace or a message, not both' decode --trace "$folder/trace" 00
try 2 'on standard input \(-\) or in words, not both' decode - 00
try 0 'adjusted: field of view Linear \+ Horizon Lock is not offered there' format 5_3K 240 'Linear + Horizon Lock'
try 0 '^1080 \[1080\], 240 frames a second, Wide$' format 1080 240 wide
try 5 'no frame rate at 4K 4:3' format 4k_4by3
try 0 '^Single Photo: flat mode 16' mode single_photo
try 0 '^Video: flat mode 12' mode 12
try 0 'zoom +30$' zoom 30
try 2 'from 0 to 255' zoom 256
try 0 'delay +3 Seconds' delay '3 seconds'
try 0 'type +Wide Optic 1.0' lens type 1
try 0 'mode +0' lens
try 0 'capture started' shutter on
try 0 '^ 10 system_encoding_active +1$' status
try 0 'capture stopped' shutter off
try 2 'on or off' shutter half
try 0 '^format +1080, 30 frames a second, Linear$' broadcast format 1080 30 linear
try 0 'GOP size +15' broadcast gop 15
try 2 'from 0 to 9' broadcast window 10
try 0 '^record format +1080' broadcast show
try 0 'started' broadcast start
try 0 'stopped' broadcast stop
try 0 'room for looping at 5 Minutes' media room '5 minutes'
try 5 'firmware reports error' media delete 100SIMUL/NONE.MP4
try 2 'not "a"' media delete a b
try 0 'deleted' media delete-last
try 2 'say --yes' media delete-all
try 0 'deleted all' media delete-all --yes
try 0 '^ 39 storage_num_total_videos +0$' status
try 2 'say --yes' firmware flash
try 0 'begins' firmware download-start --yes
try 0 '^ 41 fwupdate_ota_status +6$' status
try 0 'given up' firmware download-cancel --yes

tested=prlimit
try 7 'limit of 1000 bytes .*ulimit -q' --msgqueue=1000 "$zvcam" zoom
try 7 'limit of 1000 bytes .*ulimit -q' --msgqueue=1000 "$zvcam" status
tested=$zvcam

echo "Messages"
try 0 '^done, 2 bytes of answer$' raw 1 7
try 0 '^0000  0c 00 ' raw 1 0x07
try 5 'refused' raw 1 250 01 02
try 1 'cannot read' decode --trace "$folder/none"
try 1 'cannot read' decode --trace "$folder"
try 0 'INFO.*zvcontrol_if.cpp' status -vv
stop_camera
try 0 'camera command' decode --trace "$folder/trace"
json 0 '"microseconds":[0-9]+,"direction":"client>daemon","link":"daemon"' decode --trace "$folder/trace"
cp -r /tmp/zvcsi "$folder/csi"
printf 'a"\\\001\303\251\377\360\237\214\215\355\240\200\300\200' >"$folder/csi/19"
ZVCSI_DIR=$folder/csi "$zvcam" info --json >"$folder/texts"
python3 - "$folder" $documents <<'EOF' || fail "this is no JSON, or not what the help says"
import json, sys
folder, documents = sys.argv[1], int(sys.argv[2])
with open(folder + "/texts", encoding="utf-8") as file:
    assert json.load(file)["model"] == 'a"\\\x01\u00e9\ufffd\U0001f30d' + 5 * '\ufffd'
with open(folder + "/words", encoding="utf-8") as file:
    words = file.read()
for i in range(1, documents + 1):
    with open(f"{folder}/{i}.json", encoding="utf-8") as file, open(f"{folder}/{i}.help", encoding="utf-8") as help:
        told = words + help.read()
        for member in json.load(file):
            assert f'"{member}":' in told, (told, member)
EOF

echo "Names for all that is sent: every setting with its last option, and the operations that are not tried above"
start_camera --trace "$folder/trace"
"$zvcam" settings >"$folder/settings"
{
    awk '/^ *[0-9]+ [a-z]/ { id = $1 } /^      .*[0-9]$/ { print "set", id, $NF, "--force" }' "$folder/settings"
    printf '%s\n' 'set 168 7:30' 'info' 'shutter on' 'shutter off' 'lens status 1' 'lens mode 1' 'lens use 1' \
        'media tag 100SIMUL/SIM00001.MP4 5' 'media delete-group 100SIMUL/SIM00002.JPG' 'media delete-last' \
        'media delete 100SIMUL/SIM00001.MP4 100SIMUL/SIM00003.JPG' 'media delete-all --yes' 'media room 0' \
        'format 4k 60' 'mode burst_photo' 'shutter on' 'mode video' 'zoom 3' 'delay 0' 'poll' \
        'broadcast record-format 1080 30' 'broadcast enable 1' 'broadcast start' 'broadcast stop' \
        'broadcast sub-mode 1' 'broadcast idr 2' 'broadcast bit-rate 3' 'broadcast window 4' 'broadcast show' \
        'firmware download-start --yes' 'firmware download-done --yes' 'firmware flash --yes'
} | while read -r words; do
    # shellcheck disable=SC2086 # words of a command line
    "$zvcam" $words >/dev/null 2>&1 </dev/null
done
stop_camera
try 0 'group 6 WIRELESS' decode --trace "$folder/trace"
lines 0 ' \?|unknown command'

echo "A camera without a catalogue"
start_camera --model 51
try 0 '^  2 video/resolution +[0-9]+$' settings
lines 98 '^ *[0-9]+ [a-z]'
try 0 '"2":24' set 2 24 --json
try 2 'addon_lens_active is a number from 0 to 127, not "300"' lens type 300
try 2 'from 0 to 255, not "256"' broadcast format 256
try 2 'from 0 to 255, not "300"' set 88 300
stop_camera

echo "Faults"
start_camera --fault refuse:group=2,action=27,code=3 --fault drop:link=camera,group=1,action=11
try 5 'acknowledge byte 3' shutter on
"$zvcam" zoom & zoom=$!
"$zvcam" watch >"$folder/watch" & watch=$!
until [ -s "$folder/watch" ]; do
    sleep 0.05
done
kill -TERM $zoom
wait $zoom
[ $? -eq 143 ] || fail "an interrupted command does not say so"
stop_watch
stop_camera

echo "A camera that is switched off"
start_camera
"$zvsim" fault off
# Not info, decode, clean and the stages of a firmware download: they do without the camera.
for group in '' broadcast firmware lens media; do
    for command in $(commands $group); do
        command=${group:+$group }$command
        case $command in
        info | decode | clean | firmware | media | 'firmware download-start' | 'firmware download-cancel') ;;
        get | why | 'media room') echo "$command 3" ;;
        set) echo "$command 3 30" ;;
        shutter) echo "$command on" ;;
        raw) echo "$command 1 7" ;;
        'media delete') printf '%s 100SIMUL/SIM0000%s\n' "$command" 1.MP4 "$command" '2.JPG 100SIMUL/SIM00003.JPG' ;;
        'media delete-group') echo "$command 100SIMUL/SIM00002.JPG" ;;
        'media tag') echo "$command 100SIMUL/SIM00001.MP4 5" ;;
        'media delete-all' | firmware*) echo "$command --yes" ;;
        mode) printf '%s\n' mode 'mode 12' ;;
        *' show' | 'broadcast stop') echo "$command" ;;
        zoom | delay | lens\ * | broadcast\ *) printf '%s\n' "$command" "$command 1" ;;
        *) echo "$command" ;;
        esac
    done
done >"$folder/commands"
while read -r words; do
    # shellcheck disable=SC2086 # words of a command line
    try 5 'the camera is switched off' $words
done <"$folder/commands"
[ "$(wc -l <"$folder/commands")" -ge 50 ] || fail "these are not all commands: $(cat "$folder/commands")"
stop_camera

echo "A camera that is waited for, also one that was killed"
for command in status zoom; do
    "$zvcam" --wait $command >"$folder/$command" 2>&1 & waiting="${waiting:-} $!"
done
start_camera
for command in $waiting; do
    wait "$command" || fail "no camera in time: $(cat "$folder/status" "$folder/zoom")"
done
kill_camera
waiting=
for command in status zoom; do
    "$zvcam" --wait $command >"$folder/$command" 2>&1 & waiting="$waiting $!"
done
sleep 0.2
start_camera
for command in $waiting; do
    wait "$command" || fail "no camera in time: $(cat "$folder/status" "$folder/zoom")"
done

echo "A camera that comes and goes under a watch"
: >"$folder/seen"
: >"$folder/told"
"$zvcam" watch --interval 100 >"$folder/seen" 2>"$folder/told" & watch=$!
await "$folder/seen" '^setting   3 video/fps +60$'
outages=0
for outage in stop_camera kill_camera freeze; do
    outages=$((outages + 1))
    if [ $outage = freeze ]; then
        "$zvsim" fault freeze
        await "$folder/told" 'no answer' $outages
        "$zvsim" fault thaw
    else
        $outage
        await "$folder/told" 'no answer' $outages
        start_camera
    fi
    await "$folder/told" 'answers again' $outages
    try 0 'video/fps +60 -> 30' set video/fps 30
    await "$folder/seen" '^setting   3 video/fps +60 -> 30$' $outages
    try 0 'video/fps +30 -> 60' set video/fps 60
    await "$folder/seen" '^setting   3 video/fps +30 -> 60$' $outages
done
[ "$(wc -l <"$folder/told")" -eq 6 ] || fail "the watch says more than it has to: $(cat "$folder/told")"
stop_watch
stop_camera

mkdir "$folder/queues"
if mount -t mqueue none "$folder/queues" 2>/dev/null; then
    if [ -n "$(find "$folder/queues" -type f -print)" ]; then
        fail "these queues are left"
    fi
    umount "$folder/queues"
fi
[ "$failures" -eq 0 ]
