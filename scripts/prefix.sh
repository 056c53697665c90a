# Wine prefixes: one template, made once, and quick copies of it for each use.
# shellcheck shell=bash

# Quiet, without offers to download anything, and without entries in the user's own desktop menus.
export WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
unset WINEARCH WINELOADER WINESERVER

# The panel's words may hold any letter: Wine reads them by the locale, and "C" knows ASCII only.
[[ $(locale charmap 2>/dev/null) == UTF-8 ]] || export LC_ALL=C.UTF-8

template=$cache/template

# quiet_wine PREFIX COMMAND...: runs it there. Wine's lasting services inherit the streams of the
# first program that is started: a pipe of the caller's would never end.
wine_log=$run_folder/wine.log
quiet_wine() { run env "WINEPREFIX=$1" "${@:2}" >>"$wine_log" 2>&1; }

# is_current PREFIX: whether Wine would use it without first renewing it, by Wine's own rule.
# The number in the prefix ends as lines do in Windows.
is_current() {
  local rules=/usr/share/wine/wine.inf
  [[ -d $1 && (! -e $rules || $(<"$1/.update-timestamp") == "$(stat -Lc %Y "$rules")"*) ]]
}

# beside_template COMMAND...: runs the command, and meanwhile makes the template, if there is none.
beside_template() {
  local maker=
  if ! is_current "$template"; then
    say "Preparing Wine."
    rm -rf "$template"
    start "$root/scripts/make-template" "$template" >>"$wine_log" 2>&1
    maker=$started_pid
  fi
  "$@"
  [[ -z $maker ]] || wait "$maker" || fail_showing "$wine_log" "Wine could not make its prefix."
}

# make_prefix PREFIX [DPI]: a copy of the template, unless it is there. The settings in it are the
# user's, so that one of an older Wine is left for Wine to renew. Windows' own files are never written
# to, so that links to them will do: each copy takes 700 MB less.
make_prefix() {
  local prefix=$1 dpi=${2:-96} new=$1.new
  [[ ! -d $prefix ]] || return 0
  rm -rf "$new"
  mkdir "$new"
  cp -al "$template/." "$new" 2>/dev/null || cp -a "$template/." "$new"
  cp -a --remove-destination "$template"/*.reg "$template/.update-timestamp" "$new"
  cp -a --remove-destination "$template"/drive_c/{users,ProgramData} "$new/drive_c"
  ((dpi == 96)) || printf '\n[Control Panel\\\\Desktop]\n"LogPixels"=dword:%08x\n' "$dpi" >>"$new/user.reg"
  mv -T "$new" "$prefix"
}

# keep_from_home PREFIX: Wine links Desktop, Documents and so on to the user's own folders; what a
# test writes there is to stay in the prefix.
keep_from_home() { find "$1/drive_c/users" -type l -exec rm {} \; -exec mkdir {} \; ; }

# start_windows PREFIX [WIDTHxHEIGHT]: an untouched Windows on a display of its own; WINEPREFIX and
# DISPLAY say where. Wine's services and its desktop are not started by the first program there: they
# would inherit its streams, and whoever reads those would wait for their end; kept alive, they make
# each start ten times as quick.
start_windows() {
  rm -rf "$1"
  make_prefix "$1"
  keep_from_home "$1"
  start_display "${2:-1920x1200}"
  export WINEPREFIX=$1
  quiet_wine "$1" wineserver -p || fail_showing "$wine_log" "Wine's server did not start."
  quiet_wine "$1" wine rundll32 user32.dll,GetDesktopWindow || fail_showing "$wine_log" "Wine does not run."
}

# share_windows PREFIX: sets WINEPREFIX, where programs of several runs may be at the same time. They
# share Wine's server and services, which therefore carry no run's mark and end with the last run.
share_windows() {
  export WINEPREFIX=$1
  exec 7>>"$1.lock"
  flock -s 7
  on_leaving+=(leave_windows)
  quiet_wine "$1" env -u KELVANE_RUN wine rundll32 user32.dll,GetDesktopWindow || true
}

leave_windows() { if flock -n 7; then quiet_wine "$WINEPREFIX" wineserver -k; fi; }
