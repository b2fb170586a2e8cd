# shellcheck shell=bash
# Sourced by run.sh and test.sh: packages, configuration and build, each only where something is missing.
# Messages are Japanese, since the shop's own people run these commands.

set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

# Qt reads file names and text in the locale's encoding; a bare machine has no locale at all.
case "${LC_ALL:-${LC_CTYPE:-${LANG:-}}}" in
    *[Uu][Tt][Ff]-8 | *[Uu][Tt][Ff]8) ;;
    *) export LC_ALL=C.UTF-8 ;;
esac

# The compiler cache needs a home to live in.
if [ ! -w "${HOME:-}" ] && [ -z "${CCACHE_DIR:-}" ]; then
    export CCACHE_DISABLE=1
fi

stop()
{
    printf '中止: %s\n' "$1" >&2
    exit 1
}

missing_packages()
{
    local wanted installed
    wanted=$(sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' packages.txt | sort)
    # shellcheck disable=SC2086 # one argument a package
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' $wanted 2>/dev/null |
        sed -n 's/^installed //p' | sort) || true
    comm -23 <(printf '%s\n' "$wanted") <(printf '%s\n' "$installed") | tr '\n' ' '
}

# On a terminal apt's progress is shown as one line that counts up.
show_progress()
{
    local kind percent
    while IFS=: read -r kind _ percent _; do
        [ -t 1 ] || continue
        case $kind in
            dlstatus) printf '\r  ダウンロード %3d %%' "${percent%.*}" ;;
            pmstatus) printf '\r  インストール %3d %%' "${percent%.*}" ;;
        esac
    done
    [ ! -t 1 ] || printf '\n'
}

install_packages()
{
    command -v apt-get >/dev/null ||
        stop 'Debian 12 が必要です(apt がありません)。 This needs Debian 12 (no apt found).'

    local missing log=build/install.log
    missing=$(missing_packages)
    [ -n "$missing" ] || return 0

    local as_root=(env DEBIAN_FRONTEND=noninteractive)
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null ||
            stop "root でなく sudo もありません。管理者に次の実行を頼んでください(ask an administrator to run): apt-get install --no-install-recommends $missing"
        sudo -v || stop 'sudo が許可されませんでした。 sudo was refused.'
        as_root=(sudo "${as_root[@]}")
    fi

    echo "足りないパッケージを入れます(数分かかります): $missing"
    mkdir -p build
    # A stale index is no reason to stop: what counts is whether the packages arrive.
    "${as_root[@]}" apt-get -q update >"$log" 2>&1 || true
    # shellcheck disable=SC2086 # one argument a package
    "${as_root[@]}" apt-get -q -y -o DPkg::Lock::Timeout=300 -o APT::Status-Fd=3 \
        install --no-install-recommends $missing 3>&1 >>"$log" 2>&1 | show_progress ||
        stop "パッケージを入れられませんでした。ネットワークと空き容量を確かめてください(詳細: $log)。 Packages could not be installed; check network and disk: $(sed -n 's/^E: //p' "$log" | head -n 1)"
}

# Each compiler of the screens needs up to 1.5 GB.
build_jobs()
{
    local cores by_memory
    cores=$(nproc)
    by_memory=$(awk '/^MemTotal/ { print int($2 / 1500000) }' /proc/meminfo)
    echo $((by_memory < 1 ? 1 : by_memory < cores ? by_memory : cores))
}

# build PRESET FOLDER [TARGET…]
build()
{
    local preset=$1 folder=$2
    shift 2
    mkdir -p "$folder"
    cmake --preset "$preset" >"$folder/configure.log" 2>&1 || {
        tail -n 20 "$folder/configure.log" >&2
        stop "構成に失敗しました(詳細: $folder/configure.log)。 Configuring failed."
    }
    cmake --build "$folder" -j "${CMAKE_BUILD_PARALLEL_LEVEL:-$(build_jobs)}" ${1:+--target "$@"} ||
        stop 'ビルドに失敗しました(上の表示をご覧ください)。 The build failed; see above.'
}
