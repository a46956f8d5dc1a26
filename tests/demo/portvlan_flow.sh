#!/usr/bin/env bash
# The LAN page's port VLANs through lan.cgi and the real web server: once stored they are
# applied to the switch, which a recording swconfig stands in for; a refused id runs nothing.
source "$(dirname "$0")/lib.sh"

RUNS=$DEMO_ROOT.swconfig
stand_in swconfig <<EOF
#!/bin/sh
echo "\$*" >>'$RUNS'
[ ! -e '$RUNS.fail' ]
EOF
start_demo
# A board of four LAN ports on switch ports 1 to 4, the fourth without VLAN support.
set_ports=()
for i in 0 1 2 3; do
  set_ports+=("lan_vlan.port[$i].m_haveport=1" "lan_vlan.port[$i].m_port_id=$((i + 1))"
    "lan_vlan.port[$i].m_supportvlan=$((i < 3))")
done
wmconfig set lan "${set_ports[@]}"

log_in
vlans() { http POST "/cgi-bin/lan.cgi?stork=$TOKEN" -b "$JAR" --data form=vlans "$@"; }

vlans --data m_lan_port_vlan_id0=10 --data m_lan_port_vlan_id1=20 \
  --data m_lan_port_vlan_id2=10 --data m_lan_port_vlan_id3=30
check "the port VLANs are stored and applied: $BODY" \
  [ "$(json_get '[d["result"], d["applied"]]')" = "[0, 0]" ]
check "the switch sets each port's PVID, each VLAN's ports together, then applies" \
  [ "$(cat "$RUNS")" = "dev switch0 port 1 set pvid 10
dev switch0 port 2 set pvid 20
dev switch0 port 3 set pvid 10
dev switch0 vlan 10 set ports 1 3 0t
dev switch0 vlan 20 set ports 2 0t
dev switch0 set apply" ]

: >"$RUNS"
for bad in 0 4095 x; do
  vlans --data m_lan_port_vlan_id0=$bad
  check "VLAN id $bad is refused beside its port" \
    [ "$STATUS/$(json_get 'd["field"]')" = 400/m_lan_port_vlan_id0 ]
done
check "a refused id runs nothing on the switch" [ ! -s "$RUNS" ]
http GET "/cgi-bin/lan.cgi?stork=$TOKEN&view=vlans" -b "$JAR"
check "and stores nothing" [ "$(json_get 'd["ports"]')" = "['10', '20', '10', '30']" ]

touch "$RUNS.fail"
vlans --data m_lan_port_vlan_id1=10
check "a switch that fails is reported: $BODY" [ "$(json_get '[d["result"], d["applied"]]')" = "[0, -1]" ]
finish
