#!/usr/bin/env bash
# The console attacked from the same machine, through the real web server: 60 wrong logins
# at once check at most five passwords (a recording image tool counts the checks) and leave
# the counter at 60; logins posted from another site are refused; no session token in any
# log of the demo tree, its private files readable by their owner alone, and no password
# digest in the system view; on a full /var (a small tmpfs in a private mount namespace, or
# a file-size limit where mounting is refused) the login is refused, never granted.
source "$(dirname "$0")/lib.sh"

# The image tool that hashes login passwords, recording each call in CHECKS.
CHECKS=$DEMO_ROOT.checks
stand_in tq_versign <<EOF
#!/bin/sh
echo "\$*" >>'$CHECKS'
exec '$SRC/tools/tq_versign' "\$@"
EOF
start_demo

COUNTER=$DEMO_ROOT/var/loginfail
login() { http POST /cgi-bin/login.cgi -c "$JAR" --data-urlencode "username=$ADMIN_USER" "$@"; }
checks_made() { [ -f "$CHECKS" ] && wc -l <"$CHECKS" || echo 0; }

# The stored password as the system form keeps it once hashed: its SHA-256 digest. Every
# login then asks the image tool, so the tool's calls count the passwords checked.
DIGEST=$(printf '%s' "$ADMIN_PASS" | sha256sum | cut -d' ' -f1)
check "the password is stored as its digest" wmconfig set --flash misc "sys_user.rootpwd=$DIGEST"

# --- logins only from the console's own pages -------------------------------------------
for header in "Origin: http://evil.example" "Origin: null" "Sec-Fetch-Site: cross-site" \
  "Referer: http://evil.example/login.html" "Referer: http://127.0.0.1.evil.example/"; do
  login -H "$header" --data-urlencode "password=$ADMIN_PASS"
  check "a login with '$header' is refused" [ "$STATUS" = 403 ]
done
check "and none of them was counted or checked" [ ! -s "$COUNTER" -a "$(checks_made)" = 0 ]
login -H "Origin: $BASE" -H "Referer: $BASE/login.html" -H "Sec-Fetch-Site: same-origin" \
  --data-urlencode "password=$ADMIN_PASS"
check "a login from the console's own page is accepted" [ "$STATUS" = 200 ]
TOKEN=$(json_get 'd["token"]')
check "with a token" grep -Eqx '[A-Za-z0-9]{16}' <<<"$TOKEN"
check "and the counter is cleared" [ "$(cut -d' ' -f2 "$COUNTER")" = 0 ]
login --data-urlencode "password=$DIGEST"
check "the stored digest itself is not a password" [ "$STATUS" != 200 ]
login --data-urlencode "password=$ADMIN_PASS"
check "and the right password still logs in" [ "$STATUS" = 200 ]
TOKEN=$(json_get 'd["token"]')

# --- what the browser is given, what the logs keep ----------------------------------------
http GET "/cgi-bin/view.cgi?stork=$TOKEN&name=system" -b "$JAR" \
  -H "Referer: $BASE/system.html?stork=$TOKEN"
check "the system view is served" [ "$STATUS" = 200 ]
check "and names the administrator" [ "$(json_get 'd["sys_user"]["rootname"]')" = "$ADMIN_USER" ]
check "but holds no password" [ "$(json_get 'd["sys_user"]["rootpwd"]')" = "" ]
check "nor the digest anywhere" bash -c "! grep -qi '$DIGEST' <<<'$BODY'"
http GET "/cgi-bin/view.cgi?name=product&stork=$TOKEN" -b "$JAR"
http POST "/cgi-bin/form.cgi?stork=$TOKEN" -b "$JAR" -d list=portforward -d action=switch \
  -d enable=1
check "a form with the token in its query string is served" [ "$STATUS" = 200 ]
http GET "/cgi-bin/view.cgi?stork=$TOKEN&name=nosuch" -b "$JAR"
check "the token is in the session file" grep -q " $TOKEN " "$DEMO_ROOT/var/usertoken"

# --- 60 wrong logins at once ------------------------------------------------------------
: >"$CHECKS"
statuses=$DEMO_ROOT.statuses
pids=()
for i in $(seq 60); do
  curl -s -o /dev/null -w '%{http_code}\n' --data-urlencode "username=$ADMIN_USER" \
    --data-urlencode "password=wrong$i" "$BASE/cgi-bin/login.cgi" >>"$statuses" &
  pids+=($!)
done
wait "${pids[@]}"
check "all 60 were answered" [ "$(wc -l <"$statuses")" = 60 ]
check "none was let in" [ "$(grep -cvE '^(403|429)$' "$statuses")" = 0 ]
made=$(checks_made)
check "at most five passwords were checked ($made)" [ "$made" -le 5 ]
check "the counter counts all 60" [ "$(cut -d' ' -f2 "$COUNTER")" = 60 ]
login --data-urlencode "password=$ADMIN_PASS"
check "the right password is refused while locked" [ "$STATUS" = 429 ]
check "without being checked" [ "$(checks_made)" = "$made" ]
check "and is counted too" [ "$(cut -d' ' -f2 "$COUNTER")" = 61 ]

# The logs once the server has ended (lighttpd writes its access log out then).
stop_demo
leaks=$(grep -rlF -- "$TOKEN" "$DEMO_ROOT" | grep -vx "$DEMO_ROOT/var/usertoken")
check "the token is in no other file of the demo tree (logs included)" [ -z "$leaks" ]
[ -z "$leaks" ] || echo "token found in: $leaks"
check "the access log has the requests, by path" grep -q '"GET /cgi-bin/view.cgi HTTP' \
  "$DEMO_ROOT/tmp/lighttpd-access.log"
for file in var/usertoken var/loginfail tmp/lighttpd-access.log tmp/lighttpd-error.log var tmp; do
  mode=$(stat -c %a "$DEMO_ROOT/$file")
  check "$file is its owner's alone ($mode)" [ "$((8#$mode & 8#077))" = 0 ]
done

# --- a full /var ------------------------------------------------------------------------
# login.cgi run as the server runs it, on a tree whose var/ is full. Prints the status.
cgi_login() { # root password
  local body="username=$ADMIN_USER&password=$2"
  env -i WEBMGMT_ROOT="$1" LD_LIBRARY_PATH="$BUILD:$BUILD/store" PATH="$TOOLS:$SRC/tools:/usr/bin:/bin" \
    REQUEST_METHOD=POST CONTENT_TYPE=application/x-www-form-urlencoded \
    CONTENT_LENGTH=${#body} REMOTE_ADDR=127.0.0.9 "$BUILD/examples/cgi-bin/login.cgi" \
    <<<"$body" 2>/dev/null | sed -n 's/^Status: \([0-9]*\).*/\1/p'
}
FULL=$DEMO_ROOT.full
mkdir -p "$FULL/var" "$FULL/tmp"
ln -s "$DEMO_ROOT/etc" "$FULL/etc"
ln -s "$DEMO_ROOT/usr" "$FULL/usr"
# In a private mount namespace: a 64 KiB tmpfs on var/, filled up. First with no counter
# file (it cannot be made), then with one made before the filling (rewritten in place).
full_tmpfs_run() { # counter content or "" for none; then passwords to try in turn
  local content=$1; shift
  unshare -r -m bash -c '
    full=$1 content=$2; shift 2
    mount -t tmpfs -o size=64k tmpfs "$full/var" || exit 99
    : >"$full/var/loginlock"
    [ -z "$content" ] || printf "%s" "$content" >"$full/var/loginfail"
    dd if=/dev/zero of="$full/var/fill" bs=4k 2>/dev/null
    for password; do cgi_login "$full" "$password"; done
    cat "$full/var/loginfail" 2>/dev/null | cut -d" " -f2
  ' bash "$FULL" "$content" "$@"
}
export ADMIN_USER BUILD TOOLS SRC
export -f cgi_login
if unshare -r -m true 2>/dev/null; then
  out=$(full_tmpfs_run "" "$ADMIN_PASS" wrong)
  check "full tmpfs, no counter: the right password is refused (503)" \
    [ "$(sed -n 1p <<<"$out")" = 503 ]
  check "and so is a wrong one" [ "$(sed -n 2p <<<"$out")" = 503 ]
  out=$(full_tmpfs_run "0 0" w1 w2 w3 w4 w5 w6 "$ADMIN_PASS")
  check "full tmpfs, a counter: five wrong logins are counted in place and lock" \
    [ "$(sed -n 1,7p <<<"$out" | tr '\n' ' ')" = "403 403 403 403 429 429 429 " ]
  check "the counter holds all seven" [ "$(sed -n 8p <<<"$out")" = 7 ]
  out=$(full_tmpfs_run "0 0" "$ADMIN_PASS")
  check "full tmpfs: the right password gets no session it cannot store (500)" \
    [ "$(sed -n 1p <<<"$out")" = 500 ]
else
  echo "note: no private mount namespace here; the full /var is a file-size limit only"
fi
# A file-size limit of 0: every write fails (SIGXFSZ ignored, so it fails with EFBIG).
: >"$FULL/var/loginlock"
echo "0 0" >"$FULL/var/loginfail"
for password in "$ADMIN_PASS" wrong; do
  status=$(trap '' XFSZ; ulimit -f 0; cgi_login "$FULL" "$password")
  check "no file may grow: '$password' is refused (503)" [ "$status" = 503 ]
done

finish
