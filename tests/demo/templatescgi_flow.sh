#!/usr/bin/env bash
# templates.cgi driven by curl through the real web server: each value that would break the
# device is refused with 400 naming its field, and the fleet views (fleet.cgi, read by
# python3's json parser) show the stored settings unchanged; the forms it passes on store
# what the views then show.
source "$(dirname "$0")/lib.sh"

MAC=00:1E:42:10:0C:D0 # the AP fleetd registers
start_demo
post() { http POST "/cgi-bin/templates.cgi?stork=$TOKEN" -b "$JAR" "$@"; }
view() { http GET "/cgi-bin/fleet.cgi?stork=$TOKEN&$1" -b "$JAR"; }

log_in
check "the administrator logs in" [ "$STATUS" = 200 ]
post --data 'form=ap'
check "a post without the session token in the query is refused" \
  [ "$(TOKEN=; http POST /cgi-bin/templates.cgi -b "$JAR" --data form=ap; echo "$STATUS")" = 401 ]

ap_shown() { view "do=ap&mac=$MAC" && [ "$STATUS" = 200 ]; }
wait_until ap_shown # fleetd writes its first fleet as the demo starts
# What the refusals must leave as it is: the AP's settings and radios, the templates.
snapshot() {
  view "do=ap&mac=$MAC"
  json_get '[d["ap"][0][k] for k in ("m_dev_name", "m_group_name", "m_RebootTime")] + [d["ap"][0]["m_timereboot"], [[{k: v[k] for k in ("m_ssid", "m_vlanid", "m_psk_keystr")} for v in r["m_vap"]] + [r["m_channel"]] for r in d["ap"][0]["m_radio"]]]'
  view do=templates
  json_get '[d["default"]["m_radio"][2], [r for t in d["list"] for r in t["WlanGroupList"]["data"]]]'
}
BEFORE=$(snapshot)
check "the views read as JSON" [ -n "$BEFORE" ]

# form | variables | the field refused
LONG=$(printf 'n%.0s' $(seq 64))
while IFS='|' read -r form vars field; do
  [ -n "$form" ] || continue
  args=(--data-urlencode "form=$form")
  IFS='&' read -ra pairs <<<"$vars"
  for p in "${pairs[@]}"; do args+=(--data-urlencode "$p"); done
  post "${args[@]}"
  check "$form $vars is refused beside $field: $BODY" \
    [ "$STATUS/$(json_get 'd["field"]')" = "400/$field" ]
  [ "$(json_get 'd["error"]')" != "Enter a value." ] || [ "${vars#*"$field"=}" = "$vars" ] ||
    [ -z "$(sed 's/&.*//' <<<"${vars#*"$field"=}")" ] || fail "$form $vars: the message says why"
done <<EOF
ap|m_dev_mac=00:1E:42:10:0C|m_dev_mac
ap|m_dev_mac=00-1E-42-10-0C-D0|m_dev_mac
ap|m_dev_mac=$MAC&m_dev_name=$LONG|m_dev_name
ap|m_dev_mac=$MAC&m_dev_name=|m_dev_name
ap|m_dev_mac=$MAC&m_timereboot.m_TimeReboot_Hour=24|m_timereboot.m_TimeReboot_Hour
ap|m_dev_mac=$MAC&m_timereboot.m_TimeReboot_Hour=-1|m_timereboot.m_TimeReboot_Hour
ap|m_dev_name=x|m_dev_mac
apradio|m_dev_mac=$MAC&m_ssid12=$(printf 's%.0s' $(seq 33))|m_ssid12
apradio|m_dev_mac=$MAC&m_vlanid00=4095|m_vlanid00
apradio|m_dev_mac=$MAC&m_vlanid00=0|m_vlanid00
apradio|m_dev_mac=$MAC&m_psk_keystr10=short|m_psk_keystr10
apradio|m_dev_mac=$MAC&m_psk_keystr10=$(printf 'k%.0s' $(seq 64))|m_psk_keystr10
defradio|m_ssid00=$(printf '\xc3\xa9%.0s' $(seq 17))|m_ssid00
defradio|m_channel2=197|m_channel2
deftimereboot|m_timereboot.m_TimeReboot_Hour=99|m_timereboot.m_TimeReboot_Hour
defiptv|m_iptv.m_vlanid=5000|m_iptv.m_vlanid
defweblogin|m_weblogin.m_username=$LONG|m_weblogin.m_username
template|action=add&m_wlan_group_name=$LONG|m_wlan_group_name
template|action=add&m_modelname=AP-1|m_wlan_group_name
template|action=add&m_wlan_group_name=Head office|m_wlan_group_name
template|action=modify&m_wlan_group_name=x|m_wlan_group_id
template|action=modify&m_wlan_group_id=1&m_vlanid03=4095|m_vlanid03
template|action=rename&m_wlan_group_id=1|action
bind|m_wlan_group_id=1&m_dev_mac=zz:1E:42:10:0C:D0|m_dev_mac
bind|m_dev_mac=$MAC|m_wlan_group_id
EOF
check "the refused requests stored nothing" [ "$(snapshot)" = "$BEFORE" ]

# Values at the edges are taken, and the views show them.
post --data-urlencode form=apradio --data-urlencode "m_dev_mac=$MAC" \
  --data-urlencode "m_ssid10=$(printf 's%.0s' $(seq 32))" --data-urlencode m_vlanid10=4094 \
  --data-urlencode "m_psk_keystr10=$(printf 'k%.0s' $(seq 63))"
check "an SSID of 32 bytes, VLAN 4094 and a key of 63 are taken" [ "$(json_get 'd["result"]')" = 0 ]
post --data-urlencode form=ap --data-urlencode "m_dev_mac=${MAC,,}" \
  --data-urlencode m_timereboot.m_TimeReboot_Hour=23 --data-urlencode "m_dev_name=edge ap"
check "hour 23 and a MAC in lower case are taken" [ "$(json_get 'd["result"]')" = 0 ]
view "do=ap&mac=$MAC"
check "the AP view shows them" [ "$(json_get '[d["ap"][0]["m_dev_name"], d["ap"][0]["m_timereboot"]["m_TimeReboot_Hour"], len(d["ap"][0]["m_radio"][1]["m_vap"][0]["m_ssid"]), d["ap"][0]["m_radio"][1]["m_vap"][0]["m_vlanid"]]')" = "['edge ap', '23', 32, '4094']" ]
finish
