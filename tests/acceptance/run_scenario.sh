#!/usr/bin/env bash
# Runs one or more scripts through marzipel-sim with one shared home and compares what they
# print (standard output, then each run's exit status and standard error) with the expected file.
# usage: run_scenario.sh MARZIPEL_SIM EXPECTED SCRIPT...
set -u
sim=$1
expected=$2
shift 2
home=$(mktemp -d)
trap 'chmod -R u+w "$home"; rm -rf "$home"' EXIT
actual="$home.actual"
trap 'chmod -R u+w "$home"; rm -rf "$home" "$actual"' EXIT
for script in "$@"; do
  "$sim" --home "$home" "$script" 2>"$home/.stderr"
  echo "exit $?"
  sed 's/^/stderr /' "$home/.stderr"
done >"$actual"
diff -u "$expected" "$actual"
