#!/usr/bin/env bash
# The AP-template editor and an AP's settings in headless Chromium: add a template, bind the
# AP from the candidates, change its name and reboot schedule, one refusal of each page; the
# changes read back from the fleet views after fleetd has written another round.
source "$(dirname "$0")/lib.sh"
run_browser_flow "$SRC/tests/demo/templates_flow.js"
