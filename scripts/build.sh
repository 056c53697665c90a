# Configuring and building the presets.
# shellcheck shell=bash

# build PRESET [TARGET...]: configures the preset if need be and builds the targets, or all.
build() {
  begin_build "$@"
  finish_build
}

# begin_build PRESET [TARGET...]: the same, but goes on while ninja works; finish_build waits for it.
begin_build() {
  local folder=$root/build/$1
  built_preset=$1
  shift
  check_owner "$root/build"
  is_configured "$folder" || configure "$built_preset"
  say "Building $built_preset."
  # Without a terminal ninja would write a line for every file.
  if [[ -t 1 ]]; then start ninja -C "$folder" "$@"; else start ninja --quiet -C "$folder" "$@"; fi
  build_pid=$started_pid
}

finish_build() { wait "$build_pid" || fail "The build of $built_preset failed; see above."; }

# check_owner FOLDER: root could build in another user's folder, who then could do so no more.
check_owner() {
  if [[ -e $1 && ! (-O $1 || (-w $1 && $EUID != 0)) ]]; then
    fail "The folder $1 belongs to $(stat -c %U "$1"). Build as that user, or remove it."
  fi
}

# is_configured FOLDER: whether a configuration ended well there, for this place and by these presets.
is_configured() {
  [[ -f $1/build.ninja && ! $root/CMakePresets.json -nt $1/CMakeCache.txt ]] && grep -qsxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$1/CMakeCache.txt"
}

configure() {
  local preset=$1 log=$run_folder/cmake.log
  say "Configuring $preset."
  # What a killed configuration left is not taken up by the next one.
  run cmake --fresh -S "$root" --preset "$preset" >"$log" 2>&1 ||
    fail_showing "$log" "The configuration of $preset failed; see above."
}
