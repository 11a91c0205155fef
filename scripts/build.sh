#!/usr/bin/env bash
# Builds the release: build/release/bin/Trellivan with its sample database and settings beside it.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}"
cmake --preset release
cmake --build --preset release
