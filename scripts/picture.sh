# A picture of a program's windows, as they stand on a display that no other program has.
# shellcheck shell=bash

# visible_windows PID: the windows of this very process that can be seen. Not by title: a panel that a
# killed run left behind has the same.
visible_windows() { xdotool search --onlyvisible --pid "$1" 2>/dev/null || true; }

# wait_for_window PID LOG: until the program has shown itself and had time to come to rest.
wait_for_window() {
  until_true 300 shows_itself "$@" || fail "The program showed no window within half a minute."
  run sleep 1.5
}

shows_itself() {
  is_running "$1" || fail_showing "$2" "The program ended before it showed a window."
  [[ -n $(visible_windows "$1") ]]
}

# save_picture PID FILE: from the screen and not from the windows, so that a box in front is seen too.
save_picture() {
  local shot=$run_folder/picture.png
  [[ -n $(visible_windows "$1") ]] || fail "The program's window is gone; no picture was saved."
  run import -window root -trim +repage "png:$shot" || fail "The picture could not be taken."
  cp "$shot" "$2" || fail "The picture could not be written to $2."
  say "Saved $2 ($(identify -format '%wx%h' "$shot"))."
}
