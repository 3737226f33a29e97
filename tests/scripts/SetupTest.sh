#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Which packages scripts/setup takes for missing, with stand-ins for the system's programs.
set -euo pipefail
setup=$(cd "$(dirname "$0")/../.." && pwd)/scripts/setup
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT

stand_in() {
  cat >"$place/$1"
  chmod +x "$place/$1"
}
stand_in dpkg <<<'#!/bin/sh
echo amd64'
# Of two architectures, but for what the test says.
stand_in dpkg-query <<<'#!/bin/sh
for package in "$@"; do :; done
grep "^$package " "$STATES" | cut -d" " -f2- | grep . || printf "amd64 installed\narm64 installed\n"'
stand_in apt-get <<<'#!/bin/sh
for word in "$@"; do echo "$word"; done >>"$CALLS"'
stand_in sudo <<<'#!/bin/sh
exec "$@"'
export PATH=$place:$PATH STATES=$place/states CALLS=$place/calls

# The packages are what follows the last option of apt-get install.
expect_missing() {
  : >"$CALLS"
  "$setup" run >/dev/null
  found=$(sed '1,/^--no-install-recommends$/d' "$CALLS" | xargs)
  [ "$found" = "$1" ] || { echo "expected: $1"$'\n'"found: $found"; exit 1; }
}

echo 'libfmt-dev all installed' >"$STATES"
expect_missing ""
[ ! -s "$CALLS" ] # apt-get is left alone
printf '%s\n' 'libfftw3-dev arm64 installed' 'lv2-dev amd64 not-installed' \
  'libcairo2-dev amd64 config-files' >"$STATES"
expect_missing "libfftw3-dev libcairo2-dev lv2-dev"
