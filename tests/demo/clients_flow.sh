#!/usr/bin/env bash
# The client, station-mark and access-list pages in headless Chromium: groups, accounts, the
# blacklist, marking a station, access-list entries, each seen again after a reload.
source "$(dirname "$0")/lib.sh"
run_browser_flow "$SRC/tests/demo/clients_flow.js"
