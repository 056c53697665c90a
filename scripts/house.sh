# The basics that run, test and every other command of this house share: sourced first, by all.
# shellcheck shell=bash
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)

# Build servers start commands with standard input closed; the next file opened would become it.
[[ -e /proc/self/fd/0 ]] || exec </dev/null

# A shell without job control starts its background jobs deaf to interrupts, and bash cannot trap what
# it was started deaf to.
if [[ -n $(trap -p INT) ]]; then exec env --default-signal=INT "$0" "$@"; fi

say() { printf '%s: %s\n' "${0##*/}" "$*"; }

fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# fail_showing FILE WORDS...: fails with what a tool left in its log, so that its own words are seen.
fail_showing() {
  local log=$1
  shift
  if [[ -s $log ]]; then tail -n 40 "$log" >&2; fi
  fail "$*"
}

# The folder for what outlives a run but belongs in no checkout: Wine prefixes, locks, logs.
cache_folder() {
  local home=${HOME:-}
  if [[ ${XDG_CACHE_HOME:-} == /* ]]; then
    printf '%s/kelvane' "$XDG_CACHE_HOME"
    return
  fi
  # sudo -E and containers leave a HOME of somebody else's, in which Wine refuses to make a prefix.
  if [[ ! -O $home ]]; then home=$(getent passwd "$EUID" | cut -d: -f6) || home=; fi
  if [[ -n $home && -O $home ]]; then
    printf '%s/.cache/kelvane' "$home"
  else
    printf '%s/kelvane-cache-%s' "${TMPDIR:-/tmp}" "$EUID"
  fi
}

cache=$(cache_folder)
mkdir -p "$cache" || fail "The folder $cache cannot be made."
[[ -O $cache ]] || fail "The folder $cache belongs to another user. Set XDG_CACHE_HOME to a folder of your own."

# with_lock NAME WORDS COMMAND...: runs the command while no other run of this user has the lock.
# When it has to wait it says WORDS. Inside the command descriptor 9 is closed and the shell's own
# copy is close-on-exec, so that no child, and above all no lasting Wine service, holds the lock.
locks_held=' '
with_lock() {
  local name=$1 words=$2
  shift 2
  if [[ $locks_held == *" $name "* ]]; then
    # A signal ended the command below, and what has to be done on leaving needs the same lock.
    "$@"
    return
  fi
  exec 9>>"$cache/$name.lock"
  if ! flock -n 9; then
    if [[ -n $words ]]; then say "$words"; fi
    # In the background, because bash answers no signal while it waits for a foreground command.
    run flock 9
  fi
  locks_held+="$name "
  "$@" 9>&-
  locks_held=${locks_held/" $name "/ }
  exec 9>&-
}
