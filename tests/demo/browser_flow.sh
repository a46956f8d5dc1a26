#!/usr/bin/env bash
# The demo console in Debian's headless Chromium, driven by playwright-core: the same flow
# as curl_flow.sh, through the pages. Screenshots go to <build>/demo-artifacts/.
source "$(dirname "$0")/lib.sh"

command -v node >/dev/null || skip "node is not installed"
command -v npm >/dev/null || skip "npm is not installed"
[ -x /usr/bin/chromium ] || skip "chromium is not installed (apt-get install chromium)"

# playwright-core, as the committed lock file pins it, in the build tree.
modules=$BUILD/demo-node
if [ ! -e "$modules/node_modules/playwright-core/package.json" ] ||
   ! cmp -s "$SRC/tests/demo/package-lock.json" "$modules/package-lock.json"; then
  mkdir -p "$modules"
  cp "$SRC/tests/demo/package.json" "$SRC/tests/demo/package-lock.json" "$modules/"
  (cd "$modules" && npm ci --no-audit --no-fund --loglevel=error) ||
    { echo "FAIL: npm ci could not install playwright-core"; exit 1; }
fi

start_demo
[ -n "$ADMIN_USER" ] || { echo "FAIL: the demo did not tell the first-login credentials"; exit 1; }

mkdir -p "$BUILD/demo-artifacts"
NODE_PATH=$modules/node_modules BASE=$BASE ADMIN_USER=$ADMIN_USER ADMIN_PASS=$ADMIN_PASS \
  ARTIFACTS=$BUILD/demo-artifacts PROFILE=$DEMO_ROOT/chromium-profile \
  node "$SRC/tests/demo/browser_flow.js"
status=$?
[ $status = 0 ] || sed 's/^/demo log: /' "$DEMO_LOG"
exit $status
