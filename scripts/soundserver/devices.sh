# shellcheck shell=sh
# What both servers have in common; read by the start scripts, not run by itself. The directory is in $dir.
# Devices, the same on both:
#   sink ref_out     "Reference Output"  default sink: what a program plays; ref_out.monitor hears it
#   sink mic_feed    "Microphone Feed"   what is played here is heard by the microphone
#   source mic       "Test Microphone"   default source, the only real one
# A second microphone:  pactl load-module module-remap-source source_name=... master=mic_feed.monitor
#                             source_properties="'device.description=\"...\"'"

# prepare DIR OWNER: the directory, private to this user, and who it is for.
prepare() {
    [ -n "$1" ] || {
        echo "usage: eval \"\$($0 DIR [OWNER])\"" >&2
        exit 2
    }
    mkdir -p "$1"
    dir=$(cd "$1" && pwd)
    owner=${2:-}
    chmod 700 "$dir"
    mkdir -p "$dir/home" "$dir/config" "$dir/state" "$dir/pulse"
    chmod 700 "$dir/pulse"
}

# launch NAME COMMAND...: a process in a session of its own that knows nothing of the user's own servers.
launch() {
    name=$1
    shift
    env -u DISPLAY -u PULSE_SERVER -u PULSE_SINK -u PULSE_SOURCE -u PIPEWIRE_REMOTE \
        HOME="$dir/home" XDG_RUNTIME_DIR="$dir" PIPEWIRE_RUNTIME_DIR="$dir" \
        XDG_CONFIG_HOME="$dir/config" XDG_STATE_HOME="$dir/state" \
        PULSE_RUNTIME_PATH="$dir/pulse" PULSE_STATE_PATH="$dir/state" PULSE_COOKIE="$dir/cookie" \
        DBUS_SESSION_BUS_ADDRESS="unix:path=$dir/bus" DBUS_SYSTEM_BUS_ADDRESS="unix:path=$dir/no-bus" \
        setsid "$@" </dev/null >"$dir/$name.log" 2>&1 &
    echo $! >"$dir/$name.pid"
}

# until_true COMMAND...: tries for ten seconds; then what was started goes again and the script fails.
until_true() {
    tries=0
    until "$@" >/dev/null 2>&1; do
        tries=$((tries + 1))
        if [ "$tries" -gt 200 ]; then
            echo "$0: still waiting for: $*" >&2
            tail -n 20 "$dir"/*.log >&2
            "$(dirname "$0")/stop" "$dir"
            exit 1
        fi
        sleep 0.05
    done
}

control() {
    HOME="$dir/home" PULSE_RUNTIME_PATH="$dir/pulse" PULSE_COOKIE="$dir/cookie" \
        PULSE_SERVER="unix:$dir/pulse/native" pactl "$@"
}

defaults_stand() {
    control set-default-sink ref_out && control set-default-source mic &&
        control info | grep -q '^Default Source: mic$'
}

# Ends everything when the owner, a process id, has gone without doing so.
guard() {
    [ -n "$owner" ] || return 0
    # shellcheck disable=SC2016  # the inner shell expands them
    setsid sh -c 'while kill -0 "$1" && [ -d "$2" ]; do sleep 1; done; exec "$3" "$2"' \
        guard "$owner" "$dir" "$(cd "$(dirname "$0")" && pwd)/stop" </dev/null >/dev/null 2>&1 &
    echo $! >"$dir/guard.pid"
}

# What a program has to have in its environment to come to this server and to no other.
tell_environment() {
    echo "export PULSE_SERVER='unix:$dir/pulse/native' PULSE_RUNTIME_PATH='$dir/pulse'" \
        "PULSE_COOKIE='$dir/cookie' XDG_RUNTIME_DIR='$dir' PIPEWIRE_RUNTIME_DIR='$dir'"
}
