#!/bin/bash
# Proves both commands on a bare Debian 12: debootstraps the minimal system into FOLDER, copies the committed
# tree into it, and runs ./test.sh, ./test.sh again and ./run.sh there, with the time that each one took.
#
#   packaging/check-clean-machine.sh FOLDER [MIRROR]
#
# FOLDER must not exist yet; it is removed afterwards, with KEEP=1 it stays. MIRROR is the package archive to
# use, by default the one that this machine's apt uses. COMMANDS holds other commands, separated by ";".
# Needs root and the package debootstrap.
set -euo pipefail

stop()
{
    printf 'check-clean-machine: %s\n' "$1" >&2
    exit 1
}

[ $# -ge 1 ] || stop 'usage: check-clean-machine.sh FOLDER [MIRROR]'
[ "$(id -u)" -eq 0 ] || stop 'must run as root'
command -v debootstrap >/dev/null || stop 'debootstrap is not installed'
[ ! -e "$1" ] || stop "$1 exists already"

# A mount namespace of its own: however this script ends, its mounts are gone with it.
if [ -z "${IN_NAMESPACE:-}" ]; then
    IN_NAMESPACE=1 exec unshare --mount --propagation private "$0" "$@"
fi

tree=$(git -C "$(dirname "$0")" rev-parse --show-toplevel)
mkdir -p "$1"
bare=$(cd "$1" && pwd)
# shellcheck disable=SC2016 # apt fills in the address
mirror=${2:-${DEBIAN_MIRROR:-$(apt-get indextargets --format '$(REPO_URI)' 'Codename: bookworm' | head -n 1)}}
[ -n "$mirror" ] || stop 'no package archive known; name one as the second argument'

cleanup()
{
    umount "$bare/dev/shm" "$bare/dev/pts" "$bare/proc" 2>/dev/null || true
    if mountpoint -q "$bare/proc"; then
        stop "$bare/proc is still in use; $bare stays"
    fi
    [ -n "${KEEP:-}" ] || rm -rf --one-file-system "$bare"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# Prints how long a step took; fails as the step fails.
timed()
{
    local name=$1 begin=$SECONDS status=0
    shift
    "$@" || status=$?
    times+=("$(printf '%5d s  exit %d  %s' $((SECONDS - begin)) "$status" "$name")")
    return "$status"
}
times=()

in_bare()
{
    chroot "$bare" /usr/bin/env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        HOME=/root TERM=dumb /bin/bash -c "$1"
}

# The bare system reaches the network the way this machine does: same archives, keys, proxy, name server.
copy_network_settings()
{
    cp -L /etc/resolv.conf /etc/hosts "$bare/etc/"
    rm -f "$bare/etc/apt/sources.list"
    local part
    for part in sources.list sources.list.d trusted.gpg.d keyrings auth.conf auth.conf.d; do
        [ ! -e "/etc/apt/$part" ] || cp -a "/etc/apt/$part" "$bare/etc/apt/"
    done
    cp -an /usr/share/keyrings/. "$bare/usr/share/keyrings/"
    apt-config dump | grep -E '^Acquire::(http|https|Check-)' >"$bare/etc/apt/apt.conf.d/00network" || true
    # Certificates only where an archive is reached through https.
    if grep -rqs 'https://' "$bare"/etc/apt/sources.list*; then
        mkdir -p "$bare/etc/ssl/certs"
        cp -L /etc/ssl/certs/ca-certificates.crt "$bare/etc/ssl/certs/"
    fi
}

use_apt_proxy()
{
    local proxy=
    eval "$(apt-config shell proxy Acquire::http::Proxy)"
    if [ -n "$proxy" ]; then
        export http_proxy=$proxy
    fi
}

(use_apt_proxy && debootstrap --variant=minbase bookworm "$bare" "$mirror" >"$bare.log" 2>&1) || {
    tail -n 20 "$bare.log" >&2
    stop "debootstrap failed (see $bare.log)"
}
rm -f "$bare.log"
copy_network_settings
mount -t proc proc "$bare/proc"
mount -t devpts devpts "$bare/dev/pts" 2>/dev/null || true
mkdir -p "$bare/dev/shm"
mount -t tmpfs tmpfs "$bare/dev/shm"

mkdir -p "$bare/root/kanbalore"
commit=$(git -C "$tree" rev-parse --short HEAD)
git -C "$tree" archive "$commit" | tar -x -C "$bare/root/kanbalore"

failed=0
IFS=';' read -r -a commands <<<"${COMMANDS:-./test.sh;./test.sh;./run.sh}"
for command in "${commands[@]}"; do
    timed "$command" in_bare "cd /root/kanbalore && $command" || failed=1
done
printf '%s\n' '' "Bare Debian 12 at commit $commit:" "${times[@]}"
exit "$failed"
