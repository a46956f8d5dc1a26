#!/usr/bin/env bash
# The LAN and WAN pages in headless Chromium: change the LAN address, add and remove a
# static lease, edit a WAN line, the refusals; then the console is restarted and the changes
# are seen again. Runs lan_flow.js twice (PHASE=change, then PHASE=restart) around the
# restart, with playwright-core installed as run_browser_flow installs it.
source "$(dirname "$0")/lib.sh"

install_playwright
phase() { node_flow "$SRC/tests/demo/lan_flow.js" "-$1" PHASE="$1"; } # change|restart

start_demo
[ -n "$ADMIN_USER" ] || { echo "FAIL: the demo did not tell the first-login credentials"; exit 1; }
phase change || { sed 's/^/demo log: /' "$DEMO_LOG"; exit 1; }
stop_demo
start_demo
check "the restart keeps the flash copies" grep -q 'keeping the settings' "$DEMO_LOG"
phase restart || FAILURES=$((FAILURES + 1))
finish
