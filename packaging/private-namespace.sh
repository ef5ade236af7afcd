#!/bin/sh
# Runs a command with message queues, a message size limit and a /tmp of its own.
#
#     private-namespace.sh COMMAND [ARGUMENT ...]
#
# The response queue needs messages of 10000 bytes, more than the kernel's usual limit of 8192, and every camera uses
# the same queue names and the same paths under /tmp. So the command runs in a private IPC and mount namespace, with the
# limit raised; whatever it leaves in its queues or its /tmp is gone at its end. The folder that it is called in stays
# visible.
set -eu

limit=/proc/sys/fs/mqueue/msgsize_max
needed=10000

if [ "${ZVCTRL_NAMESPACE:-}" = inside ]; then
    exec "$@"
fi

# Runs inside: raises the limit, lays a new /tmp, keeps the present folder in it.
# shellcheck disable=SC2016
inside='
set -eu
echo 16384 > /proc/sys/fs/mqueue/msgsize_max
mkdir -p /dev/mqueue 2> /dev/null && mount -t mqueue none /dev/mqueue || :
here=$(pwd)
case $here in
/tmp/*)
    mount --bind "$here" /mnt
    mount -t tmpfs tmpfs /tmp
    mkdir -p "$here"
    mount --move /mnt "$here"
    ;;
*)
    mount -t tmpfs tmpfs /tmp
    ;;
esac
chmod 1777 /tmp
cd "$here"
export ZVCTRL_NAMESPACE=inside
exec "$@"
'

for form in "--ipc --mount" "--ipc --mount --user --map-root-user"; do
    # shellcheck disable=SC2086
    if unshare $form sh -c "$inside" sh true 2>/dev/null; then
        # shellcheck disable=SC2086
        exec unshare $form sh -c "$inside" sh "$@"
    fi
done

if [ "$(cat $limit 2>/dev/null || echo 0)" -ge $needed ]; then
    exec "$@"
fi
echo "The message queues need a larger limit here: set it with 'sysctl -w fs.mqueue.msgsize_max=16384' as root." >&2
exit 1
