#!/usr/bin/env bash
# The LAN and WAN pages in headless Chromium: change the LAN address, add and remove a
# static lease, edit a WAN line, the refusals; then the console is restarted and the changes
# are seen again. Runs lan_flow.js twice (PHASE=change, then PHASE=restart) around the
# restart, with playwright-core installed as run_browser_flow installs it.
source "$(dirname "$0")/lib.sh"

command -v node >/dev/null || skip "node is not installed"
command -v npm >/dev/null || skip "npm is not installed"
[ -x /usr/bin/chromium ] || skip "chromium is not installed (apt-get install chromium)"
modules=$BUILD/demo-node
mkdir -p "$modules"
(
  flock 9
  if [ ! -e "$modules/node_modules/playwright-core/package.json" ] ||
     ! cmp -s "$SRC/tests/demo/package-lock.json" "$modules/package-lock.json"; then
    cp "$SRC/tests/demo/package.json" "$SRC/tests/demo/package-lock.json" "$modules/"
    (cd "$modules" && npm ci --no-audit --no-fund --loglevel=error)
  fi
) 9>"$modules.lock" || { echo "FAIL: npm ci could not install playwright-core"; exit 1; }
mkdir -p "$BUILD/demo-artifacts"

phase() { # change|restart
  NODE_PATH=$modules/node_modules BASE=$BASE ADMIN_USER=$ADMIN_USER ADMIN_PASS=$ADMIN_PASS \
    ARTIFACTS=$BUILD/demo-artifacts PROFILE=$DEMO_ROOT/chromium-profile-$1 PHASE=$1 \
    node "$SRC/tests/demo/lan_flow.js"
}

start_demo
[ -n "$ADMIN_USER" ] || { echo "FAIL: the demo did not tell the first-login credentials"; exit 1; }
phase change || { sed 's/^/demo log: /' "$DEMO_LOG"; exit 1; }
stop_demo
start_demo
check "the restart keeps the flash copies" grep -q 'keeping the settings' "$DEMO_LOG"
phase restart || FAILURES=$((FAILURES + 1))
finish
