#!/bin/sh
# Installs the build into an empty folder and looks at the units there: that a service manager takes them without a
# word, with the programs where they say, and that a program can do little besides its work.
#
#     units.sh BUILD_FOLDER
set -eu

# Of 10, in tenths: a bit more than they have, so that a right that they gain shows.
exposure_max=15

if ! command -v systemd-analyze >/dev/null; then
    echo "units: no systemd-analyze here (package systemd)"
    exit 77
fi
stage=$(mktemp -d "$1/units.XXXXXX")
trap 'rm -rf "$stage"' EXIT
cmake --install "$1" --prefix "$stage/usr" >/dev/null

for unit in "$stage"/usr/lib/systemd/system/*.service; do
    systemd-analyze verify --man=no "$unit" >"$stage/output" 2>&1 || echo "exit code $?" >>"$stage/output"
    systemd-analyze security --offline=true --no-pager --threshold=$exposure_max "$unit" >"$stage/table" 2>&1 ||
        cat "$stage/table" >>"$stage/output"
    user=$(sed -n 's/^User=//p' "$unit")
    grep -q "^u $user " "$stage/usr/lib/sysusers.d/zvctrl.conf" || echo "no such user: $user" >>"$stage/output"
    if [ -s "$stage/output" ]; then
        echo "$unit:"
        cat "$stage/output"
        failed=1
    fi
done
[ "${failed:-0}" -eq 0 ]
