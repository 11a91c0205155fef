#!/usr/bin/env bash
# Makes build/Trellivan-VERSION.tar.gz: one folder with the program, its tools, settings, samples and manual, for any
# Debian 12 of this processor. The same commit gives the same bytes.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}" git
scripts/build.sh

built=build/release/bin
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/release/CMakeCache.txt)
name=Trellivan-$version
stage=build/package
folder=$stage/$name
programs=(Trellivan make_database check_feed)

# The Debian packages of the libraries that the programs name. The plug-ins that Qt loads come with its libraries.
runtime_packages() {
    local libraries library
    libraries=$(g++ -print-multiarch)
    readelf --dynamic "${programs[@]/#/$folder/}" | sed -n 's/.*Shared library: \[\(.*\)\]/\1/p' | sort --unique |
        while read -r library; do dpkg-query --search "*/$libraries/$library" || return; done | sed 's/:.*//' | sort --unique
}

fill_folder() {
    rm -rf "$stage"
    mkdir -p "$folder/docs"
    cp "${programs[@]/#/$built/}" "$built"/shop_day.{mdb,sdd} samples/{Config.ini,shop_day.csv} "$folder"
    cp docs/{manual.md,failures.md,window.png} "$folder/docs"
    strip "${programs[@]/#/$folder/}"
    local packages
    packages=$(runtime_packages | xargs)
    sed "s/@VERSION@/$version/; s/@PACKAGES@/$packages/" docs/package.txt >"$folder/README.txt"
}

# What would work on this machine only.
refuse_traces_of_this_machine() {
    if grep --recursive --files-with-matches --fixed-strings "$PWD" "$folder"; then
        echo "These files name the folder of the build." >&2
        return 1
    fi
    if readelf --dynamic "${programs[@]/#/$folder/}" | grep -E 'RPATH|RUNPATH'; then
        echo "A program looks for its libraries in a folder of its own." >&2
        return 1
    fi
}

fill_folder
refuse_traces_of_this_machine
tar --create --directory="$stage" --format=gnu --sort=name --owner=0 --group=0 --numeric-owner \
    --mode=u+rwX,go+rX,go-w --mtime="$(git log -1 --format=@%ct)" "$name" | gzip --no-name --best >"build/$name.tar.gz"
echo "Package: build/$name.tar.gz"
