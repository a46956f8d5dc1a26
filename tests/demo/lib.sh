# Shared by the demo tests: start the demo console on a free port in a private tree, stop
# it, and small checks. Sourced by bash scripts run by CTest with the build tree as $1.
set -uo pipefail

SRC=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
BUILD=${1:?usage: $0 BUILD_DIR}
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
[ -x /usr/sbin/lighttpd ] || skip "lighttpd is not installed (apt-get install lighttpd)"
command -v curl >/dev/null || skip "curl is not installed"
command -v python3 >/dev/null || skip "python3 is not installed"
[ -x "$BUILD/examples/cgi-bin/login.cgi" ] || skip "the CGI programs are not built"

DEMO_ROOT=$(mktemp -d /tmp/webmgmt-demo-XXXXXX)
DEMO_PID=
DEMO_LOG=$DEMO_ROOT.log
cleanup() {
  stop_demo
  rm -rf "$DEMO_ROOT" "$DEMO_LOG"
}
trap cleanup EXIT

free_port() {
  python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])'
}

# Starts tools/demo on the built tree; sets BASE, ADMIN_USER and ADMIN_PASS.
start_demo() {
  PORT=$(free_port)
  BASE=http://127.0.0.1:$PORT
  "$SRC/tools/demo" --no-build --build-dir "$BUILD" --root "$DEMO_ROOT" --port "$PORT" \
    >"$DEMO_LOG" 2>&1 &
  DEMO_PID=$!
  local line=
  for _ in $(seq 300); do
    line=$(grep -m1 '^webmgmt demo console:' "$DEMO_LOG" || true)
    [ -n "$line" ] && break
    kill -0 "$DEMO_PID" 2>/dev/null || break
    sleep 0.1
  done
  if [ -z "$line" ]; then
    cat "$DEMO_LOG"
    echo "FAIL: the demo console did not start"
    exit 1
  fi
  local account
  account=$(sed -n 's/^log in as: //p' "$DEMO_LOG")
  ADMIN_USER=${account%% / *}
  ADMIN_PASS=${account#* / }
}

# Stops it as Ctrl-C would; the script ends lighttpd and exits.
stop_demo() {
  [ -n "$DEMO_PID" ] || return 0
  kill -TERM "$DEMO_PID" 2>/dev/null
  wait "$DEMO_PID" 2>/dev/null
  DEMO_PID=
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

# A member of the JSON body, by a Python expression on `d`: json_get 'd["result"]'
json_get() {
  python3 -c 'import json,sys; d=json.loads(sys.argv[1]); print(eval(sys.argv[2]))' "$BODY" "$1" \
    2>/dev/null
}
