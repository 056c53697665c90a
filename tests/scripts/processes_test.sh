#!/bin/bash
# What the scripts promise about processes: a run ends all that it started, a later run ends what a
# killed one left, and nobody else's process is touched. Needs no Windows, no display, no network.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
export XDG_CACHE_HOME=$work
failures=0
trap 'kill -KILL $(jobs -p) 2>/dev/null; "$work/clean"; rm -rf "$work"' EXIT

# script NAME: writes a script of the house from standard input.
script() {
  {
    printf '#!/bin/bash\n. %q/scripts/all.sh\n' "$here/../.."
    cat
  } >"$work/$1"
  chmod +x "$work/$1"
}

# expect WORDS COMMAND...
expect() {
  local words=$1
  shift
  if "$@"; then printf 'ok: %s\n' "$words"; else
    printf 'FAILED: %s\n' "$words"
    failures=$((failures + 1))
  fi
}

runs() { kill -0 "$1" 2>/dev/null && ! grep -q '^State:.Z' "/proc/$1/status" 2>/dev/null; }
ended() { for _ in {1..50}; do runs "$1" || return 0; sleep 0.1; done; return 1; }
appears() { for _ in {1..50}; do [[ -s $1 ]] && return 0; sleep 0.1; done; return 1; }

script long <<'E2'
# long FILE: starts a child that starts another, and one more while it ends, tells its id and waits.
start bash -c 'trap "sleep 300 & echo \$! >$1.late; exit" TERM; sleep 300 & echo $! >"$1.grandchild"; wait' x "$1"
until_true 50 test -s "$1.grandchild"
echo "$started_pid" >"$1"
wait "$started_pid"
E2
script clean <<'E2'
end_leftovers
E2

"$work/long" "$work/killed" & killed=$!
"$work/long" "$work/living" & living=$!
sleep 300 & foreign=$!
appears "$work/killed" && appears "$work/living"
kill -KILL $killed
wait $killed 2>/dev/null
expect 'a killed run leaves its child' runs "$(<"$work/killed")"
"$work/clean"
expect 'the next run ends that child' ended "$(<"$work/killed")"
expect 'and what the child started' ended "$(<"$work/killed.grandchild")"
expect 'and what it started at its end' ended "$(<"$work/killed.late")"
expect 'but no child of a run that lives' runs "$(<"$work/living")"
expect 'and no process that no run started' runs $foreign

for signal in TERM INT HUP; do
  rm -f "$work"/ended*
  "$work/long" "$work/ended" & run=$!
  appears "$work/ended"
  kill -$signal $run
  ended $run || kill -KILL $run
  wait $run
  expect "SIG$signal ends a run with the signal's status" test $? -eq $((128 + $(kill -l $signal)))
  expect "SIG$signal ends the child" ended "$(<"$work/ended")"
  expect "SIG$signal ends the grandchild" ended "$(<"$work/ended.grandchild")"
  expect "SIG$signal ends what the child started at its end" ended "$(<"$work/ended.late")"
done
kill $living
wait $living 2>/dev/null
expect 'nothing is kept of runs that are over' test -z "$(ls "$work/kelvane/runs")"

script locked <<'E2'
# locked FILE: with the lock, starts a child that outlives it and says so.
inside() { start sleep 300; echo "$started_pid" >"$1"; wait "$started_pid"; }
with_lock setup 'Waiting.' inside "$1"
E2
script take <<'E2'
with_lock setup 'Waiting.' true
E2
"$work/locked" "$work/holder" & holder=$!
appears "$work/holder"
timeout 1 "$work/take"
expect 'a lock keeps a second run out' test $? -eq 124
kill -KILL $holder
wait $holder 2>/dev/null
expect 'a child inherits no lock' timeout 5 "$work/take"
script failing <<'E2'
printf 'the words of the tool\n' >"$run_folder/tool.log"
fail_showing "$run_folder/tool.log" 'It failed.'
E2
said=$("$work/failing" 2>&1)
expect 'a failure has a status' test $? -eq 1
expect "and shows the tool's own words" test "$said" = $'the words of the tool\nfailing: It failed.'

script missing <<'E2'
missing_packages bash no-such-package coreutils
E2
expect 'only what is missing would be installed' test "$("$work/missing")" = no-such-package

printf '%d failed\n' "$failures"
exit $((failures > 0))
