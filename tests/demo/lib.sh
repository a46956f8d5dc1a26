# Shared by the demo tests: start the demo console on a free port in a private tree, stop
# it, and small checks. Sourced by bash scripts run by CTest with the build tree as $1.
# DEMO_SERVER chooses the web server: lighttpd (the default) or busybox (its httpd).
# DEMO_NO_FLEET=1 starts the demo without its fleet stand-in (for flows that stage their
# own managed APs and stations).
set -uo pipefail

SRC=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
BUILD=${1:?usage: $0 BUILD_DIR}
BUILD=$(cd "$BUILD" && pwd) || exit 1
SKIP=77
FAILURES=0

skip() { echo "SKIP: $*"; exit $SKIP; }
fail() { echo "FAIL: $*"; FAILURES=$((FAILURES + 1)); }
pass() { echo "ok: $*"; }
check() { # description, command...
  local what=$1; shift
  if "$@"; then pass "$what"; else fail "$what"; fi
}

[ -z "${DEMO_SKIP_REASON:-}" ] || skip "$DEMO_SKIP_REASON"
DEMO_SERVER=${DEMO_SERVER:-lighttpd}
case $DEMO_SERVER in
  lighttpd)
    [ -x /usr/sbin/lighttpd ] || skip "lighttpd is not installed (apt-get install lighttpd)"
    SERVER_PIDFILE=lighttpd.pid SERVER_CONF=lighttpd.conf ;;
  busybox)
    busybox_httpd=0
    for bb in "$(command -v busybox)" /bin/busybox /usr/bin/busybox; do
      [ -x "$bb" ] && "$bb" --list 2>/dev/null | grep -qx httpd && busybox_httpd=1
    done
    [ "$busybox_httpd" = 1 ] || skip "busybox with its httpd is not installed (apt-get install busybox)"
    SERVER_PIDFILE=busybox-httpd.pid SERVER_CONF=busybox-httpd.conf ;;
  *) echo "FAIL: DEMO_SERVER is lighttpd or busybox, not $DEMO_SERVER"; exit 1 ;;
esac
command -v curl >/dev/null || skip "curl is not installed"
command -v python3 >/dev/null || skip "python3 is not installed"
[ -x "$BUILD/examples/cgi-bin/login.cgi" ] || { echo "FAIL: no CGI programs in $BUILD"; exit 1; }

DEMO_ROOT=$(mktemp -d "${TMPDIR:-/tmp}/webmgmt-demo-XXXXXX")
DEMO_PID=
DEMO_LOG=$DEMO_ROOT.log
JAR=$DEMO_ROOT.cookies # curl's cookies
cleanup() {
  stop_demo
  rm -rf "$DEMO_ROOT" "$DEMO_ROOT".*
}
trap cleanup EXIT
trap 'exit 1' INT TERM

free_port() {
  python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])'
}

# Starts tools/demo on the built tree in DEMO_ROOT; sets BASE, ADMIN_USER and ADMIN_PASS.
# The script prints its address line last, once the server answers. A port taken between
# free_port and the server's bind makes it end at once: then it is tried on another port.
start_demo() {
  local attempt line=
  for attempt in 1 2 3; do
    PORT=$(free_port)
    BASE=http://127.0.0.1:$PORT
    : >"$DEMO_LOG"
    "$SRC/tools/demo" --no-build --build-dir "$BUILD" --root "$DEMO_ROOT" --port "$PORT" \
      --server "$DEMO_SERVER" ${DEMO_NO_FLEET:+--no-fleet} >"$DEMO_LOG" 2>&1 &
    DEMO_PID=$!
    while kill -0 "$DEMO_PID" 2>/dev/null; do
      line=$(grep -m1 '^webmgmt demo console:' "$DEMO_LOG")
      [ -n "$line" ] && break 2
      sleep 0.05
    done
    wait "$DEMO_PID" 2>/dev/null
    DEMO_PID=
    grep -q 'did not start' "$DEMO_LOG" || break
  done
  if [ -z "$line" ]; then
    sed 's/^/demo log: /' "$DEMO_LOG"
    echo "FAIL: the demo console did not start"
    exit 1
  fi
  local account
  account=$(sed -n 's/^log in as: //p' "$DEMO_LOG")
  ADMIN_USER=${account%% / *}
  ADMIN_PASS=${account#* / }
}

# Stops it as Ctrl-C does (the script's trap ends the server and exits; a background job of
# a script ignores SIGINT, so TERM stands for it). Should the server outlive the script, it
# is ended by its pid file, once its command line shows it is this demo's server.
stop_demo() {
  [ -n "$DEMO_PID" ] || return 0
  kill -TERM "$DEMO_PID" 2>/dev/null
  wait "$DEMO_PID" 2>/dev/null
  DEMO_PID=
  local pid
  pid=$(cat "$DEMO_ROOT/tmp/$SERVER_PIDFILE" 2>/dev/null) || return 0
  if tr '\0' ' ' 2>/dev/null <"/proc/$pid/cmdline" | grep -qF "$DEMO_ROOT/tmp/$SERVER_CONF"; then
    echo "FAIL: $DEMO_SERVER $pid outlived the demo script"
    FAILURES=$((FAILURES + 1))
    kill "$pid"
  fi
  return 0
}

# Polls `command...` every 0.1 s until it succeeds, for at most a minute: for a state another
# process brings about (the fleet stand-in's first write). 1 when it never came.
wait_until() {
  local _
  for _ in $(seq 1 600); do
    "$@" && return 0
    sleep 0.1
  done
  return 1
}

# An answer's status code and body: http METHOD PATH [curl args...] -> $STATUS, $BODY
http() {
  local method=$1 path=$2; shift 2
  local out
  out=$(curl -s -X "$method" -w '\n%{http_code}' "$@" "$BASE$path")
  STATUS=${out##*$'\n'}
  BODY=${out%$'\n'*}
  BODY=${BODY%$'\n'}
}

# Logs the administrator in with curl: the cookie in JAR, the session token in TOKEN.
log_in() {
  http POST /cgi-bin/login.cgi -c "$JAR" --data-urlencode "username=$ADMIN_USER" \
    --data-urlencode "password=$ADMIN_PASS"
  TOKEN=$(json_get 'd["token"]')
}

# The store tool on the demo's tree.
wmconfig() { WEBMGMT_ROOT=$DEMO_ROOT LD_LIBRARY_PATH=$BUILD:$BUILD/store "$BUILD/wmconfig" "$@"; }

# Installs standard input as the stand-in device tool `name`, which the demo puts first in
# its programs' PATH (call before start_demo).
stand_in() { # name
  TOOLS=$DEMO_ROOT.tools
  mkdir -p "$TOOLS"
  cat >"$TOOLS/$1"
  chmod 755 "$TOOLS/$1"
  export WEBMGMT_DEMO_TOOLS=$TOOLS
}

# A member of the JSON body, by a Python expression on `d`: json_get 'd["result"]'
json_get() {
  python3 -c 'import json,sys; d=json.loads(sys.argv[1]); print(eval(sys.argv[2]))' "$BODY" "$1" \
    2>/dev/null
}

# Ends a flow: the count of failed checks and the demo's log when any failed.
finish() {
  if [ "$FAILURES" -gt 0 ]; then
    echo "$FAILURES checks failed"; sed 's/^/demo log: /' "$DEMO_LOG"; exit 1
  fi
  echo "all checks passed"
}

# Installs playwright-core as the committed lock file pins it into <build>/demo-node, one
# installation shared by the flows: the first to need it installs it under a lock. Skips the
# flow without node, npm or chromium.
install_playwright() {
  command -v node >/dev/null || skip "node is not installed"
  command -v npm >/dev/null || skip "npm is not installed"
  [ -x /usr/bin/chromium ] || skip "chromium is not installed (apt-get install chromium)"
  NODE_MODULES=$BUILD/demo-node
  mkdir -p "$NODE_MODULES" "$BUILD/demo-artifacts"
  (
    flock 9
    if [ ! -e "$NODE_MODULES/node_modules/playwright-core/package.json" ] ||
       ! cmp -s "$SRC/tests/demo/package-lock.json" "$NODE_MODULES/package-lock.json"; then
      cp "$SRC/tests/demo/package.json" "$SRC/tests/demo/package-lock.json" "$NODE_MODULES/"
      (cd "$NODE_MODULES" && npm ci --no-audit --no-fund --loglevel=error)
    fi
  ) 9>"$NODE_MODULES.lock" || { echo "FAIL: npm ci could not install playwright-core"; exit 1; }
}

# Runs a playwright-core script against the running demo with BASE, ADMIN_USER, ADMIN_PASS,
# ARTIFACTS (<build>/demo-artifacts, for the screenshots) and PROFILE (the browser profile
# <demo>/chromium-profile<suffix>) set, and any further VAR=value given.
node_flow() { # script.js profile-suffix [VAR=value...]
  local script=$1 profile=$DEMO_ROOT/chromium-profile$2
  shift 2
  env NODE_PATH="$NODE_MODULES/node_modules" BASE="$BASE" ADMIN_USER="$ADMIN_USER" \
    ADMIN_PASS="$ADMIN_PASS" ARTIFACTS="$BUILD/demo-artifacts" PROFILE="$profile" \
    DEMO_ROOT="$DEMO_ROOT" "$@" node "$script"
}

# Runs one browser flow (a playwright-core script of tests/demo/) against a fresh demo
# console; exits with the script's status.
run_browser_flow() { # script.js
  install_playwright
  start_demo
  [ -n "$ADMIN_USER" ] || { echo "FAIL: the demo did not tell the first-login credentials"; exit 1; }
  node_flow "$1" ""
  local status=$?
  [ $status = 0 ] || sed 's/^/demo log: /' "$DEMO_LOG"
  exit $status
}
