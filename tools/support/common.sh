# Sourced by the scripts of tools/: where the tree is, what is installed, how many jobs fit.
# shellcheck shell=bash
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
support=$root/tools/support

say() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }
die() { say "$*"; exit 1; }

# Every script says at its head what it does and takes.
case ${1:-} in
-h | --help)
    awk 'NR > 1 { if (!/^#/) exit; if (!/shellcheck/) print substr($0, 3) }' "$0"
    exit 0
    ;;
esac

# packages GROUP…: the names of these groups, as packages.txt lists them.
packages() {
    local group
    for group in "$@"; do
        awk -v group="$group" '$1 == group { print $2 }' "$support/packages.txt"
    done | sort -u
}

# missing PACKAGE…: those that are not installed.
missing() {
    dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null |
        awk '$1 == "installed" { print $2 }' | sort -u |
        comm -13 - <(printf '%s\n' "$@" | sort -u)
}

# Runs a command as root: directly, by sudo, or (on a desktop) by pkexec.
as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null && { [ -t 0 ] || sudo -n true 2>/dev/null; }; then
        sudo "$@"
    elif command -v pkexec >/dev/null && [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
        pkexec "$@"
    else
        return 77
    fi
}

# setup GROUP…: installs what is missing of these groups. Quiet when nothing is.
setup() {
    local wanted absent status=0
    mapfile -t wanted < <(packages "$@")
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        say "no apt here; taking it that these are installed: ${wanted[*]}"
        return
    fi
    mapfile -t absent < <(missing "${wanted[@]}")
    [ ${#absent[@]} -gt 0 ] || return 0
    say "installing ${absent[*]}"
    as_root env DEBIAN_FRONTEND=noninteractive sh -c '
        apt-get -q -o DPkg::Lock::Timeout=600 update &&
        apt-get -q -y -o DPkg::Lock::Timeout=600 install --no-install-recommends "$@"' \
        install "${absent[@]}" >&2 || status=$?
    [ $status != 77 ] || die "not root, and no sudo or pkexec to ask with; please run as root:
    apt-get update && apt-get install --no-install-recommends ${absent[*]}"
    [ $status = 0 ] || die "apt-get failed ($status); these are still missing: ${absent[*]}"
}

# How many compilers fit: one for each processor and each 1.5 GB of memory.
jobs() {
    local processors memory limit
    processors=$(nproc)
    memory=$(awk '$1 == "MemAvailable:" { print int($2 / 1024) }' /proc/meminfo)
    if limit=$(cat /sys/fs/cgroup/memory.max 2>/dev/null) && [ "$limit" != max ]; then
        limit=$((limit / 1024 / 1024))
        [ "$limit" -ge "$memory" ] || memory=$limit
    fi
    local fitting=$((memory / 1500))
    [ "$fitting" -le "$processors" ] || fitting=$processors
    [ "$fitting" -ge 1 ] || fitting=1
    echo "$fitting"
}

# build PRESET [TARGET…]: configures and builds in build/PRESET.
build() {
    local preset=$1
    shift
    (
        cd "$root"
        cmake --preset "$preset" >&2
        cmake --build --preset "$preset" --parallel "$(jobs)" ${1:+--target "$@"} >&2
    )
}
