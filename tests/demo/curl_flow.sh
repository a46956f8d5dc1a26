#!/usr/bin/env bash
# The demo console driven by curl alone, through the real web server and its CGI environment
# (lighttpd; busybox httpd with DEMO_SERVER=busybox): log in, overview, port-forwarding rules
# (add two, modify, duplicate name, delete), the other six lists and their switches, a full
# list, a stolen cookie from another address, log out, settings kept on flash across a
# restart, wrong passwords until the lock-out.
source "$(dirname "$0")/lib.sh"

start_demo

status_is() { # description, status, http arguments...
  local what=$1 want=$2; shift 2
  http "$@"; check "$what" [ "$STATUS" = "$want" ]
}
form() { # list, form variables...: posted as the pages do, token in query string and cookie
  local list=$1; shift
  http POST "/cgi-bin/form.cgi?stork=$TOKEN" -b "$JAR" --data-urlencode "list=$list" "$@"
}
result_is() { # description, the library's result, list, form variables...
  local what=$1 want=$2; shift 2
  form "$@"; check "$what" [ "$(json_get 'd["result"]')" = "$want" ]
}
view() { # list, python expression on the view `d`
  http GET "/cgi-bin/view.cgi?name=$1" -b "$JAR"; json_get "$2"
}
pf_rule() { # result, action, name, inner address, outer port, inner port, more variables...
  result_is "portforward: $2 $3 answers $1" "$1" portforward -d action="$2" -d name="$3" \
    -d innerip="$4" -d protocol=1 -d extren_Port_From="$5" -d extren_Port_To="$5" \
    -d inner_Port_From="$6" -d inner_Port_To="$6" -d status=1 "${@:7}"
}
PF_NAMES='"\n".join(e["name"] for e in d["vsipport"]["element"] if int(e["id"]) > 0)'
pf_id() { view portforward "[e['id'] for e in d['vsipport']['element'] if e['name'] == '$1'][0]"; }

status_is "the login page is served" 200 GET /
check "the pages are static HTML" grep -q 'id="login-form"' <<<"$BODY"
status_is "a view without a session is refused with 401" 401 GET '/cgi-bin/view.cgi?name=product'
check "and answers not logged in, no data" [ "$BODY" = '{"error":"not logged in"}' ]

# --- log in -----------------------------------------------------------------------------
status_is "login is POST only" 405 GET /cgi-bin/login.cgi
check "the demo tells the first-login credentials" [ -n "$ADMIN_USER" -a -n "$ADMIN_PASS" ]
login() { http POST /cgi-bin/login.cgi -c "$JAR" --data-urlencode "username=$ADMIN_USER" "$@"; }
login -D "$DEMO_ROOT.headers" --data-urlencode "password=$ADMIN_PASS"
check "the administrator logs in" [ "$STATUS" = 200 ]
TOKEN=$(json_get 'd["token"]')
check "the answer carries a 16-character alphanumeric token" grep -Eqx '[A-Za-z0-9]{16}' <<<"$TOKEN"
check "the cookie stork is HttpOnly, SameSite=Strict, Path=/" grep -Eiq \
  "^Set-Cookie: stork=$TOKEN; HttpOnly; SameSite=Strict; Path=/" "$DEMO_ROOT.headers"
check "the session file holds the token for 127.0.0.1" \
  grep -q "^127.0.0.1 $TOKEN " "$DEMO_ROOT/var/usertoken"

# --- overview ---------------------------------------------------------------------------
status_is "the product view is served with the cookie alone" 200 GET \
  '/cgi-bin/view.cgi?name=product' -b "$JAR"
check "and is JSON with a product name" [ -n "$(json_get 'd["productname"]')" ]
http GET "/cgi-bin/view.cgi?stork=$TOKEN&name=system" -b "$JAR"
check "the system view names the administrator" \
  [ "$(json_get 'd["sys_user"]["rootname"]')" = "$ADMIN_USER" ]

# --- port forwarding --------------------------------------------------------------------
status_is "the form program refuses GET" 405 GET \
  "/cgi-bin/form.cgi?stork=$TOKEN&list=portforward&action=deleteall" -b "$JAR"
status_is "a form without the token in the query string is refused" 401 POST \
  /cgi-bin/form.cgi -b "$JAR" -d list=portforward -d action=deleteall
pf_rule 0 add web 192.168.1.10 8080 80
pf_rule 0 add ssh 192.168.1.11 2222 22
check "the view lists both" [ "$(view portforward "$PF_NAMES" | sort | tr '\n' ' ')" = "ssh web " ]
pf_rule 0 modify ssh-admin 192.168.1.12 2200 22 -d id="$(pf_id ssh)"
check "the view shows the new name, address and port" [ "$(view portforward \
  "[(e['devip'], e['devexternfromport']) for e in d['vsipport']['element'] if e['name'] == 'ssh-admin'][0]")" \
  = "('192.168.1.12', '2200')" ]
pf_rule 10 add web 192.168.1.20 9000 90 # a duplicate name
form portforward -d action=add -d name='bad"name'
check "a name with a double quote is refused before the library" [ "$STATUS" = 400 ]
result_is "a rule is deleted" 0 portforward -d action=delete -d id="$(pf_id web)"
check "the view lists the other one only" [ "$(view portforward "$PF_NAMES")" = ssh-admin ]
form portforward -d action=modify -d id=abc -d name=x
check "a modify without a rule id is refused" [ "$STATUS" = 400 ]
result_is "the switch form turns port forwarding on" 0 portforward -d action=switch -d enable=1

# --- the other lists: add one rule each, see it in the view, the switches -----------------
# list, view object, form variables of one rule named "one"
while read -r list object vars; do
  args=()
  for var in $vars; do args+=(-d "$var"); done
  result_is "$list: a rule is added" 0 "$list" -d action=add -d name=one "${args[@]}"
  check "$list: the view lists it" [ "$(view "$list" \
    "[e['name'] for e in d['$object']['element'] if int(e['id']) > 0]")" = "['one']" ]
done <<'LISTS'
ipportfilter fwipport startip=192.168.1.100 endip=192.168.1.120 startport=80 endport=81 protocol=1 status=1 ipcontrol=0 timecontrol=0
macfilter fwmac devmac=00:11:22:33:44:55 status=1 timecontrol=0
urlfilter fwurl url=example.com status=1 timecontrol=0
qos qos startip=192.168.1.5 endip=192.168.1.9 bw_up=1000 bw_down=2000 status=1 ipcontrol=0 timecontrol=0
ipgroup useripgroup start_ip=10.0.0.1 end_ip=10.0.0.9
timegroup usertimegroup weekday1=1 weekday3=1 start_time=08:00 end_time=18:00
LISTS
for list in ipportfilter macfilter urlfilter qos; do
  form $list -d action=switch -d mode=1
  check "$list: the switch form turns it on" [ "$(view $list 'd["mode"]')" = 1 ]
done
form ipgroup -d action=switch -d mode=1
check "a list without a switch says so" [ "$STATUS" = 400 ]

# The IP groups hold 16: fill them; one more is the store's "list full" (3).
max=$(view ipgroup 'd["useripgroup"]["max_count"]')
for n in $(seq 2 "$max"); do
  form ipgroup -d action=add -d name="g$n" -d start_ip="10.0.$n.1" -d end_ip="10.0.$n.9"
done
result_is "adding to a full list ($max groups) answers 3" 3 ipgroup -d action=add -d name=overflow \
  -d start_ip=10.1.0.1 -d end_ip=10.1.0.9
form ipgroup -d action=deleteall
check "delete all empties the list" [ "$(view ipgroup 'd["useripgroup"]["count"]')" = 0 ]

# --- another address with the stolen cookie ---------------------------------------------
status_is "the stolen cookie from 127.0.0.3 is refused" 401 GET \
  "/cgi-bin/view.cgi?name=product" -b "$JAR" --interface 127.0.0.3
status_is "and so is a form posted with it" 401 POST "/cgi-bin/form.cgi?stork=$TOKEN" \
  -b "$JAR" --interface 127.0.0.3 -d list=portforward -d action=deleteall
status_is "the owner's session still works" 200 GET "/cgi-bin/view.cgi?name=product" -b "$JAR"

# --- log out ----------------------------------------------------------------------------
status_is "logout without the token in the query string is refused" 401 POST \
  /cgi-bin/logout.cgi -b "$JAR" -c "$JAR" -d ''
status_is "the administrator logs out" 200 POST "/cgi-bin/logout.cgi?stork=$TOKEN" \
  -b "$JAR" -c "$JAR" -d ''
status_is "after logging out the views are closed" 401 GET \
  "/cgi-bin/view.cgi?stork=$TOKEN&name=product"
status_is "and the forms too" 401 POST "/cgi-bin/form.cgi?stork=$TOKEN" -b "stork=$TOKEN" \
  -d list=portforward -d action=deleteall

# --- a restart keeps what flash holds ---------------------------------------------------
stop_demo
start_demo
check "the restart keeps the flash copies" grep -q 'keeping the settings' "$DEMO_LOG"
login --data-urlencode "password=$ADMIN_PASS"
TOKEN=$(json_get 'd["token"]')
check "after a restart the rule saved to flash is still there" \
  [ "$(view portforward "$PF_NAMES")" = ssh-admin ]
check "and port forwarding is still switched on" [ "$(view portforward 'd["enable"]')" = 1 ]
check "and so is the QoS switch, with its rule" \
  [ "$(view qos '(d["mode"], d["qos"]["count"])')" = "('1', '1')" ]

# --- wrong passwords until the lock-out -------------------------------------------------
for left in 4 3 2 1; do
  login -d password=wrong
  check "a wrong password is refused, $left left" \
    [ "$STATUS $(json_get 'd["attempts_left"]')" = "403 $left" ]
done
login -d password=wrong
check "the fifth failure locks the login" [ "$STATUS" = 429 ]
check "with a readable message" grep -q 'Too many failed logins' <<<"$BODY"
login --data-urlencode "password=$ADMIN_PASS"
check "during the lock-out even the right password is refused" [ "$STATUS" = 429 ]

finish
