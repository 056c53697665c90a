# The processes that a run starts. Each carries in its environment a mark that names the run, and so
# does all that it starts in turn: what to end is read from the process table, which is never stale.
# Process groups and sessions would not do: Wine's server and services leave those of who starts them.
# shellcheck shell=bash

# read_stat PID: puts what the kernel tells of it into the array stat, from its state on; false when
# it is gone. The program's name before that, in brackets, may hold anything.
read_stat() {
  local text=
  { IFS= read -r -d '' text <"/proc/$1/stat"; } 2>/dev/null || [[ -n $text ]] || return 1
  read -ra stat <<<"${text##*) }"
}

# start_time PID: when the process began, in the kernel's ticks; tells it from a later one of that id.
start_time() {
  local stat
  read_stat "$1" && printf '%s' "${stat[19]}"
}

# A mark is KEY/PID/START of the run. The key is this cache folder and this container, so that runs
# in another container or for another cache folder are never taken for ours.
mark_key=$(stat -c '%d.%i' "$cache").$(readlink /proc/self/ns/pid | tr -dc '0-9')
own_mark=$mark_key/$$/$(start_time $$)
run_folder=$cache/runs/${own_mark//\//-}
mkdir -p "$run_folder"

# start COMMAND...: starts it in the background with the mark, in a session of its own, away from the
# terminal's signals; its id is then in started_pid. Redirections given to start apply to the command.
start() {
  env --default-signal=INT,QUIT "KELVANE_RUN=$own_mark" setsid "$@" </dev/null &
  started_pid=$!
}

# run COMMAND...: starts it and waits, open to signals meanwhile; answers with the command's status.
run() {
  start "$@"
  wait "$started_pid"
}

is_running() {
  local stat
  read_stat "$1" && [[ ${stat[0]} != Z ]]
}

# until_true TENTHS COMMAND...: asks ten times a second; false when the time is over.
until_true() {
  local left=$1
  shift
  while ! "$@"; do
    ((left-- > 0)) || return 1
    sleep 0.1
  done
}

# variable_of PID NAME: the value in the process's environment, empty if it has none.
variable_of() {
  local entry entries
  { mapfile -d '' -t entries <"/proc/$1/environ"; } 2>/dev/null || return 0
  for entry in "${entries[@]}"; do
    if [[ $entry == "$2="* ]]; then
      printf '%s' "${entry#*=}"
      return
    fi
  done
}

# run_lives MARK: whether the run that gave this mark is still there; of other containers: presumably.
run_lives() {
  local key pid start
  IFS=/ read -r key pid start <<<"$1"
  [[ $key != "$mark_key" || $(start_time "$pid") == "$start" ]]
}

# pids_with NAME=VALUE: the processes with exactly this in their environment.
pids_with() {
  { grep -lzsxF -e "$1" /proc/[0-9]*/environ || true; } | cut -d/ -f3
}

# dead_marks: the marks still carried by processes whose run is gone.
dead_marks() {
  local mark
  { grep -hzs "^KELVANE_RUN=$mark_key/" /proc/[0-9]*/environ || true; } | tr '\0' '\n' |
    cut -d= -f2- | sort -u | while read -r mark; do
    run_lives "$mark" || printf '%s\n' "$mark"
  done
}

none_runs() {
  local pid
  for pid; do ! is_running "$pid" || return 1; done
}

# end_pids PID...: asks them to end, and after three seconds no longer asks.
end_pids() {
  (($# > 0)) || return 0
  kill -TERM "$@" 2>/dev/null || true
  until_true 30 none_runs "$@" || kill -KILL "$@" 2>/dev/null || true
}

# prefix_is_shared PREFIX: whether somebody else than this run and dead ones has a program in it.
# A process without a mark counts: the user may look into the prefix with a tool of his own.
prefix_is_shared() {
  local pid mark
  for pid in $(pids_with "WINEPREFIX=$1"); do
    ! is_wine_service "$pid" || continue
    mark=$(variable_of "$pid" KELVANE_RUN)
    if [[ $mark != "$own_mark" ]] && is_running "$pid"; then
      if [[ -z $mark ]] || run_lives "$mark"; then return 0; fi
    fi
  done
  return 1
}

# is_wine_service PID: whether it serves all programs of its prefix, whoever started it.
is_wine_service() {
  local command
  { IFS= read -r -d '' command <"/proc/$1/cmdline"; } 2>/dev/null || true
  [[ ${command:-} == C:\\windows\\* || ${command:-} == */wineserver* ]]
}

# end_run MARK: ends every process with the mark, but no Wine service that another run uses too.
end_run() {
  local pid prefix doomed=()
  local -A shared=()
  for pid in $(pids_with "KELVANE_RUN=$1"); do
    prefix=$(variable_of "$pid" WINEPREFIX)
    if [[ -z $prefix || -n ${shared[$prefix]:-} ]]; then continue; fi
    shared[$prefix]=no
    if prefix_is_shared "$prefix"; then
      shared[$prefix]=yes
    else
      # Wine is ended by its server, which alone saves the registry.
      WINEPREFIX=$prefix wineserver -k </dev/null >/dev/null 2>&1 || true
    fi
  done
  for pid in $(pids_with "KELVANE_RUN=$1"); do
    prefix=$(variable_of "$pid" WINEPREFIX)
    if [[ ${shared[${prefix:-none}]:-} == yes ]] && is_wine_service "$pid"; then continue; fi
    doomed+=("$pid")
  done
  end_pids "${doomed[@]}"
}

# end_leftovers: ends what runs that were killed left behind. Call it with the lock "processes".
end_leftovers() {
  local mark folder
  for mark in $(dead_marks); do end_run "$mark"; done
  for folder in "$cache"/runs/*; do
    mark=${folder##*/}
    run_lives "${mark//-/\/}" || rm -rf "$folder"
  done
}

# What other files add has to happen first when the script leaves.
on_leaving=()

carries_mark() { [[ $(variable_of "$1" KELVANE_RUN) == "$own_mark" ]]; }

leave() {
  local status=$? pid action
  trap '' INT TERM HUP PIPE
  trap - EXIT
  for action in "${on_leaving[@]}"; do "$action" || true; done
  # A child that was started this very moment has no mark yet.
  for pid in $(jobs -p); do until_true 5 carries_mark "$pid" || end_pids "$pid"; done
  with_lock processes '' end_run_and_leftovers || true
  rm -rf "$run_folder"
  exit "$status"
}

end_run_and_leftovers() {
  end_run "$own_mark"
  end_leftovers
}

# A signal ends a run like any other end, with the status that is usual for the signal.
trap leave EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
trap 'exit 129' HUP
trap 'exit 141' PIPE
