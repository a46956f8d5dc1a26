#!/usr/bin/env bash
# After a browser session (token_logs_flow.js) the session token is in the session file and
# in no log or other file of the demo tree, and the private files are the owner's alone.
# The logs are read once the server has ended, when lighttpd has written them out: the
# checks run at exit, before the tree is removed.
source "$(dirname "$0")/lib.sh"

check_logs() {
  local status=$? token leaks file mode
  stop_demo
  token=$(cat "$DEMO_ROOT.token" 2>/dev/null)
  if [ -n "$token" ]; then
    check "the token is in the session file" grep -q " $token " "$DEMO_ROOT/var/usertoken"
    leaks=$(grep -rlF -- "$token" "$DEMO_ROOT" | grep -vx "$DEMO_ROOT/var/usertoken")
    check "and in no other file of the demo tree (logs included)" [ -z "$leaks" ]
    [ -z "$leaks" ] || echo "token found in: $leaks"
    check "the access log has the pages' requests, by path" \
      grep -q '"GET /cgi-bin/view.cgi HTTP' "$DEMO_ROOT/tmp/lighttpd-access.log"
    for file in var/usertoken tmp/lighttpd-access.log var tmp; do
      mode=$(stat -c %a "$DEMO_ROOT/$file")
      check "$file is its owner's alone ($mode)" [ "$((8#$mode & 8#077))" = 0 ]
    done
  else
    fail "the browser session left no token to look for"
  fi
  rm -rf "$DEMO_ROOT" "$DEMO_ROOT".*
  [ "$FAILURES" = 0 ] || exit 1
  exit "$status"
}
trap check_logs EXIT
run_browser_flow "$SRC/tests/demo/token_logs_flow.js"
