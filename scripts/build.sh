# Configuring and building the presets.
# shellcheck shell=bash

# build PRESET [TARGET...]: configures the preset if need be and builds the targets, or all.
build() {
  local preset=$1 folder=$root/build/$1
  shift
  [[ ! -e $root/build || -O $root/build ]] ||
    fail "The folder $root/build belongs to $(stat -c %U "$root/build"). Build as that user, or remove it."
  is_configured "$folder" || configure "$preset" "$folder"
  say "Building $preset."
  # Without a terminal ninja would write a line for every file.
  if [[ -t 1 ]]; then run ninja -C "$folder" "$@"; else run ninja --quiet -C "$folder" "$@"; fi ||
    fail "The build of $preset failed; see above."
}

# is_configured FOLDER: whether a configuration ended well there, and for this place.
is_configured() {
  [[ -f $1/build.ninja ]] && grep -qsxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$1/CMakeCache.txt"
}

configure() {
  local preset=$1 folder=$2 log=$run_folder/cmake.log
  say "Configuring $preset."
  # What a killed configuration left is not taken up by the next one.
  rm -rf "$folder"
  run cmake -S "$root" --preset "$preset" >"$log" 2>&1 ||
    fail_showing "$log" "The configuration of $preset failed; see above."
}
