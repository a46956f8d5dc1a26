#!/usr/bin/env bash
# fleet.cgi driven by curl through the real web server, over the fleet the demo's fleetd
# writes: every answer is JSON (or the survey XML, which python3's parser reads when the
# stored names carry their quotes), the full configuration parses after the program's
# opening, the template members read as the page joins them, and what the program refuses.
source "$(dirname "$0")/lib.sh"

start_demo
get() { http GET "/cgi-bin/fleet.cgi?$1" -b "$JAR"; }
py() { python3 -c "$1" "$BODY" 2>&1; }

get 'do=list'
check "without a session the program answers 401" [ "$STATUS" = 401 ]
log_in
check "the administrator logs in" [ "$STATUS" = 200 ]

# fleetd writes its first fleet as the demo starts: wait until the list holds the AP.
fleet_listed() {
  get 'do=list'
  [ "$(json_get 'len(d["devices"][0]["ApDevList"]["data"])')" = 2 ]
}
wait_until fleet_listed
check "the list holds the AP and the {} sentinel" \
  [ "$(json_get 'd["devices"][0]["ApDevList"]["data"][0]["m_dev_mac"]')" = 00:1E:42:10:0C:D0 ]
check "the list says the controller's maximum" [ "$(json_get 'd["max"]')" = 1 ]
get 'do=list&mac=0c:d0&ip=192.168'
check "the filters match in any case of the MAC" \
  [ "$(json_get 'd["devices"][0]["ApDevList"]["count"]')" = 1 ]
get 'do=list&mac=FF'
check "a MAC filter that matches nothing leaves no row" \
  [ "$(json_get 'd["devices"][0]["ApDevList"]["count"]')" = 0 ]
for bad in 'mac=%22x' 'mac=zz' 'ip=1.2.3.4%3Becho' 'ip=1234567890123456'; do
  get "do=list&$bad"
  check "a filter $bad is refused with 400" [ "$STATUS" = 400 ]
done

get 'do=dashboard'
check "the dashboard counts the AP" [ "$(json_get 'd["devices"][0]["ApDevList"]["sumcount"]')" = 1 ]

get 'do=ap&mac=00:1e:42:10:0c:d0'
check "the full configuration parses after the program's opening" \
  [ "$(json_get 'd["ap"][0]["m_dev_name"]')" = ap-01 ]
check "it holds the three radios" [ "$(json_get 'len(d["ap"][0]["m_radio"])')" = 3 ]
get 'do=ap&mac=00:00:00:00:00:01'
check "an AP the controller does not manage is 404" [ "$STATUS" = 404 ]
get 'do=ap&mac=nonsense'
check "a MAC that is not one is 400" [ "$STATUS" = 400 ]

get 'do=scan&mac=00:1E:42:10:0C:D0&radio=0&band=24'
check "the survey is XML of 13 channels and the networks found" [ "$(py '
import sys, xml.etree.ElementTree as E
root = E.fromstring(sys.argv[1])
print(len(root.findall("chnel")), len(root.findall("data")) >= 6)')" = "13 True" ]
get 'do=scan&mac=00:1E:42:10:0C:D0&radio=3&band=24'
check "a radio beyond the AP's three is refused" [ "$STATUS" = 400 ]

get 'do=templates'
check "the template list names both templates" \
  [ "$(json_get '",".join(r["WlanGroup_Name"] for t in d["list"] for r in t["WlanGroupList"]["data"] if r["WlanGroup_Id"] != "0")')" = "Head office,Warehouse" ]
check "the default template's reboot schedule stands in its third radio" \
  [ -n "$(json_get 'd["default"]["m_radio"][2]["m_timereboot"]["m_TimeRebootEnable"]')" ]
get 'do=members&index=0&mode=2'
check "the bound device's document is not JSON as printed" [ "$(py 'import json,sys
try: json.loads(sys.argv[1]); print("json")
except ValueError: print("not json")')" = "not json" ]
check "joined as the page joins it, it names the AP" [ "$(py 'import json,sys
d = json.loads(sys.argv[1].replace("\"},\"m_radio\":[", "\",\"m_radio\":["))
print(d["ApDevList"]["data"][0]["m_dev_name"])')" = ap-01 ]
get 'do=members&index=4&mode=1'
check "a template beyond the list is refused" [ "$STATUS" = 400 ]
get 'do=template&index=1'
check "one template's settings" [ "$(json_get 'len(d["m_radio"])')" = 3 ]

get 'do=wlan'
check "the wireless overview prints the product's radios and the sentinel" \
  [ "$(json_get 'len(d["radios"]["m_radio"])')" = 3 ]
get 'do=nothing'
check "an unknown view is 404" [ "$STATUS" = 404 ]
finish
