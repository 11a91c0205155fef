#!/bin/sh
# Runs the whole test that docs/play_feed.md shows, the only block of shell code there, as a user would.
#   run_example.sh PROGRAMS SAMPLES PAGE
set -eu
programs=$1
samples=$2
page=$3

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
sed -n '/^```sh$/,/^```$/{/^```/!p}' "$page" >"$folder/example.sh"
cp "$programs/shop_day.mdb" "$samples/shop_day.csv" "$folder"
cd "$folder"
PATH=$programs:$PATH sh -eu -c 'set +e; . ./example.sh'
