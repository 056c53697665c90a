# X displays: whether the user's answers, and one of our own.
# shellcheck shell=bash

# display_answers: whether programs started now would be seen. A display that is set and dead would
# let the panel run on unseen for ever.
display_answers() { [[ -n ${DISPLAY:-} ]] && timeout 5 xdpyinfo >/dev/null 2>&1; }

# start_display WIDTHxHEIGHT: starts an X server with a window manager and sets DISPLAY to it. Without
# a window manager keys do not reach message boxes, and every closing of a window takes two seconds.
start_display() {
  local log=$run_folder/display.log number=$run_folder/display-number
  # The server finds a free number itself: the locks of killed servers lie about.
  start Xvfb -displayfd 3 -screen 0 "$1x24" -noreset -nolisten tcp 3>"$number" >"$log" 2>&1
  display_pid=$started_pid
  until_true 100 display_has_number || fail_showing "$log" "The virtual display did not start."
  DISPLAY=:$(<"$number")
  export DISPLAY
  unset XAUTHORITY
  # Windows has its own idea of Ctrl+Alt with the keypad; the X server's must not take such keys.
  setxkbmap -model pc105 -option srvrkeys:none us >>"$log" 2>&1 || true
  start openbox --sm-disable --config-file "$root/scripts/openbox.xml" >>"$log" 2>&1
  until_true 100 window_manager_answers || fail_showing "$log" "The window manager did not start."
}

display_has_number() {
  is_running "$display_pid" || fail_showing "$log" "The virtual display ended at once."
  [[ $(wc -l <"$number") -gt 0 ]]
}

window_manager_answers() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 0x; }
