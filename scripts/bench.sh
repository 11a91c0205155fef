#!/usr/bin/env bash
# Measures and prints figures; checks nothing. Wants a quiet machine. docs/benchmarks.md tells what is measured.
#   scripts/bench.sh engine [OPTIONS]   the database engine; options of Google Benchmark
#   scripts/bench.sh replay [SECONDS]   pace, lists, start and storms; seconds for each case of the pace
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

what=${1:-engine}
shift || true
install_packages "${build_packages[@]}" "${bench_packages[@]}"
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DTRELLIVAN_TESTS=OFF -DTRELLIVAN_BENCH=ON
cmake --build build/bench

alone=tests/sockets/in_network_namespace.sh
export QT_QPA_PLATFORM=offscreen
if [[ $what == engine ]]; then
    build/bench/bin/engine_bench "$@"
else
    for protocol in TCP UDP MCAST; do
        "$alone" build/bench/bin/replay_pace "$protocol" "${1:-10}"
    done
    "$alone" build/bench/bin/replay_lines
    build/bench/bin/replay_startup
    "$alone" build/bench/bin/replay_storm 60
fi
