#!/usr/bin/env bash
# Runs one or more scripts through marzipel-sim with one shared home, from the scripts' folder,
# and compares what they print with the expected file: each run's standard output, its exit
# status and standard error, and finally how many lines the debug log file holds.
# usage: run_scenario.sh MARZIPEL_SIM EXPECTED SCRIPT...
#        run_scenario.sh --update MARZIPEL_SIM EXPECTED SCRIPT...   (rewrites EXPECTED)
set -u
update=false
if [ "$1" = "--update" ]; then update=true; shift; fi
sim=$1
expected=$2
shift 2
home=$(mktemp -d)
actual="$home.actual"
trap 'rm -rf "$home" "$actual"' EXIT
cd "$(dirname "$1")" || exit 1
# Absolute paths under the scenarios' folder differ from checkout to checkout.
for script in "$@"; do
  "$sim" --home "$home" "$script" 2>"$home/.stderr"
  echo "exit $?"
  sed 's/^/stderr /' "$home/.stderr"
done | sed "s#$PWD/#<scenarios>/#g" >"$actual"
log="$home/Documents/Marzipel_debug.log"
echo "debug log lines: $( [ -f "$log" ] && wc -l <"$log" || echo none)" >>"$actual"
if $update; then cp "$actual" "$expected"; exit 0; fi
diff -u "$expected" "$actual"
