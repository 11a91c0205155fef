#!/usr/bin/env bash
# Builds Trellivan and shows it at work: a receiver in this terminal prints what arrives, and the window is there to
# press Play. Without a display the window runs in a virtual one, Play is pressed here, what the receiver got is
# compared with the sample, and a screenshot is left in build/.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

house=build/release/bin
background=()
trap 'kill "${background[@]}" 2>/dev/null || true' EXIT

install_packages "${build_packages[@]}" "${run_packages[@]}"
scripts/build.sh

with_display() {
    local port
    port=$(sed -n 's/^PortNumber=\([0-9]\+\).*/\1/p' "$house/Config.ini")
    echo "Receiver on port $port. Press Play in the window; close the window to end."
    socat -u "TCP-LISTEN:$port,reuseaddr,fork" STDOUT &
    background+=($!)
    "$house/Trellivan"
}

wait_for() {
    local tries=300
    until "$@"; do
        ((tries-- > 0)) || return 1
        sleep 0.2
    done
}

play_button_pressed() {
    local window
    window=$(xdotool search --onlyvisible --name '^Trellivan$' | head -n 1)
    [[ -n $window ]] && xdotool mousemove --window "$window" 408 196 click 1
}

all_received() {
    "$house/check_feed" samples/shop_day.csv build/demo/received.bin >/dev/null
}

without_display() {
    install_packages "${headless_packages[@]}"
    local port=5015 demo=build/demo
    rm -rf "$demo"
    mkdir "$demo"
    cp "$house"/{Trellivan,shop_day.mdb} samples/Config.ini "$demo"
    export DISPLAY=:57
    Xvfb "$DISPLAY" -screen 0 800x400x24 -nolisten tcp >/dev/null 2>&1 &
    background+=($!)
    socat -u "TCP-LISTEN:$port,bind=127.0.0.1,reuseaddr" CREATE:build/demo/received.bin &
    background+=($!)
    wait_for xdotool getmouselocation >/dev/null 2>&1
    QT_QPA_PLATFORM=xcb "$demo/Trellivan" &
    local window_process=$!
    background+=("$window_process")
    wait_for play_button_pressed
    wait_for all_received || true
    import -window root build/screenshot.png
    kill "$window_process"
    wait "$window_process" 2>/dev/null || true
    echo "Screenshot: build/screenshot.png"
    "$house/check_feed" samples/shop_day.csv build/demo/received.bin
}

if [[ -n ${DISPLAY:-}${WAYLAND_DISPLAY:-} ]]; then with_display; else without_display; fi
