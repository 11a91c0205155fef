#!/usr/bin/env bash
# Makes the man pages of commands from their --help: man_pages.sh FOLDER COMMAND...
# The date in the pages is SOURCE_DATE_EPOCH, or else today.
set -euo pipefail
folder=$1
shift

# The first paragraph of the description: the second one of the help.
purpose() {
    local text
    text=$("$1" --help | awk -v RS= 'NR == 2' | paste --serial --delimiters=' ')
    text=${text,}
    printf '%s' "${text%.}"
}

mkdir -p "$folder"
for command in "$@"; do
    LC_ALL=C TZ=UTC0 help2man --no-info --section=1 --name="$(purpose "$command")" \
        --output="$folder/$(basename "$command").1" "$command"
done
