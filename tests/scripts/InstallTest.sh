#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# What scripts/install puts somewhere, and that it takes all of that away: InstallTest.sh LIBRARY
set -euo pipefail
install=$(cd "$(dirname "$0")/../.." && pwd)/scripts/install
library=$1
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export DESTDIR=$place HOME=/home/singer
unset XDG_DATA_HOME

expect_files() {
  found=$(cd "$place" && find . -type f -o -type l | sort)
  [ "$found" = "$1" ] || { echo "expected:"$'\n'"$1"$'\n'"found:"$'\n'"$found"; exit 1; }
}

mkdir -p "$place/home/singer/.vst"
touch "$place/home/singer/.vst/Other.so"
"$install" --library "$library"
"$install" --library "$library" # again, over what is there
cmp "$library" "$place/home/singer/.vst/CantorelMini.so"
for name in .clap/CantorelMini.clap .lv2/cantorel-mini.lv2/cantorel-mini.so; do
  [ "$place/home/singer/$name" -ef "$place/home/singer/.vst/CantorelMini.so" ] # one file
done
expect_files "./home/singer/.clap/CantorelMini.clap
./home/singer/.local/share/Orvane/Kolm 5pt.ttf
./home/singer/.local/share/Orvane/cantorel-mini-microphone.conf
./home/singer/.local/share/applications/cantorel-mini.desktop
./home/singer/.local/share/icons/hicolor/scalable/apps/cantorel-mini.svg
./home/singer/.lv2/cantorel-mini.lv2/cantorel-mini.so
./home/singer/.lv2/cantorel-mini.lv2/manifest.ttl
./home/singer/.lv2/cantorel-mini.lv2/plugin.ttl
./home/singer/.lv2/cantorel-mini.lv2/presets.ttl
./home/singer/.lxvst/CantorelMini.so
./home/singer/.vst/CantorelMini.so
./home/singer/.vst/Other.so"
[ "$(readlink "$place/home/singer/.lxvst/CantorelMini.so")" = /home/singer/.vst/CantorelMini.so ]
"$install" --uninstall
"$install" --uninstall
expect_files "./home/singer/.vst/Other.so"

"$install" --system --library "$library"
expect_files "./home/singer/.vst/Other.so
./usr/lib/clap/CantorelMini.clap
./usr/local/lib/lv2/cantorel-mini.lv2/cantorel-mini.so
./usr/local/lib/lv2/cantorel-mini.lv2/manifest.ttl
./usr/local/lib/lv2/cantorel-mini.lv2/plugin.ttl
./usr/local/lib/lv2/cantorel-mini.lv2/presets.ttl
./usr/local/lib/vst/CantorelMini.so
./usr/local/share/Orvane/Kolm 5pt.ttf
./usr/local/share/Orvane/cantorel-mini-microphone.conf
./usr/local/share/applications/cantorel-mini.desktop
./usr/local/share/icons/hicolor/scalable/apps/cantorel-mini.svg"
"$install" --uninstall --system
expect_files "./home/singer/.vst/Other.so"
if "$install" --library "$place/none" 2>/dev/null || "$install" --everywhere 2>/dev/null; then
  echo "a wrong call is taken"
  exit 1
fi
