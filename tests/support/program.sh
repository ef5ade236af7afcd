# Sourced by the tests that run the project's programs: a simulated camera, and commands with what they are to say.
#
# The script sets $zvsim, and $tested to the program that it tries. What is left goes with $folder.
: "${zvsim:?}" "${tested:?}"
failures=0
folder=$(mktemp -d)

fail() {
    echo "FAILED: $1"
    failures=$((failures + 1))
}

# Starts a simulated camera with these arguments and waits until it is ready. Sets $camera to its process.
start_camera() {
    : >"$folder/camera"
    "$zvsim" "$@" >>"$folder/camera" 2>&1 &
    camera=$!
    until grep -q ready "$folder/camera"; do
        kill -0 "$camera" 2>/dev/null || {
            cat "$folder/camera"
            exit 1
        }
        sleep 0.05
    done
}

# try CODE PATTERN ARGUMENT...: the program ends with CODE, and standard output and error hold a line with PATTERN.
try() {
    code=$1
    pattern=$2
    shift 2
    "$tested" "$@" >"$folder/output" 2>&1 </dev/null
    found=$?
    if [ "$found" -ne "$code" ] || ! grep -qE -e "$pattern" "$folder/output"; then
        fail "$(basename "$tested") $*: ended with $found, not $code, or without \"$pattern\":
$(head -n 20 "$folder/output")"
    fi
}
