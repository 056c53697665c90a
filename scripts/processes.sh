# The processes that a run starts. Each carries in its environment the folder of the run, and so does
# all that it starts in turn: what to end is read from the process table, which is never stale. (Process
# groups and sessions would not do: Wine's server and services leave those of who starts them.) A run
# lives as long as the lock in its folder is held, and the system lets go of that however the run ends.
# shellcheck shell=bash

# A run's folder has its name only once it is locked, so that no other run takes it for a dead one's.
mkdir -p "$cache/runs"
unnamed=$(mktemp -d "$cache/runs/.XXXXXX")
run_folder=$cache/runs/${unnamed##*/.}
exec 8>"$unnamed/lock"
flock 8
mv -T "$unnamed" "$run_folder"

# start COMMAND...: starts it in the background with the mark, in a session of its own, away from the
# terminal's signals; its id is then in started_pid. Redirections given to start apply to the command.
start() {
  env --default-signal=INT,QUIT "KELVANE_RUN=$run_folder" setsid "$@" </dev/null 7>&- 8>&- &
  started_pid=$!
}

# run COMMAND...: starts it and waits, open to signals meanwhile; answers with the command's status.
run() {
  start "$@"
  wait "$started_pid"
}

# is_running PID: one that has ended and that nobody has asked about has no program any more.
is_running() { [[ -e /proc/$1/exe ]]; }

none_runs() {
  local pid
  for pid; do ! is_running "$pid" || return 1; done
}

# until_true TENTHS COMMAND...: asks ten times a second; false when the time is over.
until_true() {
  local left=$1
  while ! "${@:2}"; do
    ((left-- > 0)) || return 1
    sleep 0.1
  done
}

# pids_with NAME=VALUE: the processes with exactly this in their environment.
pids_with() {
  { grep -lzsxF -e "$1" /proc/[0-9]*/environ || true; } | cut -d/ -f3
}

# end_pids PID...: asks them to end, and after three seconds no longer asks.
end_pids() {
  (($# > 0)) || return 0
  kill -TERM "$@" 2>/dev/null || true
  until_true 30 none_runs "$@" || kill -KILL "$@" 2>/dev/null || true
}

# end_run FOLDER [PID...]: ends these and what that run started, and then what it still started meanwhile.
end_run() {
  local pids _
  for _ in 1 2 3; do
    readarray -t pids < <(pids_with "KELVANE_RUN=$1")
    end_pids "${@:2}" "${pids[@]}"
  done
}

# end_leftovers: ends what runs that were killed left behind.
end_leftovers() {
  local folder
  for folder in "$cache"/runs/*; do
    flock -n "$folder/lock" true 2>/dev/null || continue
    end_run "$folder"
    rm -rf "$folder"
  done
}

# What other files add has to happen first when the script leaves.
on_leaving=()

# leave: a child that was started this very moment does not carry the mark yet.
leave() {
  local status=$? action children
  trap '' INT TERM HUP PIPE
  trap - EXIT
  for action in "${on_leaving[@]}"; do "$action" || true; done
  readarray -t children < <(jobs -rp)
  end_run "$run_folder" "${children[@]}"
  rm -rf "$run_folder"
  exit "$status"
}

# A signal ends a run like any other end, with the status that is usual for the signal.
trap leave EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
trap 'exit 129' HUP
trap 'exit 141' PIPE
