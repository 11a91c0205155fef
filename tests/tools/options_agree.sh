#!/usr/bin/env bash
# Compares the options that --help tells with those of the man page and those that completion offers:
# options_agree.sh COMMAND...
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
folder=$(mktemp --directory)
trap 'rm -r "$folder"' EXIT

set +u
source /usr/share/bash-completion/bash_completion
source "$root/tools/command_line/completion.bash"
set -u

# The option at the beginning of an indented line.
of_help() {
    "$1" --help | sed -n 's/^  \(--[a-z-]*\).*/\1/p'
}

# The option that is the tag of a paragraph.
of_man_page() {
    sed -n '/^\.TP$/{n;s/\\//g;s/^fB\(--[a-z-]*\)fR.*/\1/p}' "$folder/$(basename "$1").1"
}

# What is offered behind "COMMAND --".
of_completion() {
    local registered
    registered=$(complete -p "$(basename "$1")")
    [[ $registered =~ ' -F '([a-z_]+) ]]
    COMP_WORDS=("$1" --) COMP_CWORD=1 COMP_LINE="$1 --" COMP_POINT=${#COMP_LINE}
    set +eu
    "${BASH_REMATCH[1]}" "$1" -- "$1"
    set -eu
    printf '%s\n' "${COMPREPLY[@]}"
}

agree() {
    local expected
    expected=$(of_help "$1" | sort)
    grep --quiet --line-regexp -e --version <<<"$expected" &&
        diff <(echo "$expected") <(of_man_page "$1" | sort) &&
        diff <(echo "$expected") <(of_completion "$1" | sort --unique)
}

"$root/scripts/man_pages.sh" "$folder" "$@"
for command in "$@"; do
    agree "$command" || { echo "The options differ: $command" >&2; exit 1; }
done
