#!/bin/bash
# package_test.sh BUILD: packs the program that was built there and tries the packages: as they lie on
# the disk, and in the Windows that the caller has prepared.
set -euo pipefail
build=$1
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$here/../../scripts/make-package" "$build" 64 "$work/dist"
# The checks must see what is wrong: here a 64-bit program that should be a 32-bit one.
if "$here/../../scripts/make-package" "$build" 32 "$work/wrong" 2>"$work/words" ||
  ! grep -q 'no 32-bit program' "$work/words"; then
  echo "A 64-bit program passed for a 32-bit one."
  exit 1
fi

# What is packed for 32 bits is configured without tests and what belongs to them.
if ! (cd "$here/../.." && cmake --preset mingw64 -B "$work/untested" -DBUILD_TESTING=OFF) >"$work/words" 2>&1; then
  cat "$work/words"
  exit 1
fi

windows_path() { printf 'Z:%s' "${1//\//\\}"; }
setup=$(echo "$work"/dist/*-setup.exe)
unzip -q "$work"/dist/*.zip -d "$work/a folder of Ärger"
KELVANE_SETUP=$(windows_path "$setup")
KELVANE_UNPACKED=$(windows_path "$work/a folder of Ärger/Kelvane")
export KELVANE_SETUP KELVANE_UNPACKED
wine "$build/bin/wine_package_tests.exe" --gtest_brief=1 </dev/null
