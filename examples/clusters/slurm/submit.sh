#!/usr/bin/env bash
# Submits a table as a job array, and a job behind it that sums up: slurm/submit.sh SETTINGS [OPTION OF SBATCH...]
# Run again, it goes on with what is not done.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
rows=$(dirname "$here")/rows.sh
settings=$(realpath "$1")
shift
cd "$(dirname "$settings")"

chunks=$("$rows" "$settings" chunks)
# An array's numbers end below this.
most=$(scontrol show config | sed -n 's/^MaxArraySize *= *//p')
if [ "$chunks" -ge "$most" ]; then
    echo "submit.sh: $chunks chunks are more than an array takes, which is $((most - 1)); make chunk larger" >&2
    exit 1
fi
logs=$(source "$settings" && echo "$logs")
job=$(sbatch --parsable --array="1-$chunks" --output="$logs/slurm-%A_%a.out" "$@" \
    "$here/convert.sbatch" "$rows" "$settings")
sbatch --parsable --dependency="afterany:$job" --job-name=gantrel-merge --output="$logs/summary.txt" "$@" \
    --wrap="$(printf '%q ' "$rows" "$settings" merge)" >/dev/null
echo "$job"
