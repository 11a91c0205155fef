#!/usr/bin/env bash
# Makes build/Trellivan-VERSION.tar.gz: one folder with the window, the commands, settings, samples, manual and man
# pages, for any Debian 12 of this processor. The same commit gives the same bytes.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}" "${package_packages[@]}"
scripts/build.sh

built=build/release/bin
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/release/CMakeCache.txt)
name=Trellivan-$version
stage=build/package
folder=$stage/$name
commands=(play_feed record_feed make_database check_feed)
programs=(Trellivan "${commands[@]}")
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH

# The Debian packages of the libraries that programs name. The plug-ins that Qt loads come with its libraries.
runtime_packages() {
    local libraries library
    libraries=$(g++ -print-multiarch)
    readelf --dynamic "${@/#/$folder/}" | sed -n 's/.*Shared library: \[\(.*\)\]/\1/p' | sort --unique |
        while read -r library; do dpkg-query --search "*/$libraries/$library" || return; done | sed 's/:.*//' | sort --unique
}

fill_folder() {
    rm -rf "$stage"
    mkdir -p "$folder/docs"
    cp "${programs[@]/#/$built/}" "$built"/shop_day.{mdb,sdd} samples/{Config.ini,shop_day.csv} "$folder"
    cp docs/{manual,play_feed,record_feed,failures}.md docs/window.png "$folder/docs"
    cp tools/command_line/completion.bash "$folder"
    strip "${programs[@]/#/$folder/}"
    scripts/man_pages.sh "$folder/man/man1" "${commands[@]/#/$folder/}"
}

write_readme() {
    local for_window for_commands
    for_window=$(runtime_packages Trellivan | xargs)
    for_commands=$(runtime_packages "${commands[@]}" | xargs)
    sed "s/@VERSION@/$version/; s/@FOR_WINDOW@/$for_window/; s/@FOR_COMMANDS@/$for_commands/" \
        docs/package.txt >"$folder/README.txt"
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

# The commands also run where there is no display and nothing that draws.
refuse_graphics_in_commands() {
    if ldd "${commands[@]/#/$folder/}" | grep -E 'libQt6(Gui|Widgets|DBus)|lib(X11|xcb|GL|EGL|OpenGL|wayland|fontconfig)'; then
        echo "A command needs a library that draws." >&2
        return 1
    fi
}

fill_folder
write_readme
refuse_traces_of_this_machine
refuse_graphics_in_commands
tar --create --directory="$stage" --format=gnu --sort=name --owner=0 --group=0 --numeric-owner \
    --mode=u+rwX,go+rX,go-w --mtime="@$SOURCE_DATE_EPOCH" "$name" | gzip --no-name --best >"build/$name.tar.gz"
echo "Package: build/$name.tar.gz"
