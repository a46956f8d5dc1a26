// The client pages (clients.html, acl.html) in headless Chromium against the demo console.
// The station tables the pages show are written into the demo's store first, through the
// store's own tool, as the radios' drivers and the managed AP would report them.
'use strict';

const fs = require('fs');
const path = require('path');
const { execFileSync } = require('child_process');
const { env, check, submit, screenshot, visited, run, logInToOverview, navigate } = require('./flow_lib');

const BUILD = path.dirname(env.ARTIFACTS);

function wmconfig(...args) {
  execFileSync(path.join(BUILD, 'wmconfig'), args, {
    env: { ...process.env, WEBMGMT_ROOT: env.DEMO_ROOT, LD_LIBRARY_PATH: BUILD + ':' + path.join(BUILD, 'store') },
  });
}

// A MAC member is six raw bytes; these MACs hold no zero byte and nothing above 0x7f.
const raw = (mac) => mac.split(':').map((h) => String.fromCharCode(parseInt(h, 16))).join('');
const LAPTOP = '02:5A:11:22:33:44';
const PRINTER = '02:5A:11:22:33:55';
const AP = '0A:0B:0C:0D:0E:0F';
const PHONE = '02:5A:11:22:33:66';

function seedStations() {
  const sta = (table, i, mac, ip, signal, time) => [
    `${table}.m_sta[${i}].m_mac.mac=${raw(mac)}`, `${table}.m_sta[${i}].m_ip=${ip}`,
    `${table}.m_sta[${i}].m_signal=${signal}`, `${table}.m_sta[${i}].m_time=${time}`,
    `${table}.m_sta[${i}].m_radioid=1`, `${table}.m_sta[${i}].m_tx_rate=144`, `${table}.m_sta[${i}].m_rx_rate=72`,
  ];
  wmconfig('set', '--flash', 'ap_users', 'count=1', `m_ap[0].m_ap_mac.mac=${raw(AP)}`,
    ...sta('m_local', 0, LAPTOP, '192.168.1.20', -41, 3725),
    ...sta('m_local', 1, PRINTER, '192.168.1.21', -60, 86461),
    ...sta('m_ap[0]', 0, PHONE, '192.168.1.30', -55, 0));
  wmconfig('set', '--flash', 'manage_ap', 'count=1', 'm_ap[0].m_id=1', `m_ap[0].m_dev_mac.mac=${raw(AP)}`,
    'm_ap[0].m_conf.m_radio[0].m_radio_type=2');
  // The DHCP server's leases (the address-server layout) name the laptop.
  const lease = Buffer.alloc(8 + 36);
  lease.writeUInt32BE(3600, 8);
  lease.writeUInt32BE(0xc0a80114, 12);
  Buffer.from(LAPTOP.split(':').map((h) => parseInt(h, 16))).copy(lease, 16);
  lease.write('alice-laptop', 22, 'latin1');
  fs.writeFileSync(path.join(env.DEMO_ROOT, 'var/udhcpd.leases'), lease);
}

const rowTexts = (page, table) => page.$$eval('#' + table + ' tbody tr', (rows) => rows.map((r) => r.textContent));
const rowWith = async (page, table, text) => (await rowTexts(page, table)).find((t) => t.includes(text)) || '';
const fieldError = (page, form, field) => page.textContent('#' + form + ' .field-error[data-for="' + field + '"]');

async function clientsPage(page) {
  await navigate(page, 'clients', /clients\.html/);
  await page.waitForSelector('#stations tbody tr');
  visited.push('clients.html');

  await page.fill('#g-m_name', 'staff');
  let text = await submit(page, () => page.click('#group-submit'), 'clients.cgi');
  check('adding a group says so: ' + text, text.includes('Group "staff" added'));
  check('the group is listed', (await rowWith(page, 'groups', 'staff')) !== '');

  // What would break the device is refused beside its field, and nothing is stored.
  await page.fill('#c-m_name', 'alice');
  await page.fill('#c-m_haddr', '02:5A:11:22:33');
  text = await submit(page, () => page.click('#client-submit'), 'clients.cgi');
  check('a malformed MAC is refused: ' + text, text.includes('six pairs of hex digits'));
  check('the refusal stands beside the MAC', (await fieldError(page, 'client-form', 'm_haddr')).includes('six pairs'));
  await page.fill('#c-m_haddr', LAPTOP);
  await page.fill('#c-m_name', 'a-name-far-too-long-for-it');
  text = await submit(page, () => page.click('#client-submit'), 'clients.cgi');
  check('an over-long name is refused: ' + text, text.includes('At most 20 characters'));
  check('the refusal stands beside the name', (await fieldError(page, 'client-form', 'm_name')).includes('At most 20'));
  check('nothing was stored', (await page.textContent('#client-count')) === '(0 of 300)');

  await page.fill('#c-m_name', 'alice');
  await page.selectOption('#c-m_group_id', { label: 'staff' });
  await page.fill('#c-m_mark', 'desk');
  text = await submit(page, () => page.click('#client-submit'), 'clients.cgi');
  check('adding an account says so: ' + text, text.includes('Account "alice" added'));
  check('the account shows its group', (await rowWith(page, 'clients', 'alice')).includes('staff'));

  text = await submit(page, () => page.click('#clients tr[data-name="alice"] button.blacklist'), 'clients.cgi');
  check('blacklisting says so: ' + text, text.includes('is on the blacklist'));
  check('the blacklist lists alice', (await rowWith(page, 'black', 'alice')).includes(LAPTOP));
  const procMac = fs.readFileSync(path.join(env.DEMO_ROOT, 'var/proc_mac'), 'latin1');
  check('/proc/mac holds the unbound line: ' + JSON.stringify(procMac), procMac === LAPTOP + '-----------\n');

  const laptop = await rowWith(page, 'stations', LAPTOP);
  check('the laptop is shown with its host name, online time and account mark: ' + laptop,
    laptop.includes('alice-laptop') && laptop.includes('1:02:05') && laptop.includes('desk'));
  check('the AP station is listed', (await rowWith(page, 'apstations', PHONE)).includes('0:00:30'));

  await page.click('#stations tr[data-mac="' + PRINTER + '"] button.mark');
  check('the mark form takes the station', (await page.inputValue('#m-mac')) === PRINTER);
  await page.fill('#m-mark', 'hall printer');
  text = await submit(page, () => page.click('#mark-save'), 'clients.cgi');
  check('marking says so: ' + text, text.includes('marked'));
  check('the station shows its mark', (await rowWith(page, 'stations', PRINTER)).includes('hall printer'));
  await screenshot(page, 'clients');

  await page.reload();
  await page.waitForSelector('#clients tbody tr[data-name]');
  check('after a reload: the group', (await rowWith(page, 'groups', 'staff')) !== '');
  check('after a reload: the blacklisted account', (await rowWith(page, 'clients', 'alice')).includes('✓'));
  check('after a reload: the blacklist', (await rowWith(page, 'black', 'alice')) !== '');
  check('after a reload: the station mark', (await rowWith(page, 'stations', PRINTER)).includes('hall printer'));
}

async function aclPage(page) {
  await navigate(page, 'acl', /acl\.html/);
  await page.waitForSelector('#radio-list tbody tr');
  visited.push('acl.html');

  await page.selectOption('#mode', '1');
  let text = await submit(page, () => page.click('#mode-save'), 'clients.cgi');
  check('the access mode is applied: ' + text, text.includes('Allow only'));

  await page.selectOption('#radio', '1');
  await page.waitForSelector('#radio-list tbody tr');
  await page.fill('#r-name', 'laptop');
  await page.fill('#r-mac', 'not-a-mac');
  text = await submit(page, () => page.click('#radio-submit'), 'clients.cgi');
  check('a malformed MAC is refused on the access list', (await fieldError(page, 'radio-form', 'mac')).includes('six pairs'));
  await page.fill('#r-mac', LAPTOP);
  await page.fill('#r-mark', 'alice');
  text = await submit(page, () => page.click('#radio-submit'), 'clients.cgi');
  check('adding an entry says so: ' + text, text.includes('"laptop" added'));
  check('the radio lists it', (await rowWith(page, 'radio-list', 'laptop')).includes(LAPTOP));
  await page.fill('#r-name', 'laptop');
  await page.fill('#r-mac', PRINTER);
  text = await submit(page, () => page.click('#radio-submit'), 'clients.cgi');
  check('a second entry of the same name is refused: ' + text, text.includes('already exists'));

  await page.fill('#x-name', 'everywhere');
  await page.fill('#x-mac', PHONE);
  text = await submit(page, () => page.click('#global-submit'), 'clients.cgi');
  check('adding to the global list says so: ' + text, text.includes('global list'));
  await screenshot(page, 'acl');

  await page.reload();
  await page.waitForSelector('#global-list tbody tr');
  await page.selectOption('#radio', '1');
  await page.waitForFunction(() => document.querySelector('#radio-list tr[data-name="laptop"]'));
  check('after a reload: the radio entry', (await rowWith(page, 'radio-list', 'laptop')) !== '');
  check('after a reload: the global entry', (await rowWith(page, 'global-list', 'everywhere')).includes(PHONE));
  check('after a reload: the mode', (await page.textContent('#mode-now')).includes('Allow only'));
}

run(async (page) => {
  seedStations();
  await logInToOverview(page, env.ADMIN_PASS);
  await clientsPage(page);
  await aclPage(page);
});
