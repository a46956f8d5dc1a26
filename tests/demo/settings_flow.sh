#!/usr/bin/env bash
# The system and wireless settings pages in headless Chromium: the administrator password
# changed (and stored as its digest), an access point's SSID and key kept over a restart,
# and values the programs refuse beside their fields.
source "$(dirname "$0")/lib.sh"
run_browser_flow "$SRC/tests/demo/settings_flow.js"
