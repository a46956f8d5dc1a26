// The fleet pages in headless Chromium, driven by playwright-core, over the fleet that the
// demo's stand-in daemon (fleetd) writes and keeps changing: only what stays put is compared
// (names, addresses, the shape of the tables), never the changing counters.
'use strict';

const { env, check, screenshot, visited, run, logInToOverview, navigate } = require('./flow_lib');

const { BASE, ADMIN_PASS } = env;

const cells = (page, selector) => page.$$eval(selector, (rows) => rows.map((r) => [...r.cells].map((c) => c.textContent)));

async function dashboardAndList(page) {
  await navigate(page, 'fleet', /fleet\.html/, 'fleet.html');
  // fleetd writes its first fleet as the demo starts; the page follows the store.
  await page.waitForSelector('#aps tbody tr td a');
  const online = await page.textContent('#aps-online');
  check('the dashboard counts APs online of total: ' + online, /^[01] \/ 1$/.test(online));
  check('the dashboard shows a station count', /^\d+$/.test(await page.textContent('#stations')));
  check('the dashboard shows the connection counts', /^\d+ \/ \d+$/.test(await page.textContent('#connections')));
  check('the dashboard names the controller\'s capacity', (await page.textContent('#capacity')) === '1');
  let rows = await cells(page, '#aps tbody tr');
  check('the list shows the managed AP: ' + JSON.stringify(rows[0]),
    rows.length === 1 && rows[0][0] === 'ap-01' && rows[0][1] === '192.168.10.20' && rows[0][2] === '00:1E:42:10:0C:D0');
  check('its online time is readable: ' + rows[0][6], /^(\d+Days? )?\d+:\d\d:\d\d$/.test(rows[0][6]));
  check('its radios are summarised: ' + rows[0][8], /2\.4 GHz ch \d+/.test(rows[0][8]));
  await screenshot(page, 'fleet');

  // A MAC filter that matches (typed in lower case), one that does not, one the page refuses.
  await page.fill('#filter-mac', '0c:d0');
  await Promise.all([page.waitForResponse((r) => r.url().includes('do=list') && r.url().includes('mac=0C%3AD0')), page.click('#apply-filter')]);
  await page.waitForFunction(() => document.querySelectorAll('#aps tbody tr td a').length === 1);
  check('a matching MAC filter keeps the AP', (await cells(page, '#aps tbody tr'))[0][0] === 'ap-01');
  await page.fill('#filter-mac', 'FF:FF');
  await Promise.all([page.waitForResponse((r) => r.url().includes('mac=FF%3AFF')), page.click('#apply-filter')]);
  await page.waitForSelector('#aps tbody td.empty');
  check('a MAC filter that matches nothing says so', (await page.textContent('#aps tbody td.empty')).includes('No managed AP matches'));
  check('the pager shows one empty page', (await page.textContent('#page-info')) === 'Page 1 of 1 (0 APs)');
  await page.fill('#filter-mac', 'zz');
  await page.click('#apply-filter');
  check('a MAC filter of other characters is refused beside the field',
    (await page.textContent('#filter-error')).includes('hexadecimal'));
  await page.fill('#filter-ip', '192.168.10.');
  await page.fill('#filter-mac', '');
  await Promise.all([page.waitForResponse((r) => r.url().includes('ip=192.168.10.')), page.click('#apply-filter')]);
  await page.waitForSelector('#aps tbody tr td a');
  // Paging: the controller manages one AP at most, so every fleet is one page; forward
  // stays shut.
  check('the pager shows the one page: ' + (await page.textContent('#page-info')), (await page.textContent('#page-info')) === 'Page 1 of 1 (1 AP)');
  check('paging forward is not offered past the last page', await page.isDisabled('#next-page'));
  check('paging back is not offered on the first page', await page.isDisabled('#prev-page'));
  await page.selectOption('#page-size', '25');
  check('another page size keeps the row', (await cells(page, '#aps tbody tr')).length === 1);
}

async function oneAp(page) {
  await Promise.all([page.waitForURL(/ap\.html\?mac=/), page.click('#aps tbody tr td a')]);
  visited.push('ap.html');
  await page.waitForSelector('#vaps tbody tr');
  const facts = await cells(page, '#device tr');
  const fact = (label) => (facts.find((r) => r[0] === label) || [])[1];
  check('the AP page names the device', fact('Name') === 'ap-01' && fact('MAC address') === '00:1E:42:10:0C:D0');
  check('the AP page shows the model', /^AP-[36]00$/.test(fact('Model')));
  const radios = await cells(page, '#radios tbody tr');
  check('the AP page lists its radios: ' + radios.length, radios.length >= 2 && radios[0][1] === '2.4 GHz');
  const vaps = await cells(page, '#vaps tbody tr');
  check('the AP page lists four networks per radio', vaps.length === 4 * radios.length);
  check('traffic is shown in readable units: ' + vaps[0][7], /^\d+(\.\d+)? (B|KB|MB|GB|TB)$/.test(vaps[0][7]));
  check('the first network is the company one', vaps[0][1] === 'Company');

  // The survey of the 2.4 GHz radio: the table and the chart over channels 1 to 13.
  await page.waitForSelector('#scan tbody tr');
  const networks = await cells(page, '#scan tbody tr');
  check('the survey lists the networks found: ' + networks.length, networks.length >= 6 && networks.length <= 15);
  check('names are shown without the stored quotes: ' + networks[0][1], networks.every((n) => !n[1].includes('"') && n[1] !== ''));
  check('signals are in dBm', networks.every((n) => /^-\d+ dBm$/.test(n[3])));
  const axis = await page.$$eval('#chart-axis span', (s) => s.map((x) => x.textContent));
  check('the chart covers channels 1 to 13', axis.join(',') === '1,2,3,4,5,6,7,8,9,10,11,12,13');
  const bars = await page.$$eval('#chart .bar span', (s) => s.reduce((n, x) => n + Number(x.textContent), 0));
  check('the chart counts every network listed', bars === networks.length);
  check('the AP\'s own channel is marked', (await page.$$('#chart .bar.current')).length >= 1);
  await screenshot(page, 'ap');

  // The 5 GHz radio.
  await Promise.all([page.waitForResponse((r) => r.url().includes('band=58')), page.selectOption('#scan-radio', '1')]);
  await page.waitForFunction(() => document.querySelectorAll('#chart-axis span').length === 13 && document.querySelector('#chart-axis span').textContent === '36');
  const axis5 = await page.$$eval('#chart-axis span', (s) => s.map((x) => x.textContent));
  check('the 5 GHz chart covers 36 to 64 and 149 to 165', axis5.join(',') === '36,40,44,48,52,56,60,64,149,153,157,161,165');
  await screenshot(page, 'ap-survey-5g');
}

async function templates(page) {
  await navigate(page, 'templates', /templates\.html/, 'templates.html');
  await page.waitForSelector('#templates tbody tr button');
  const list = await cells(page, '#templates tbody tr');
  check('the templates are listed: ' + JSON.stringify(list), list.length === 2 && list[0][1] === 'Head office' && list[1][2] === 'AP-300');
  check('the default template shows its radios', (await cells(page, '#default tbody tr')).length === 3);
  await page.click('#template-0');
  await page.waitForSelector('#bound tbody tr');
  const bound = await cells(page, '#bound tbody tr');
  check('the first template shows its bound device: ' + JSON.stringify(bound), bound.length === 1 && bound[0][0] === 'ap-01');
  const candidates = await cells(page, '#candidates tbody tr');
  check('the AP, in no group, is a candidate to bind: ' + JSON.stringify(candidates), candidates.length === 1 && candidates[0][1] === '00:1E:42:10:0C:D0');
  await screenshot(page, 'templates');
  await page.click('#template-1');
  await page.waitForFunction(() => document.getElementById('detail-title').textContent.includes('Warehouse'));
  await page.waitForSelector('#bound tbody td.empty');
  check('the second template has no bound device', (await page.textContent('#bound tbody td.empty')).includes('No device'));
}

async function wlan(page) {
  await navigate(page, 'wlan', /wlan\.html/, 'wlan.html');
  await page.waitForSelector('#vaps tbody tr');
  const radios = await cells(page, '#radios tbody tr');
  check('the wireless overview lists the device\'s radios: ' + radios.length, radios.length >= 1 && radios[0][1] === '2.4 GHz');
  const vaps = await cells(page, '#vaps tbody tr');
  check('the first network is the factory one: ' + vaps[0][1], vaps[0][1] === 'Router-2.4G');
  const close = await cells(page, '#timeclose tr');
  check('the timed switch-off is shown', close[0][0] === 'Switch-off');
  await screenshot(page, 'wlan');
}

run(async (page) => {
  await logInToOverview(page, ADMIN_PASS);
  await dashboardAndList(page);
  await oneAp(page);
  await templates(page);
  await wlan(page);
});
