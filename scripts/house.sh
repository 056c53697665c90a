# The basics: words, failures, the folder for what is kept between runs, locks.
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
  if [[ -s $1 ]]; then tail -n 40 "$1" >&2; fi
  fail "${@:2}"
}

# The folder for what outlives a run but belongs in no checkout: Wine prefixes, locks, logs. sudo -E
# and containers leave a HOME of somebody else's, in which Wine refuses to make a prefix.
home=${HOME:-}
[[ -O $home ]] || home=$(getent passwd "$EUID" | cut -d: -f6) || true
if [[ ${XDG_CACHE_HOME:-} == /* ]]; then
  cache=$XDG_CACHE_HOME/kelvane
elif [[ -O $home ]]; then
  cache=$home/.cache/kelvane
else
  cache=${TMPDIR:-/tmp}/kelvane-cache-$EUID
fi
mkdir -p "$cache" || fail "The folder $cache cannot be made."
[[ -O $cache ]] || fail "The folder $cache belongs to another user. Set XDG_CACHE_HOME to a folder of your own."

# with_lock NAME WORDS COMMAND...: runs the command while no other run of this user has the lock.
# When it has to wait it says WORDS. Inside the command descriptor 9 is closed and the shell's own
# copy is close-on-exec, so that no child, and above all no lasting Wine service, holds the lock.
with_lock() {
  exec 9>>"$cache/$1.lock"
  if ! flock -n 9; then
    say "$2"
    # In the background, because bash answers no signal while it waits for a foreground command.
    run flock 9
  fi
  "${@:3}" 9>&-
  exec 9>&-
}
