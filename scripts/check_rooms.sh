#!/usr/bin/env bash
# Compares src/ and tools/ with the table of rooms in ARCHITECTURE.md: what the files of a room include, and what its
# libraries link. Says where they differ. The second column of that table names the room's libraries, the fourth the
# libraries whose rooms it may include besides its own.
set -euo pipefail -o noglob
cd "$(dirname "$0")/.."

declare -A libraries_of=() allowed=() has_files=()
complaints=0

complain() {
    echo "$1"
    complaints=$((complaints + 1))
}

names_in() {
    { grep --only-matching '`[^`]*`' <<<"$1" || true; } | tr --delete '`' | xargs
}

files() {
    git ls-files --cached --others --exclude-standard -- "$@"
}

# A room is a folder ("platform/jet/"), or the files of one name beside the folders ("machine.*").
read_table() {
    local room libraries others library
    while IFS='|' read -r _ room libraries _ others _; do
        room=$(names_in "$room")
        room=${room#tools/}
        room=${room%/}
        room=${room%.\*}
        libraries=$(names_in "$libraries")
        libraries_of[$room]=$libraries
        for library in $libraries; do
            allowed[$library]+=" $libraries $(names_in "$others") "
        done
    done < <(grep -E '^\| `[a-z_/.*]+` \| `' ARCHITECTURE.md)
}

# Sets room to that of a file, named as from src/ or tools/ or with that folder in front.
find_room() {
    local file=${1#src/}
    file=${file#tools/}
    room=${file%/*}
    [[ $room != "$file" ]] || room=${file%.*}
}

# Whether a library may use one of several others.
may_use() {
    local other
    for other in $2; do
        [[ ${allowed[$1]:-} != *" $other "* ]] || return 0
    done
    return 1
}

check_includes() {
    local file included room library
    while IFS=: read -r file included; do
        find_room "$file"
        library=${libraries_of[$room]:-unknown}
        library=${library%% *}
        if [[ $included == \<* ]]; then
            [[ ${allowed[$library]:-} == *" Qt6::"* ]] || complain "$file includes $included"
        else
            find_room "${included//\"/}"
            may_use "$library" "${libraries_of[$room]:-unknown}" || complain "$file includes $included"
        fi
    done < <(files {src,tools}/*.{h,cpp} | xargs grep -oE '^ *# *include +("[^"]+"|<Q[A-Za-z]+>)' |
        sed -E 's/: *# *include +/:/')
}

check_rooms_exist() {
    local file room
    while IFS= read -r file; do
        find_room "$file"
        has_files[$room]=1
    done < <(files {src,tools}/*.{h,cpp})
    for room in "${!has_files[@]}"; do
        [[ -n ${libraries_of[$room]:-} ]] || complain "ARCHITECTURE.md has no room $room"
    done
    for room in "${!libraries_of[@]}"; do
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
    done < <(files {src,tools}/*CMakeLists.txt)
}

read_table
check_rooms_exist
check_includes
check_links
((complaints == 0))
