#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The bundle's texts hold to the definitions of LV2, without an error or a warning: BundleTest.sh BUNDLE
set -euo pipefail
said=$(lv2_validate "$1"/*.ttl 2>&1 | grep -v '^Skipping file .*\.doap\.ttl$')
echo "$said" | head -40
[[ $said == "Found 0 errors among "* ]]
[ -f "$1/manifest.ttl" ] && [ -f "$1/plugin.ttl" ] && [ -f "$1/presets.ttl" ]
