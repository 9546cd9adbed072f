#!/usr/bin/env bash
# The rows of a batch with GNU parallel, as many tasks at a time as there are processors:
#   parallel.sh SETTINGS [OPTION OF PARALLEL...]
# Run again, it goes on with what is not done. For several machines: --sshlogin host1,host2 --env GANTREL
set -euo pipefail

[ $# -ge 1 ] || { echo "parallel.sh: wants the settings' file" >&2; exit 2; }
rows=$(cd "$(dirname "$0")" && pwd)/rows.sh
settings=$(realpath "$1")
shift
chunks=$("$rows" "$settings" chunks)
# The program leaves done rows out, and knows of changed ones, which a list of jobs does not.
seq "$chunks" | parallel "$@" --quote "$rows" "$settings" run {} || true
exec "$rows" "$settings" merge
