# Debian packages: what each purpose needs, and installing what is missing of it.
# shellcheck shell=bash

# One list for each purpose. The checks are by package and not by program, since some of them are
# fonts, headers and sources.
declare -A packages_for=(
  ['building the Windows program']='cmake ninja-build g++-mingw-w64-x86-64-posix mingw-w64-tools googletest nlohmann-json3-dev librapidxml-dev libz-mingw-w64-dev'
  ['building tests of the Windows program']='lld'
  ['building the 32-bit program']='cmake ninja-build g++-mingw-w64-i686-posix mingw-w64-tools wine64 nlohmann-json3-dev librapidxml-dev libz-mingw-w64-dev'
  ['packing the program']='nsis zip unzip cmark-gfm binutils-mingw-w64-x86-64'
  ['building the native tests']='cmake ninja-build g++ libgtest-dev libgmock-dev nlohmann-json3-dev librapidxml-dev zlib1g-dev'
  ['building the fuzzers']='cmake ninja-build clang-16 libclang-rt-16-dev libgtest-dev libgmock-dev nlohmann-json3-dev librapidxml-dev zlib1g-dev'
  ['looking at scripts and format']='shellcheck clang-format-14'
  ['checking the code']='clang-tidy-16'
  ['running Windows programs']='wine wine64 fonts-wine fonts-dejavu-core fonts-liberation'
  ['asking whether a display answers']='x11-utils'
  ['a display of its own']='xvfb openbox x11-utils'
  ['taking pictures']='xdotool imagemagick'
  ['a table of figures']='bsdextrautils'
  ['tests against a radio server']='libhamlib-utils'
  ['programs that share a receiver']='wsjtx jtdx js8call fldigi wget'
)

# missing_packages PACKAGE...: those of them that are not installed, one a line.
missing_packages() {
  local installed package
  [[ -n $(type -P dpkg-query) ]] ||
    fail "This needs the Debian packages $*, and there is no dpkg here to look for them."
  installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null) || true
  for package; do
    grep -qxF "installed $package" <<<"$installed" || printf '%s\n' "$package"
  done
}

# install_missing PURPOSE...: installs what these purposes lack, and says what and what for.
install_missing() {
  begin_install "$@"
  finish_install
}

apt_log=$run_folder/apt.log
apt_pid=
as_root=()
lists_are_new=no

# begin_install PURPOSE...: the same, but goes on while apt unpacks; finish_install waits for it.
begin_install() {
  local purpose missing all=()
  for purpose; do
    # shellcheck disable=SC2086  # a word for each package
    missing=$(missing_packages ${packages_for[$purpose]})
    [[ -n $missing ]] || continue
    say "Missing for $purpose: ${missing//$'\n'/ }"
    readarray -t -O ${#all[@]} all <<<"$missing"
  done
  ((${#all[@]} > 0)) || return 0
  if ((EUID != 0)); then
    as_root=(sudo)
    [[ -n $(type -P sudo) ]] || fail "Only root can install them: apt-get install --no-install-recommends ${all[*]}"
  fi
  say "Installing these packages and what they need; the first time it takes about a minute."
  if [[ $lists_are_new == no ]]; then
    # One package source that fails need not matter: the installation itself tells.
    apt_get update
    wait_for_apt || say "The lists of packages could not all be renewed."
    lists_are_new=yes
  fi
  apt_get install --no-install-recommends --yes "${all[@]}"
}

finish_install() {
  wait_for_apt || fail_showing "$apt_log" "The packages could not be installed; see above what apt says."
}

# apt_get WORDS...: starts apt-get without questions. It is not started as our other processes are: it
# belongs to the machine, needs the terminal for sudo's question, and must not be cut off half-way.
apt_get() {
  env --default-signal=INT "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get -qq -o DPkg::Lock::Timeout=600 -o Dpkg::Use-Pty=0 "$@" </dev/null >"$apt_log" 2>&1 8>&- &
  apt_pid=$!
}

wait_for_apt() {
  local pid=$apt_pid
  [[ -z $pid ]] || wait "$pid" || return
  apt_pid=
}

# Apt answers an interrupt at once while it downloads, and later when what it unpacks is whole.
stop_apt() {
  [[ -n $apt_pid && -d /proc/$apt_pid ]] || return 0
  say "Waiting until apt has come to a safe stop."
  # sudo passes no signal on that comes from its own process group.
  "${as_root[@]}" setsid bash -c "kill -INT $apt_pid" </dev/null 2>/dev/null || true
  wait "$apt_pid" || true
}
on_leaving+=(stop_apt)
