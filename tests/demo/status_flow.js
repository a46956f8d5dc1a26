// The status page: the processor chart takes new samples, the lease table lists the demo's
// lease file (tools/demo-data/udhcpd.leases) in the device's order, the ports, addresses and
// ARP tables are filled from the host's kernel.
'use strict';

const { env, check, screenshot, run, logInToOverview, navigate } = require('./flow_lib');

// The demo's leases, as the device orders them: by the address word read little-endian,
// that is by last octet first.
const EXPECTED_LEASES = [
  ['', 'B8:27:EB:00:12:34', '192.168.1.7'],
  ['printer', '00:1B:A9:44:10:02', '192.168.2.10'],
  ['office-pc', '3C:52:82:1A:07:21', '192.168.1.20'],
  ['laptop', 'F0:18:98:2E:4D:61', '192.168.1.33'],
  ['phone-anna', 'A4:83:E7:5C:11:9B', '192.168.1.105'],
];

run(async (page) => {
  await logInToOverview(page, env.ADMIN_PASS);
  await navigate(page, 'status', /status\.html/, 'status.html');

  // The chart: a first sample, then more arriving by themselves.
  await page.waitForFunction(() => Number(document.getElementById('cpu-chart').dataset.samples) >= 1);
  const first = Number(await page.getAttribute('#cpu-chart', 'data-samples'));
  await page.waitForFunction((n) => Number(document.getElementById('cpu-chart').dataset.samples) >= n + 2, first);
  const later = Number(await page.getAttribute('#cpu-chart', 'data-samples'));
  check('the load chart updates by itself (' + first + ' -> ' + later + ' samples)', later >= first + 2);
  const legend = await page.textContent('#cpu-legend');
  check('the legend shows the load of every core: ' + legend, /All cores: \d+ %/.test(legend) && /Core 4: \d+ %/.test(legend));

  const system = await page.textContent('#system');
  check('uptime, memory and connections are shown: ' + system.replace(/\s+/g, ' '),
    /Uptime\s*\d/.test(system) && /\d+ MB, \d+ % in use/.test(system) && /Connections/.test(system));

  await page.waitForSelector('#leases tbody tr td');
  const leases = await page.$$eval('#leases tbody tr', (trs) => trs.map((tr) => [...tr.cells].map((c) => c.textContent)));
  const shown = leases.map((r) => [r[0] === '—' ? '' : r[0], r[1], r[2]]);
  check('the lease table lists the demo leases in the device order: ' + JSON.stringify(shown),
    JSON.stringify(shown) === JSON.stringify(EXPECTED_LEASES));
  check('each lease shows its time left: ' + leases.map((r) => r[3]).join(', '),
    leases.every((r) => /^(\d+ d )?\d\d:\d\d:\d\d$/.test(r[3])));
  const phone = leases.find((r) => r[0] === 'phone-anna');
  check('the time left is the lease file\'s (3590 s = 00:59:50)', phone && phone[3] === '00:59:50');

  const ports = await page.$$eval('#ports tbody tr', (trs) => trs.map((tr) => [...tr.cells].map((c) => c.textContent)));
  check('the host\'s interfaces are listed as ports: ' + ports.map((p) => p[1]).join(', '),
    ports.some((p) => p[1] === 'lo'));
  check('every port shows link and traffic through the rate format',
    ports.every((p) => (p[2] === 'up' || p[2] === 'down') && /bps$/.test(p[5]) && /bps$/.test(p[6])));
  const addresses = await page.$$eval('#addresses tbody tr', (trs) => trs.map((tr) => [...tr.cells].map((c) => c.textContent)));
  check('the loopback address is shown', addresses.some((a) => a[0] === 'lo' && a[1] === '127.0.0.1' && a[2] === '255.0.0.0'));
  check('the gateway line is filled', (await page.textContent('#gateway')) !== '');
  check('the ARP table is shown', (await page.$$('#arp tbody tr')).length >= 1);
  // The IPv6 card: the LAN interface (the demo machine has no br-lan) and the kernel's routes.
  check('the IPv6 card names the LAN interface', (await page.textContent('#ipv6-if')) === 'br-lan');
  const routes = await page.$$eval('#ipv6-routes tbody tr', (trs) => trs.map((tr) => [...tr.cells].map((c) => c.textContent)));
  check('the IPv6 routes are listed as destination/prefix: ' + routes.map((r) => r[0]).join(', '),
    routes.length >= 1 && routes.every((r) => r[0] === 'none' || /^[0-9a-f:]+\/\d+$/.test(r[0])));
  check('the IPv6 gateway and name servers are filled', (await page.textContent('#ipv6-gateway')) !== '' &&
    (await page.textContent('#ipv6-dns')) !== '');
  await screenshot(page, 'status');
});
