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

# begin_template: starts making the template, if there is none, while the caller does something else.
begin_template() {
  template_pid=
  if is_current "$template"; then return; fi
  say "Preparing Wine."
  rm -rf "$template"
  start "$root/scripts/make-template" "$template" >>"$wine_log" 2>&1
  template_pid=$started_pid
}

# finish_template: waits for what begin_template started.
finish_template() {
  [[ -n $template_pid ]] || return 0
  wait "$template_pid" || fail_showing "$wine_log" "Wine could not make its prefix."
}

# make_prefix PREFIX [DPI]: a copy of the template, unless it is there. The settings in it are the
# user's, so that one of an older Wine is left for Wine to renew.
make_prefix() {
  local prefix=$1 dpi=${2:-96} new=$1.new
  [[ ! -d $prefix ]] || return 0
  rm -rf "$new"
  copy_template "$new"
  if ((dpi != 96)); then
    quiet_wine "$new" wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$dpi" /f ||
      fail_showing "$wine_log" "Wine could not write to its registry."
    quiet_wine "$new" wineserver -k || true
  fi
  mv -T "$new" "$prefix"
}

# copy_template FOLDER: Windows' own files are never written to, so that links to them will do: each
# copy takes 700 MB less.
copy_template() {
  local part
  mkdir -p "$1/drive_c"
  cp -a "$template"/dosdevices "$template"/*.reg "$template"/.update-timestamp "$1"
  for part in "$template"/drive_c/*; do
    case ${part##*/} in
      windows | 'Program Files'*) cp -al "$part" "$1/drive_c" 2>/dev/null || cp -a "$part" "$1/drive_c" ;;
      *) cp -a "$part" "$1/drive_c" ;;
    esac
  done
}

# keep_from_home PREFIX: Wine links Desktop, Documents and so on to the user's own folders; what a
# test writes there is to stay in the prefix.
keep_from_home() {
  local link
  while IFS= read -r -d '' link; do
    rm "$link"
    mkdir "$link"
  done < <(find "$1/drive_c/users" -type l -print0)
}

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
