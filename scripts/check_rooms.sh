#!/usr/bin/env bash
# Compares src/ with the table of rooms in ARCHITECTURE.md: what the files of a room include, and what its library links.
# Says where they differ. The second column of that table names the room's library, the fourth the libraries whose rooms
# it may include besides its own.
set -euo pipefail
cd "$(dirname "$0")/.."

declare -A library_of=() allowed=() has_files=()
complaints=0

complain() {
    echo "$1"
    complaints=$((complaints + 1))
}

names_in() {
    { grep --only-matching '`[^`]*`' <<<"$1" || true; } | tr --delete '`' | xargs
}

sources() {
    git ls-files --cached --others --exclude-standard "$@"
}

# A room is a folder of src/ ("platform/jet/"), or the files of one name beside the folders ("machine.*").
read_table() {
    local room libraries others library
    while IFS='|' read -r _ room libraries _ others _; do
        room=$(names_in "$room")
        room=${room%/}
        room=${room%.\*}
        libraries=$(names_in "$libraries")
        library_of[$room]=${libraries%% *}
        for library in $libraries; do
            allowed[$library]+=" $libraries $(names_in "$others") "
        done
    done < <(grep -E '^\| `[a-z/.*]+` \| `' ARCHITECTURE.md)
}

# Sets room to that of a file that is named as from src/.
find_room() {
    room=${1%/*}
    [[ $room != "$1" ]] || room=${1%.*}
}

may_use() {
    [[ ${allowed[$1]:-} == *" $2 "* ]]
}

check_includes() {
    local file included room library
    while IFS=: read -r file included; do
        find_room "${file#src/}"
        library=${library_of[$room]:-unknown}
        if [[ $included == \<* ]]; then
            [[ ${allowed[$library]:-} == *" Qt6::"* ]] || complain "$file includes $included"
        else
            find_room "${included//\"/}"
            may_use "$library" "${library_of[$room]:-unknown}" || complain "$file includes $included"
        fi
    done < <(sources 'src/*.h' 'src/*.cpp' | xargs grep -oE '^ *# *include +("[^"]+"|<Q[A-Za-z]+>)' |
        sed -E 's/: *# *include +/:/')
}

check_rooms_exist() {
    local file room
    while IFS= read -r file; do
        find_room "${file#src/}"
        has_files[$room]=1
    done < <(sources 'src/*.h' 'src/*.cpp')
    for room in "${!has_files[@]}"; do
        [[ -n ${library_of[$room]:-} ]] || complain "ARCHITECTURE.md has no room $room"
    done
    for room in "${!library_of[@]}"; do
        [[ -n ${has_files[$room]:-} ]] || complain "ARCHITECTURE.md: the room $room has no files"
    done
}

links_in() {
    tr '\n' ' ' <"$1" | grep -oE 'target_link_libraries\([^)]*' | sed 's/.*(//' || true
}

check_links() {
    local file library words word
    while IFS= read -r file; do
        while read -r library words; do
            for word in $words; do
                [[ $word =~ ^(PUBLIC|PRIVATE|INTERFACE)$ ]] || may_use "$library" "$word" ||
                    complain "$file: $library links $word"
            done
        done < <(links_in "$file")
    done < <(sources 'src/*CMakeLists.txt')
}

read_table
check_rooms_exist
check_includes
check_links
((complaints == 0))
