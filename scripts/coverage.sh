#!/usr/bin/env bash
# Measures which lines and branches of the logic, the player and the recorder the tests run, file by file.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}" "${run_packages[@]}" "${test_packages[@]}" "${coverage_packages[@]}"
cmake -S . -B build/coverage -G Ninja -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS="-fprofile-instr-generate -fcoverage-mapping"
cmake --build build/coverage

rm -rf build/coverage/profiles
LLVM_PROFILE_FILE="$PWD/build/coverage/profiles/%p-%m.profraw" ctest --test-dir build/coverage --output-on-failure
llvm-profdata-14 merge --sparse build/coverage/profiles/*.profraw --output build/coverage/tests.profdata

objects=()
for program in end_to_end_tests play_tests play_feed recorder_tests record_feed; do
    objects+=(--object "build/coverage/bin/$program")
done
report() {
    llvm-cov-14 report --instr-profile build/coverage/tests.profdata build/coverage/bin/logic_tests "${objects[@]}" \
        --show-region-summary=false "$@"
}
report src/{app,config,errorlog,source,transport,replay}
report src/play
report src/record
