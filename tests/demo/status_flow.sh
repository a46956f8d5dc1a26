#!/usr/bin/env bash
# The status page in headless Chromium: the load chart updates, the leases of the demo's
# lease file are listed in the device's order, the host's ports and addresses are shown.
source "$(dirname "$0")/lib.sh"
run_browser_flow "$SRC/tests/demo/status_flow.js"
