#!/usr/bin/env bash
# The client, station-mark and access-list pages in headless Chromium: groups, accounts, the
# blacklist, marking a station, access-list entries, each seen again after a reload.
# The flow stages its own stations and AP, so the demo's fleet stand-in must not rewrite them.
DEMO_NO_FLEET=1
source "$(dirname "$0")/lib.sh"
run_browser_flow "$SRC/tests/demo/clients_flow.js"
