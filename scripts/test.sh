#!/usr/bin/env bash
# Checks everything: formatting, rooms, manual, clang-tidy of what ships, the release build, and all tests under the
# address and undefined-behaviour sanitizers. Needs no display; the tests of the network stay in a namespace of their own.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}" "${run_packages[@]}" "${headless_packages[@]}" "${test_packages[@]}" \
    "${bench_packages[@]}"

mapfile -t headers_and_sources < <(git ls-files '*.h' '*.cpp')
mapfile -t sources < <(git ls-files 'src/*.cpp' 'tools/*.cpp')

echo "== Formatting"
clang-format-14 --dry-run -Werror "${headers_and_sources[@]}"

echo "== Rooms"
scripts/check_rooms.sh

echo "== Manual"
scripts/check_manual.sh

echo "== Release build"
scripts/build.sh

echo "== Build with sanitizers"
cmake --preset dev
cmake --build --preset dev

echo "== clang-tidy"
printf '%s\n' "${sources[@]}" | xargs --max-procs="$(nproc)" --max-args=4 clang-tidy-14 -p build/dev --quiet

echo "== Tests"
ctest --test-dir build/dev --output-on-failure
