# Configuring and building the presets.
# shellcheck shell=bash

# build PRESET [TARGET...]: configures the preset if need be and builds the targets, or all.
build() {
  begin_build "$@"
  finish_build
}

# begin_build PRESET [TARGET...]: the same, but goes on while ninja works; finish_build waits for it.
begin_build() {
  local quiet=()
  built_preset=$1
  configure "$1"
  say "Building $1."
  # Without a terminal ninja would write a line for every file.
  [[ -t 1 ]] || quiet=(--quiet)
  start ninja -C "$root/build/$1" "${quiet[@]}" "${@:2}"
  build_pid=$started_pid
}

finish_build() { wait "$build_pid" || fail "The build of $built_preset failed; see above."; }

# check_owner FOLDER: root could build in another user's folder, who then could do so no more.
check_owner() {
  if [[ -e $1 && ! (-O $1 || (-w $1 && $EUID != 0)) ]]; then
    fail "The folder $1 belongs to $(stat -c %U "$1"). Build as that user, or remove it."
  fi
}

# configure PRESET: unless that ended well there, for this place and by these presets. What a killed
# configuration left is not taken up by the next one.
configure() {
  local folder=$root/build/$1 log=$run_folder/cmake.log
  check_owner "$root/build"
  if [[ -f $folder/build.ninja && ! $root/CMakePresets.json -nt $folder/CMakeCache.txt ]] &&
    grep -qsxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$folder/CMakeCache.txt"; then return; fi
  say "Configuring $1."
  run cmake --fresh -S "$root" --preset "$1" >"$log" 2>&1 ||
    fail_showing "$log" "The configuration of $1 failed; see above."
}
