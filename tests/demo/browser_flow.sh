#!/usr/bin/env bash
# The demo console in Debian's headless Chromium, driven by playwright-core: the same flow
# as curl_flow.sh, through the pages.
source "$(dirname "$0")/lib.sh"
run_browser_flow "$SRC/tests/demo/browser_flow.js"
