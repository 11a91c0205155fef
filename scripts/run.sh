#!/usr/bin/env bash
# Builds Trellivan and shows it at work: a receiver in this terminal prints what arrives, and the window is there to
# press Play. Without a display the window runs in a virtual one, Play is pressed here, what the receiver got is
# compared with the sample, and a screenshot is left in build/.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

built=build/release/bin
demo=build/demo
received=$demo/received.bin
background=()
trap 'kill "${background[@]}" 2>/dev/null || true' EXIT

install_packages "${build_packages[@]}" "${run_packages[@]}"
scripts/build.sh

port_of() {
    sed -n 's/^PortNumber=\([0-9]\+\).*/\1/p' "$1"
}

with_display() {
    local port
    port=$(port_of "$built/Config.ini")
    echo "Receiver on port $port. Press Play in the window; close the window to end."
    socat -u "TCP-LISTEN:$port,reuseaddr,fork" STDOUT &
    background+=($!)
    "$built/Trellivan"
}

wait_for() {
    local tries=300
    until "$@"; do
        ((tries-- > 0)) || return 1
        sleep 0.2
    done
}

# In the middle of the button, in pixels of the window at scale 1.
play_button_pressed() {
    local window
    window=$(xdotool search --onlyvisible --name '^Trellivan$' | head -n 1)
    [[ -n $window ]] && xdotool mousemove --window "$window" 408 196 click 1
}

all_received() {
    "$built/check_feed" samples/shop_day.csv "$received" >/dev/null
}

without_display() {
    install_packages "${headless_packages[@]}"
    rm -rf "$demo"
    mkdir "$demo"
    cp "$built"/{Trellivan,shop_day.mdb} samples/Config.ini "$demo"
    Xvfb -displayfd 3 -screen 0 800x400x24 -nolisten tcp 3>"$demo/display" >/dev/null 2>&1 &
    background+=($!)
    socat -u "TCP-LISTEN:$(port_of "$demo/Config.ini"),bind=127.0.0.1,reuseaddr" CREATE:"$received" &
    background+=($!)
    wait_for test -s "$demo/display"
    DISPLAY=:$(<"$demo/display")
    export DISPLAY
    QT_QPA_PLATFORM=xcb "$demo/Trellivan" &
    local window_process=$!
    background+=("$window_process")
    wait_for play_button_pressed
    wait_for all_received || true
    import -window root build/screenshot.png
    kill "$window_process"
    wait "$window_process" 2>/dev/null || true
    echo "Screenshot: build/screenshot.png"
    "$built/check_feed" samples/shop_day.csv "$received"
}

if [[ -n ${DISPLAY:-}${WAYLAND_DISPLAY:-} ]]; then with_display; else without_display; fi
