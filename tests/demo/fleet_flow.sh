#!/usr/bin/env bash
# The fleet pages in headless Chromium: the dashboard and the managed-AP list (filter by MAC,
# paging), one AP's configuration and site survey, the AP templates, the wireless overview,
# over the fleet that the demo's fleetd keeps changing.
source "$(dirname "$0")/lib.sh"
run_browser_flow "$SRC/tests/demo/fleet_flow.js"
