#!/usr/bin/env bash
# Measures and prints figures; checks nothing. Wants a quiet machine. docs/benchmarks.md tells what is measured.
#   scripts/bench.sh engine [OPTIONS]   the database engine; options of Google Benchmark
#   scripts/bench.sh replay [SECONDS]   pace, lists, start and storms; seconds for each case of the pace
#   scripts/bench.sh play [SECONDS]     play_feed beside bare loops; seconds for each case
#   scripts/bench.sh record [ROUNDS]    what record_feed keeps beside socat, and what its tap adds
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

what=${1:-engine}
shift || true
install_packages "${build_packages[@]}" "${run_packages[@]}" "${bench_packages[@]}"
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DTRELLIVAN_TESTS=OFF -DTRELLIVAN_BENCH=ON
cmake --build build/bench

alone=tests/sockets/in_network_namespace.sh
export QT_QPA_PLATFORM=offscreen
if [[ $what == engine ]]; then
    build/bench/bin/engine_bench "$@"
elif [[ $what == play ]]; then
    "$alone" build/bench/bin/play_bench "${1:-10}"
elif [[ $what == record ]]; then
    "$alone" build/bench/bin/record_throughput build/bench/bin/record_feed 500 "${1:-3}"
    "$alone" build/bench/bin/record_tap_latency build/bench/bin/record_feed 10 "${1:-3}"
else
    for protocol in TCP UDP MCAST; do
        "$alone" build/bench/bin/replay_pace "$protocol" "${1:-10}"
    done
    "$alone" build/bench/bin/replay_lines
    build/bench/bin/replay_startup
    "$alone" build/bench/bin/replay_storm 60
fi
