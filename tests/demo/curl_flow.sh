#!/usr/bin/env bash
# The demo console driven by curl alone, through the real lighttpd and its CGI environment:
# log in, overview, port-forwarding rules (add two, modify, duplicate name, delete), the
# other six lists and their switches, a full list, a stolen cookie from another address, log
# out, settings kept on flash across a restart, wrong passwords until the lock-out.
source "$(dirname "$0")/lib.sh"

JAR=$DEMO_ROOT.cookies
start_demo

http GET /
check "the login page is served" [ "$STATUS" = 200 ]
check "the pages are static HTML" grep -q 'id="login-form"' <<<"$BODY"

http GET '/cgi-bin/view.cgi?name=product'
check "a view without a session is refused with 401" [ "$STATUS" = 401 ]
check "and answers not logged in, no data" [ "$BODY" = '{"error":"not logged in"}' ]

# --- log in -----------------------------------------------------------------------------
http GET /cgi-bin/login.cgi
check "login is POST only" [ "$STATUS" = 405 ]
check "the demo tells the first-login credentials" [ -n "$ADMIN_USER" ] && [ -n "$ADMIN_PASS" ]
headers=$DEMO_ROOT.headers
http POST /cgi-bin/login.cgi -c "$JAR" -D "$headers" \
  --data-urlencode "username=$ADMIN_USER" --data-urlencode "password=$ADMIN_PASS"
check "the administrator logs in" [ "$STATUS" = 200 ]
TOKEN=$(json_get 'd["token"]')
check "the answer carries a 16-character alphanumeric token" grep -Eqx '[A-Za-z0-9]{16}' <<<"$TOKEN"
check "the cookie stork is HttpOnly, SameSite=Strict, Path=/" \
  grep -Eiq "^Set-Cookie: stork=$TOKEN; HttpOnly; SameSite=Strict; Path=/" "$headers"
check "the session file holds the token for 127.0.0.1" \
  grep -q "^127.0.0.1 $TOKEN " "$DEMO_ROOT/var/usertoken"

# --- overview ---------------------------------------------------------------------------
http GET '/cgi-bin/view.cgi?name=product' -b "$JAR"
check "the product view is served with the cookie alone" [ "$STATUS" = 200 ]
check "and is JSON with a product name" [ -n "$(json_get 'd["productname"]')" ]
http GET "/cgi-bin/view.cgi?stork=$TOKEN&name=system" -b "$JAR"
check "the system view names the administrator" [ "$(json_get 'd["sys_user"]["rootname"]')" = "$ADMIN_USER" ]

# --- port forwarding --------------------------------------------------------------------
form() { # the form program, posted as the pages do: token in the query string and cookie
  http POST "/cgi-bin/form.cgi?stork=$TOKEN" -b "$JAR" --data-urlencode list=portforward "$@"
}
rule_names() { # the names of the used slots, one a line
  http GET "/cgi-bin/view.cgi?name=portforward" -b "$JAR"
  json_get '"\n".join(e["name"] for e in d["vsipport"]["element"] if int(e["id"]) > 0)'
}
rule_id() { # name -> id
  http GET "/cgi-bin/view.cgi?name=portforward" -b "$JAR"
  json_get "[e['id'] for e in d['vsipport']['element'] if e['name'] == '$1'][0]"
}

http GET "/cgi-bin/form.cgi?stork=$TOKEN&list=portforward&action=deleteall" -b "$JAR"
check "the form program refuses GET" [ "$STATUS" = 405 ]
http POST /cgi-bin/form.cgi -b "$JAR" -d list=portforward -d action=deleteall
check "a form without the token in the query string is refused" [ "$STATUS" = 401 ]

form -d action=add -d name=web -d innerip=192.168.1.10 -d protocol=1 \
-d extren_Port_From=8080 -d extren_Port_To=8080 -d inner_Port_From=80 -d inner_Port_To=80 -d status=1
check "the first rule is added" [ "$(json_get 'd["result"]')" = 0 ]
form -d action=add -d name=ssh -d innerip=192.168.1.11 -d protocol=1 \
  -d extren_Port_From=2222 -d extren_Port_To=2222 -d inner_Port_From=22 -d inner_Port_To=22 -d status=1
check "the second rule is added" [ "$(json_get 'd["result"]')" = 0 ]
check "the view lists both" [ "$(rule_names | sort | tr '\n' ' ')" = "ssh web " ]

id=$(rule_id ssh)
form -d action=modify -d id="$id" -d name=ssh-admin -d innerip=192.168.1.12 -d protocol=1 \
  -d extren_Port_From=2200 -d extren_Port_To=2200 -d inner_Port_From=22 -d inner_Port_To=22 -d status=1
check "a rule is modified" [ "$(json_get 'd["result"]')" = 0 ]
http GET "/cgi-bin/view.cgi?name=portforward" -b "$JAR"
check "the view shows the new name, address and port" [ "$(json_get \
  "[(e['devip'], e['devexternfromport']) for e in d['vsipport']['element'] if e['name'] == 'ssh-admin'][0]")" \
  = "('192.168.1.12', '2200')" ]

form -d action=add -d name=web -d innerip=192.168.1.20 -d protocol=2 \
  -d extren_Port_From=9000 -d extren_Port_To=9000 -d inner_Port_From=90 -d inner_Port_To=90 -d status=1
check "a duplicate name is refused with 10" [ "$(json_get 'd["result"]')" = 10 ]
form -d action=add -d name='bad"name'
check "a name with a double quote is refused before the library" [ "$STATUS" = 400 ]

form -d action=delete -d id="$(rule_id web)"
check "a rule is deleted" [ "$(json_get 'd["result"]')" = 0 ]
check "the view lists the other one only" [ "$(rule_names)" = ssh-admin ]

form -d action=modify -d id=abc -d name=x
check "a modify without a rule id is refused" [ "$STATUS" = 400 ]
form -d action=switch -d enable=1
check "the switch form turns port forwarding on" [ "$(json_get 'd["result"]')" = 0 ]

# --- the other lists: add one rule each, see it in the view, the switches -----------------
list_form() { # list, form variables...
  local list=$1; shift
  http POST "/cgi-bin/form.cgi?stork=$TOKEN" -b "$JAR" --data-urlencode "list=$list" "$@"
}
# list, view object, form variables of one rule named "one"
while read -r list object vars; do
  args=()
  for var in $vars; do args+=(-d "$var"); done
  list_form "$list" -d action=add -d name=one "${args[@]}"
  check "$list: a rule is added" [ "$(json_get 'd["result"]')" = 0 ]
  http GET "/cgi-bin/view.cgi?name=$list" -b "$JAR"
  check "$list: the view lists it" \
    [ "$(json_get "[e['name'] for e in d['$object']['element'] if int(e['id']) > 0]")" = "['one']" ]
done <<'LISTS'
ipportfilter fwipport startip=192.168.1.100 endip=192.168.1.120 startport=80 endport=81 protocol=1 status=1 ipcontrol=0 timecontrol=0
macfilter fwmac devmac=00:11:22:33:44:55 status=1 timecontrol=0
urlfilter fwurl url=example.com status=1 timecontrol=0
qos qos startip=192.168.1.5 endip=192.168.1.9 bw_up=1000 bw_down=2000 status=1 ipcontrol=0 timecontrol=0
ipgroup useripgroup start_ip=10.0.0.1 end_ip=10.0.0.9
timegroup usertimegroup weekday1=1 weekday3=1 start_time=08:00 end_time=18:00
LISTS
for list in ipportfilter macfilter urlfilter qos; do
  list_form $list -d action=switch -d mode=1
  http GET "/cgi-bin/view.cgi?name=$list" -b "$JAR"
  check "$list: the switch form turns it on" [ "$(json_get 'd["mode"]')" = 1 ]
done
list_form ipgroup -d action=switch -d mode=1
check "a list without a switch says so" [ "$STATUS" = 400 ]

# The IP groups hold 16: fill them; one more is the store's "list full" (3).
http GET "/cgi-bin/view.cgi?name=ipgroup" -b "$JAR"
max=$(json_get 'd["useripgroup"]["max_count"]')
for n in $(seq 2 "$max"); do
  list_form ipgroup -d action=add -d name="g$n" -d start_ip="10.0.$n.1" -d end_ip="10.0.$n.9"
done
list_form ipgroup -d action=add -d name=overflow -d start_ip=10.1.0.1 -d end_ip=10.1.0.9
check "adding to a full list ($max groups) answers 3" [ "$(json_get 'd["result"]')" = 3 ]
list_form ipgroup -d action=deleteall
http GET "/cgi-bin/view.cgi?name=ipgroup" -b "$JAR"
check "delete all empties the list" [ "$(json_get 'd["useripgroup"]["count"]')" = 0 ]

# --- another address with the stolen cookie ---------------------------------------------
http GET "/cgi-bin/view.cgi?name=product" -b "$JAR" --interface 127.0.0.3
check "the stolen cookie from 127.0.0.3 is refused" [ "$STATUS" = 401 ]
http POST "/cgi-bin/form.cgi?stork=$TOKEN" -b "$JAR" --interface 127.0.0.3 -d list=portforward -d action=deleteall
check "and so is a form posted with it" [ "$STATUS" = 401 ]
http GET "/cgi-bin/view.cgi?name=product" -b "$JAR"
check "the owner's session still works" [ "$STATUS" = 200 ]

# --- log out ----------------------------------------------------------------------------
http POST /cgi-bin/logout.cgi -b "$JAR" -c "$JAR" -d ''
check "logout without the token in the query string is refused" [ "$STATUS" = 401 ]
http POST "/cgi-bin/logout.cgi?stork=$TOKEN" -b "$JAR" -c "$JAR" -d ''
check "the administrator logs out" [ "$STATUS" = 200 ]
http GET "/cgi-bin/view.cgi?stork=$TOKEN&name=product"
check "after logging out the views are closed" [ "$STATUS" = 401 ]
http POST "/cgi-bin/form.cgi?stork=$TOKEN" -b "stork=$TOKEN" -d list=portforward -d action=deleteall
check "and the forms too" [ "$STATUS" = 401 ]

# --- a restart keeps what flash holds ---------------------------------------------------
stop_demo
start_demo
check "the restart keeps the flash copies" grep -q 'keeping the settings' "$DEMO_LOG"
http POST /cgi-bin/login.cgi -c "$JAR" --data-urlencode "username=$ADMIN_USER" \
  --data-urlencode "password=$ADMIN_PASS"
TOKEN=$(json_get 'd["token"]')
check "after a restart the rule saved to flash is still there" [ "$(rule_names)" = ssh-admin ]
http GET "/cgi-bin/view.cgi?name=portforward" -b "$JAR"
check "and port forwarding is still switched on" [ "$(json_get 'd["enable"]')" = 1 ]
http GET "/cgi-bin/view.cgi?name=qos" -b "$JAR"
check "and so is the QoS switch, with its rule" \
  [ "$(json_get '(d["mode"], d["qos"]["count"])')" = "('1', '1')" ]

# --- wrong passwords until the lock-out -------------------------------------------------
for left in 4 3 2 1; do
  http POST /cgi-bin/login.cgi --data-urlencode "username=$ADMIN_USER" -d password=wrong
  check "a wrong password is refused, $left left" \
    [ "$STATUS $(json_get 'd["attempts_left"]')" = "403 $left" ]
done
http POST /cgi-bin/login.cgi --data-urlencode "username=$ADMIN_USER" -d password=wrong
check "the fifth failure locks the login" [ "$STATUS" = 429 ]
check "with a readable message" grep -q 'Too many failed logins' <<<"$BODY"
http POST /cgi-bin/login.cgi --data-urlencode "username=$ADMIN_USER" \
  --data-urlencode "password=$ADMIN_PASS"
check "during the lock-out even the right password is refused" [ "$STATUS" = 429 ]

if [ "$FAILURES" -gt 0 ]; then
  echo "$FAILURES checks failed"; sed 's/^/demo log: /' "$DEMO_LOG"; exit 1
fi
echo "all checks passed"
