#!/bin/sh
# ./demo fleet: joins simulated cameras to an MQTT broker of their own, and changes a setting of all with one message.
#
#     packaging/fleet.sh N
#
# Ends with 0 when every camera has answered. Interrupted, it takes everything along.
set -eu
. packaging/prepare.sh

SETTING=video/fps
ORDER='"30"'
QUEUE_BYTES=258260 # of message queues, for a simulated camera and its bridge; see docs/linking.md
FIRST_USER=61000   # of those that the cameras run as, one each

fail() {
    echo "./demo fleet: $*" >&2
    exit 1
}

# A camera and its bridge in one namespace, until they are told to end.
if [ "$1" = camera ]; then
    camera=
    trap 'kill $camera ${!:-} 2>/dev/null || true; wait' EXIT # $! from the moment that it runs
    trap 'exit 0' TERM
    zvsim >/dev/null &
    camera=$!
    zvmqtt --broker "$2" --id "$3" &
    wait $!
    exit
fi

cameras=$1
case $cameras in
'' | 0* | *[!0-9]*) fail "'$cameras' is no number of cameras" ;;
esac
names=$(seq --format 'camera-%.0f' "$cameras")

# The queues of a user's processes share one limit, over all namespaces, so every camera runs as a user of its own where
# root starts it. The capability lets these users into the folder of the project, wherever that is.
as_user() {
    echo "setpriv --reuid=$1 --regid=$1 --clear-groups --inh-caps=+dac_read_search --ambient-caps=+dac_read_search"
}
own_users=
if $(as_user $FIRST_USER) true 2>/dev/null; then
    own_users=yes
else
    bytes=$(awk '/^Max msgqueue size/ { print $4 }' /proc/self/limits)
    if [ "$bytes" != unlimited ] && [ "$cameras" -gt $((bytes / QUEUE_BYTES)) ]; then
        fail "the queues of $((bytes / QUEUE_BYTES)) cameras fit one user ('ulimit -q'): start fewer, or as root"
    fi
fi

install_packages build fleet
echo "Building"
build dev
PATH=$PWD/build/dev/sim:$PWD/build/dev/service/mqtt:$PATH:/usr/sbin

work=$(mktemp -d)
processes=
broker=
# shellcheck disable=SC2086 # words
end() {
    kill $processes $broker ${!:-} 2>/dev/null || true
    wait
    rm -rf "$work"
}
trap end EXIT
trap 'exit 130' INT TERM

# A message goes to everybody who listens to its topic, but each camera listens to its own topics alone. So the broker
# has a bridge to itself for each: what is published below "fleet/set/" is published below that camera's "set/" too.
configuration() {
    printf 'listener %s 127.0.0.1\nallow_anonymous true\nset_tcp_nodelay true\n' "$port"
    for name in $names; do
        printf 'connection fleet-%s\naddress 127.0.0.1:%s\ncleansession true\n' "$name" "$port"
        printf 'topic # out 1 fleet/set/ zv/%s/set/\n' "$name"
    done
}

# On the first free port from here on.
start_broker() {
    for port in $(seq $((20000 + $$ % 10000)) 32000); do
        configuration >"$work/mosquitto.conf"
        mosquitto -c "$work/mosquitto.conf" >"$work/mosquitto.log" 2>&1 &
        broker=$!
        until grep -q ' running$' "$work/mosquitto.log"; do
            kill -0 $broker 2>/dev/null || break
            sleep 0.05
        done
        if kill -0 $broker 2>/dev/null; then
            return
        fi
        grep -q 'Address already in use' "$work/mosquitto.log" || break
    done
    cat "$work/mosquitto.log" >&2
    fail "the broker did not start"
}

# Prints the retained messages of all cameras, once each has one of this payload.
# shellcheck disable=SC2086 # words
await() {
    deadline=$(($(date +%s) + 30 + cameras))
    until mosquitto_sub -p "$port" -t "$1" -C "$cameras" -W 1 -F '%t %p' >"$work/shown" 2>"$work/errors" &&
        [ "$(grep -c " $2\$" "$work/shown")" -eq "$cameras" ]; do
        if [ "$(date +%s)" -gt "$deadline" ] || { [ "$processes" ] && ! kill -0 $processes 2>/dev/null; }; then
            tail -n 3 "$work"/*.log "$work/errors" "$work/shown" >&2
            fail "not all of $1 became $2"
        fi
        sleep 0.1
    done
    sort -V "$work/shown"
}

step() {
    printf '\n== %s\n$ %s\n' "$1" "$2"
}

step "A broker" "mosquitto -c mosquitto.conf"
start_broker
echo "on 127.0.0.1:$port"

step "$cameras simulated cameras, each with its bridge" "zvsim & zvmqtt --broker 127.0.0.1:$port --id camera-1 &"
user=$FIRST_USER
for name in $names; do
    # shellcheck disable=SC2046 # words
    env --unset=ZVCTRL_NAMESPACE packaging/private-namespace.sh ${own_users:+$(as_user $user)} \
        packaging/fleet.sh camera "127.0.0.1:$port" "$name" >"$work/$name.log" 2>&1 &
    processes="$processes $!"
    user=$((user + 1))
done

step "All are on line" "mosquitto_sub -t zv/+/availability -t zv/+/link"
await 'zv/+/availability' online
await 'zv/+/link' up

step "What a camera has at the broker, in bytes" "mosquitto_sub -t zv/camera-1/# -F '%t %l'"
mosquitto_sub -p "$port" -t 'zv/camera-1/#' -C 6 -W 5 -F '%t %l' | sort

step "One message changes a setting of all" "mosquitto_pub -q 1 -t fleet/set/$SETTING -m '$ORDER'"
# shellcheck disable=SC2016 # a topic
await '$SYS/broker/connection/+/state' 1 >"$work/connections"
# The retained message comes first, and says that the others will be heard.
mosquitto_sub -p "$port" -q 1 -t zv/camera-1/availability -t 'fleet/set/#' -t 'zv/+/response' -C $((cameras + 2)) \
    -W 30 -F '%U %t %p' >"$work/answers" &
listener=$!
until [ -s "$work/answers" ]; do
    kill -0 $listener
    sleep 0.02
done
mosquitto_pub -p "$port" -q 1 -t "fleet/set/$SETTING" -m "$ORDER"
wait $listener || true
awk '$2 ~ "^fleet/" { ordered = $1 } $2 ~ "/response$" { printf "%7.1f ms  %s %s\n", ($1 - ordered) * 1000, $2, $3 }' \
    "$work/answers" | tee "$work/times"
answered=$(grep -c '"ok":true' "$work/times") || true
if [ "$answered" -ne "$cameras" ]; then
    fail "$answered cameras of $cameras have answered that it is done"
fi
last=$(awk 'END { print $1 }' "$work/times")
echo "All $cameras have answered, the last one $last ms after the broker had the order."

step "All go" "kill ..."
# shellcheck disable=SC2086 # words
kill $processes
# shellcheck disable=SC2086 # words
wait $processes || true
processes=
await 'zv/+/availability' offline
printf '\nAll steps worked.\n'
