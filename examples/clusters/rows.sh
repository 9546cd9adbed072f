#!/usr/bin/env bash
# The rows of a batch in chunks, for whatever engine starts the tasks. The variable GANTREL names the program where it
# is not on the PATH.
#   rows.sh SETTINGS chunks      how many chunks there are; checks the table
#   rows.sh SETTINGS run K       converts the rows of chunk K that are not done, the first is 1
#   rows.sh SETTINGS merge       sums up all logs; the code is 0 when every row is done
set -euo pipefail

fail() {
    echo "rows.sh: $1" >&2
    exit 2
}

gantrel=${GANTREL:-gantrel}
[ $# -ge 2 ] || fail "wants the settings' file, and one of chunks, run K and merge"
[ -f "$1" ] || fail "there is no settings file $1"
cd "$(dirname "$1")"
source "./$(basename "$1")"
for name in table logs chunk options; do
    [ -n "${!name+x}" ] || fail "$1 does not say $name"
done
[[ $chunk =~ ^[1-9][0-9]*$ ]] || fail "$1: chunk is $chunk, and is to be a number of rows"

count_rows() {
    "$gantrel" batch "$table" "${options[@]}" --list --json |
        python3 -c 'import json, sys; print(len(json.load(sys.stdin)["rows"]))'
}

case $2 in
chunks)
    mkdir -p "$logs"
    rows=$(count_rows)
    echo "$rows" >"$logs/rows.tmp.$$"
    mv "$logs/rows.tmp.$$" "$logs/rows"
    echo $(((rows + chunk - 1) / chunk))
    ;;
run)
    [[ ${3:-} =~ ^[1-9][0-9]*$ ]] || fail "run wants the number of a chunk, the first is 1"
    [ -f "$logs/rows" ] || fail "nobody has counted the chunks yet: rows.sh $1 chunks"
    first=$((($3 - 1) * chunk + 1))
    last=$(($3 * chunk))
    rows=$(cat "$logs/rows")
    [ "$first" -le "$rows" ] || fail "there is no chunk $3: the table has $rows rows, in chunks of $chunk"
    if [ "$last" -gt "$rows" ]; then last=$rows; fi
    # Each try of a chunk adds to its log; the last word on a row counts. The machine's name keeps two of them apart.
    exec "$gantrel" batch "$table" "${options[@]}" --row "$first-$last" --workers "${WORKERS:-1}" \
        --log "$logs/chunk-$(printf %05d "$3")-$(hostname -s).jsonl"
    ;;
merge)
    # Of two tries of a chunk on different machines the later one counts.
    compgen -G "$logs/chunk-*.jsonl" >/dev/null || fail "there are no logs in $logs yet"
    mapfile -t all < <(ls -tr "$logs"/chunk-*.jsonl)
    exec "$gantrel" batch "$table" "${options[@]}" --merge "${all[@]}" "${@:3}"
    ;;
*)
    fail "$2 is none of chunks, run and merge"
    ;;
esac
