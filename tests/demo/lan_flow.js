// The LAN and WAN pages in headless Chromium. PHASE=change makes the changes (LAN address,
// a port VLAN, a static lease added and another removed, a WAN line) and the refusals;
// PHASE=restart runs against the restarted console and sees every change again.
'use strict';

const { env, check, submit, screenshot, visited, run, logInToOverview, navigate } = require('./flow_lib');

const { BASE, ADMIN_PASS, PHASE } = env;

async function openLan(page) {
  await page.goto(BASE + '/lan.html');
  await page.waitForFunction(() => document.getElementById('ipaddr').value !== '');
  await page.waitForSelector('.lease-list[data-list="dev"] tbody tr');
}

async function openWan(page) {
  await page.goto(BASE + '/wan.html');
  await page.waitForSelector('#lines tbody tr[data-line="3"]');
}

// The MACs in the device's static-lease table, sorted, as JSON.
async function leaseMacs(page) {
  return JSON.stringify(await page.$$eval('.lease-list[data-list="dev"] tbody tr[data-mac]', (rows) => rows.map((r) => r.dataset.mac).sort()));
}

const lease = (box) => '.lease-list[data-list="' + box + '"] ';

async function addLease(page, mac, ip, mark) {
  await page.fill(lease('dev') + '[name="mac"]', mac);
  await page.fill(lease('dev') + '[name="ip"]', ip);
  await page.fill(lease('dev') + '[name="mark"]', mark);
  return submit(page, () => page.click(lease('dev') + '.lease-submit'), 'lan.cgi');
}

// What the pages must show after the changes, on a reload and after the restart.
async function expectChanges(page, when) {
  await openLan(page);
  check(when + ': the LAN address is 192.168.1.2', (await page.inputValue('#ipaddr')) === '192.168.1.2');
  check(when + ': port 2 is in VLAN 20', (await page.inputValue('#vlan1')) === '20');
  check(when + ': the static leases are the printer and the phone', (await leaseMacs(page)) === '["00:11:22:33:44:55","00:11:22:33:44:77"]');
  await openWan(page);
  const row = await page.$$eval('#lines tbody tr[data-line="1"] td', (cells) => cells.map((c) => c.textContent));
  check(when + ': WAN 2 is a PPPoE line of "alice" in use: ' + row.join('|'), row[1] === 'in use' && row[2] === 'PPPoE' && row[5] === 'alice');
}

// A refused value: its message beside its field, the page's message, nothing stored.
async function expectRefusal(page, form, field, value, words, shot) {
  const input = form + ' [name="' + field + '"]';
  const before = await page.inputValue(input);
  await page.fill(input, value);
  const text = await submit(page, () => page.click(form + ' button[type="submit"]'), 'lan.cgi');
  const beside = await page.$eval(input, (e) => (e.nextElementSibling && e.nextElementSibling.className === 'field-error' ? e.nextElementSibling.textContent : ''));
  check('"' + value + '" for ' + field + ' is refused beside the field: ' + beside, beside.includes(words) && text.startsWith('Not saved'));
  if (shot) await screenshot(page, shot);
  await page.fill(input, before);
}

async function refusals(page) {
  await openLan(page);
  await expectRefusal(page, '#lan-devdhcp', 'dhcp_server_start_ipaddr', '10.9.9.9', 'outside the LAN subnet');
  await expectRefusal(page, '#lan-devdhcp', 'dhcp_server_end_ipaddr', '192.168.1.50', 'end at or after its start');
  await expectRefusal(page, '#lan-devdhcp', 'dhcp_server_leasetime', '0', 'from 1 to', 'lan-refusal-lease-time');
  await expectRefusal(page, '#lan-vlans', 'm_lan_port_vlan_id2', '4095', 'from 1 to 4094');
  await expectRefusal(page, '#lan-vlans', 'm_lan_port_vlan_id0', '0', 'from 1 to 4094');
  await page.fill(lease('dev') + '[name="ip"]', '192.168.1.90');
  await expectRefusal(page, lease('dev') + '.lease-form', 'mac', '00:11:22:33:44', 'MAC address');
  await page.fill(lease('dev') + '[name="mac"]', '00:11:22:33:44:99');
  await expectRefusal(page, lease('dev') + '.lease-form', 'ip', '192.168.7.9', 'outside the LAN subnet', 'lan-refusal');
  // Nothing of the refused values was stored.
  await openLan(page);
  const start = await page.inputValue('#dev-start');
  const lease0 = await page.inputValue('#dev-lease');
  check('the refused pool and lease time were not stored: ' + start + ' ' + lease0, start === '192.168.1.100' && lease0 === '86400');
  check('the refused VLAN ids were not stored', (await page.inputValue('#vlan2')) === '1' && (await page.inputValue('#vlan0')) === '1');
  check('the refused leases were not stored', !(await leaseMacs(page)).includes('44:99'));
}

async function change(page) {
  await logInToOverview(page, ADMIN_PASS);
  await navigate(page, 'lan', /lan\.html/);
  await openLan(page);
  visited.push('lan.html');

  await page.fill('#ipaddr', '192.168.1.2');
  let text = await submit(page, () => page.click('#save-base'), 'lan.cgi');
  check('saving the LAN address says so: ' + text, text === 'The LAN address is saved.');
  await page.fill('#vlan1', '20');
  text = await submit(page, () => page.click('#save-vlans'), 'lan.cgi');
  // The demo machine has no switch tool: the ids are stored, the switch cannot take them.
  check('saving the port VLANs says so: ' + text, text === 'The port VLAN ids are saved, but the switch did not take them.');

  for (const [mac, ip, mark] of [['00:11:22:33:44:55', '192.168.1.50', 'printer'], ['00:11:22:33:44:66', '192.168.1.51', 'tv'], ['00:11:22:33:44:77', '192.168.1.52', 'phone']]) {
    text = await addLease(page, mac, ip, mark);
    check('adding the lease of ' + mac + ' says so: ' + text, text.includes('is added'));
  }
  await page.waitForSelector(lease('dev') + 'tr[data-mac="00:11:22:33:44:77"]');
  text = await submit(page, () => page.click(lease('dev') + 'tr[data-mac="00:11:22:33:44:66"] button.delete'), 'lan.cgi');
  check('deleting a lease says so: ' + text, text.includes('is deleted'));
  await page.waitForFunction(() => !document.querySelector('tr[data-mac="00:11:22:33:44:66"]'));
  await screenshot(page, 'lan');

  await refusals(page);

  await navigate(page, 'wan', /wan\.html/);
  await openWan(page);
  visited.push('wan.html');
  await page.click('#lines tr[data-line="1"] button.edit');
  await page.check('#line-enable');
  await page.selectOption('#conn_type', '2');
  check('a PPPoE line shows only its own fields', !(await page.isVisible('#wan-ipaddr')) && (await page.isVisible('#ppp_username')));
  await page.fill('#ppp_username', '');
  await page.fill('#ppp_userpwd', 'secret');
  text = await submit(page, () => page.click('#save-line'), 'wan.cgi');
  const beside = await page.$eval('#ppp_username + .field-error', (e) => e.textContent).catch(() => '');
  check('a PPPoE line without a user name is refused beside the field: ' + beside, beside === 'Enter a value.');
  await page.fill('#ppp_username', 'alice');
  text = await submit(page, () => page.click('#save-line'), 'wan.cgi');
  check('saving WAN line 2 says so: ' + text, text === 'WAN line 2 is saved.');
  await screenshot(page, 'wan');

  await expectChanges(page, 'after a reload');
}

run(async (page) => {
  if (PHASE === 'restart') {
    await logInToOverview(page, ADMIN_PASS);
    await expectChanges(page, 'after a restart');
    await screenshot(page, 'wan-after-restart');
  } else {
    await change(page);
  }
});
