#!/usr/bin/env bash
# Measures and prints figures; checks nothing. Arguments go to the benchmark program, such as
# --benchmark_filter=1000000/index. docs/benchmarks.md tells what is measured.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}" "${bench_packages[@]}"
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DTRELLIVAN_TESTS=OFF -DTRELLIVAN_BENCH=ON
cmake --build build/bench --target engine_bench
build/bench/bin/engine_bench "$@"
