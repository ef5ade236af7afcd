# Sourced by ./demo, ./check and .ci/run, in the project's folder.
#
# install_packages SECTION... installs what is missing of these sections of packages.list, and nothing else. build PRESET
# configures once and builds.

install_packages() {
    missing=$(awk -v sections=" $* " '
        /^\[/ { wanted = index(sections, " " substr($0, 2, length($0) - 2) " "); next }
        wanted && !/^#/' packaging/packages.list | while read -r package; do
        if ! dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed'; then
            printf ' %s' "$package"
        fi
    done)
    if [ -z "$missing" ]; then
        return
    fi
    echo "Installing$missing"
    as_root=
    if [ "$(id -u)" -ne 0 ]; then
        as_root=sudo
    fi
    log=$(mktemp)
    # shellcheck disable=SC2086
    if ! { $as_root apt-get update && DEBIAN_FRONTEND=noninteractive $as_root apt-get install --yes \
        --no-install-recommends $missing; } >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}

build() {
    log=$(mktemp)
    if ! { { [ -f "build/$1/build.ninja" ] || cmake --preset "$1"; } && cmake --build "build/$1" -j "$(nproc)"; } \
        >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}
