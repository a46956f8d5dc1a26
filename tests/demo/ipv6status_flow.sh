#!/usr/bin/env bash
# The status page's IPv6 view through status.cgi and the real web server, against the
# kernel's own account by `ip -j -6` (the demo's /proc is the machine's): the addresses of
# an interface, every route, the default gateway; the name servers of a resolver file the
# test writes.
source "$(dirname "$0")/lib.sh"
command -v ip >/dev/null || skip "ip (iproute2) is not installed"
[ -r /proc/net/if_inet6 ] || skip "the kernel has no IPv6"

start_demo
log_in
mkdir -p "$DEMO_ROOT/tmp"
printf '%s\n' 'search lan' 'nameserver 192.168.1.1' 'nameserver fd00::53' \
  'nameserver 2001:db8::35' 'nameserver 2001:db8::99' >"$DEMO_ROOT/tmp/resolv.conf.auto"

# The interface of the default IPv6 route when there is one, else the loopback.
IF=$(ip -j -6 route show default | python3 -c 'import json,sys; r=json.load(sys.stdin); print(r[0]["dev"] if r else "lo")')
kernel() {
  { ip -j -6 addr show dev "$IF"; echo; ip -j -6 route show table all; } | python3 -c '
import json, sys
addrs, routes = [json.loads(l) for l in sys.stdin.read().split("\n") if l.strip()][:2]
a = sorted((i["local"], i["prefixlen"], i["scope"]) for d in addrs for i in d["addr_info"])
def dst(r):
    d = "::/0" if r["dst"] == "default" else r["dst"]
    return d if "/" in d else d + "/128"
rs = sorted((dst(r), r.get("dev", ""), r.get("gateway", "::"), r.get("metric", 0)) for r in routes)
gw = [r["gateway"] for r in routes if r["dst"] == "default" and r.get("dev") == sys.argv[1] and "gateway" in r]
print(json.dumps([a, rs, gw[-1] if gw else ""]))' "$IF"
}
view() {
  http GET "/cgi-bin/status.cgi?stork=$TOKEN&view=ipv6&if=$IF" -b "$JAR"
  python3 -c '
import json, sys
d = json.loads(sys.argv[1])
a = sorted((i["address"], int(i["prefix"]), i["scope"]) for i in d["addresses"])
rs = sorted(("%s/%s" % (r["destination"], r["prefix"]), r["device"], r["next_hop"], int(r["metric"])) for r in d["routes"])
print(json.dumps([a, rs, d["gateway"]]))' "$BODY"
}
# The kernel's state is read before and after the view: a change between them is retried.
for _ in 1 2 3; do
  before=$(kernel) seen=$(view) after=$(kernel)
  [ "$before" = "$after" ] && break
done
check "the addresses, routes and gateway of $IF are the kernel's: $seen vs $before" \
  [ "${seen:-none}" = "$before" ]
http GET "/cgi-bin/status.cgi?stork=$TOKEN&view=ipv6&if=$IF" -b "$JAR"
check "the name servers are the file's first two IPv6 ones" \
  [ "$(json_get 'd["dns"]')" = "['fd00::53', '2001:db8::35']" ]
for bad in 'if=' 'if=..%2Fx' 'if=0123456789abcdef'; do
  http GET "/cgi-bin/status.cgi?stork=$TOKEN&view=ipv6&$bad" -b "$JAR"
  check "an interface name $bad is refused" [ "$STATUS" = 400 ]
done
http GET "/cgi-bin/status.cgi?stork=$TOKEN&view=ipv6&if=nosuch0" -b "$JAR"
check "an interface without addresses has none and no gateway" \
  [ "$(json_get '[d["addresses"], d["gateway"]]')" = "[[], '']" ]
finish
