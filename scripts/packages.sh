# Sourced by the other scripts: what they need from Debian 12, and how it gets here.
# shellcheck shell=bash disable=SC2034

build_packages=(cmake g++ libcli11-dev ninja-build nlohmann-json3-dev qt6-base-dev)
run_packages=(socat)
headless_packages=(imagemagick xdotool xvfb)
test_packages=(bash-completion clang-format-14 clang-tidy-14 fonts-dejavu-core git help2man iproute2 libgtest-dev
    locales mdbtools util-linux)
bench_packages=(iproute2 libbenchmark-dev mdbtools util-linux)
package_packages=(git help2man)
coverage_packages=(clang-14 llvm-14)

# Installs those of the named packages that are missing.
install_packages() {
    local missing=() name
    for name in "$@"; do
        [[ $(dpkg-query --show --showformat='${db:Status-Status}' "$name" 2>/dev/null) == installed ]] || missing+=("$name")
    done
    ((${#missing[@]})) || return 0
    local as_root=()
    ((EUID == 0)) || as_root=(sudo)
    "${as_root[@]}" apt-get update --quiet --quiet
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install --quiet --quiet --yes --no-install-recommends \
        "${missing[@]}"
}
