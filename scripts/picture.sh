# A picture of a program's windows, as they stand on the display.
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

# bounds PID: WIDTHxHEIGHT+X+Y around all its visible windows with their frames.
bounds() {
  local window x y width height left right top bottom x1=99999 y1=99999 x2=0 y2=0
  for window in $(visible_windows "$1"); do
    read -r x y width height < <(xwininfo -id "$window" | awk '
      /Absolute upper-left X/ { x = $NF } /Absolute upper-left Y/ { y = $NF }
      /Width:/ { w = $NF } /Height:/ { h = $NF } END { print x, y, w, h }') || continue
    read -r left right top bottom < <(xprop -id "$window" _NET_FRAME_EXTENTS |
      sed -n 's/.*= //; s/,//g; p') || true
    [[ $left =~ ^[0-9]+$ ]] || left=0 right=0 top=0 bottom=0
    ((x1 > x - left)) && x1=$((x - left))
    ((y1 > y - top)) && y1=$((y - top))
    ((x2 < x + width + right)) && x2=$((x + width + right))
    ((y2 < y + height + bottom)) && y2=$((y + height + bottom))
  done
  ((x1 < 0)) && x1=0
  ((y1 < 0)) && y1=0
  ((x2 > x1 && y2 > y1)) && printf '%dx%d+%d+%d' $((x2 - x1)) $((y2 - y1)) "$x1" "$y1"
}

# save_picture PID FILE: from the screen and not from the windows, so that a box in front is seen too.
save_picture() {
  local area shot=$run_folder/picture.png
  area=$(bounds "$1") || fail "The program's window is gone; no picture was saved."
  run import -window root -crop "$area" +repage "png:$shot" || fail "The picture could not be taken."
  cp "$shot" "$2" || fail "The picture could not be written to $2."
  say "Saved $2 (${area%%+*})."
}
