#!/usr/bin/env bash
# Says which texts of the status list, procedures of the error log, keys of the settings and names of protocols and roles
# the manual leaves out, which keys samples/Config.ini, and which numbers of failures docs/failures.md.
set -euo pipefail
shopt -s inherit_errexit
cd "$(dirname "$0")/.."

logic=(src/app src/config src/errorlog src/source src/transport src/replay)

keys() {
    sed -n '/^namespace keys/,/^}/s/.* = "\(.*\)";/\1/p' src/config/settings.h
}

# Texts with a blank in front, names of procedures, the settings with their sections, protocols and roles.
texts() {
    grep --recursive --no-filename --only-matching -E '" +[A-Z][^"]*"' "${logic[@]}"
    grep --recursive --no-filename --only-matching -E '"(frmConnect|frmConfig|modGlobals)\.[^"]+"' "${logic[@]}"
    keys | sed 's/.*/"`&`"/'
    sed -n 's/.* return \("[^"]\+"\);/\1/p' src/transport/protocol.h
}

numbers() {
    sed -n 's/.*constexpr int k[A-Za-z]* = \([0-9]*\);.*/\1/p' \
        src/platform/failure.h src/platform/sockets/socket.cpp
}

# A source that is gone ends the script here: a loop over the output alone would not notice.
all_texts=$(texts | sort --unique)
all_numbers=$(numbers)
all_keys=$(keys)

missing=0
while IFS= read -r text; do
    text=${text:1:-1}
    grep --quiet --fixed-strings -- "$text" docs/manual.md && continue
    echo "docs/manual.md leaves out \"$text\""
    missing=1
done <<<"$all_texts"
while IFS= read -r key; do
    grep --quiet -E "^($key=|\[$key\])" samples/Config.ini && continue
    echo "samples/Config.ini leaves out $key"
    missing=1
done <<<"$all_keys"
while read -r number; do
    grep --quiet --word-regexp "$number" docs/failures.md && continue
    echo "docs/failures.md leaves out $number"
    missing=1
done <<<"$all_numbers"
exit $missing
