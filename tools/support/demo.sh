# Sourced after common.sh: the demonstration's private home, and a display where there is none.
# shellcheck shell=bash disable=SC2154
demo=$root/build/demo

# make_demo: the sample library, tagged and rated, as the home of a user of its own. It lies
# beside the build since a temporary folder often takes no extended attributes. Made once: what
# was tried out in it stays until build/demo is deleted.
make_demo() {
    export XAUTHORITY=${XAUTHORITY:-$HOME/.Xauthority}
    export HOME=$demo/home
    export XDG_CONFIG_HOME=$demo/config XDG_DATA_HOME=$demo/data
    export XDG_CACHE_HOME=$demo/cache XDG_STATE_HOME=$demo/state
    mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$XDG_STATE_HOME"
    [ -d "$HOME" ] ||
        "$root/tools/make-samples" --murnctl "$root/build/release/bin/murnctl" "$HOME" ||
        die 'the sample library could not be made'
}

# start_display WIDTHxHEIGHT: a virtual X server, stopped when the script ends.
start_display() {
    local number=$demo/display
    mkdir -p "$demo"
    Xvfb -displayfd 3 -screen 0 "${1}x24" -noreset -nolisten tcp 3>"$number" 2>"$demo/xvfb.log" &
    display_pid=$!
    trap 'kill "$display_pid" 2>/dev/null || true' EXIT
    local tries
    for tries in $(seq 100); do
        [ ! -s "$number" ] || break
        kill -0 "$display_pid" 2>/dev/null || die "no virtual display: see $demo/xvfb.log"
        sleep 0.1
    done
    [ -s "$number" ] || die "no virtual display after ${tries} tries"
    export DISPLAY
    DISPLAY=:$(cat "$number")
    unset WAYLAND_DISPLAY
    if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
        export XDG_RUNTIME_DIR=$demo/run
        [ -d "$XDG_RUNTIME_DIR" ] || mkdir -m 700 "$XDG_RUNTIME_DIR"
    fi
}

# take_screenshot FILE [ARGUMENT of murn…]: the window, once everything is found and drawn.
take_screenshot() {
    timeout 120 "$root/build/release/bin/murn" --screenshot "$@" || die 'no screenshot was taken'
}
