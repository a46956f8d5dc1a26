// The template editor and an AP's settings in headless Chromium, over the fleet the demo's
// fleetd keeps rewriting: a template is added, the AP bound to it from the candidates, its
// name and reboot schedule changed, and each change is read back from the fleet views (the
// list, the AP page, the template page) after fleetd has written another round.
'use strict';

const { env, check, logIn, submit, screenshot, visited, run } = require('./flow_lib');

const { BASE, ADMIN_PASS } = env;
const MAC = '00:1E:42:10:0C:D0'; // the AP fleetd registers
const cells = (page, selector) => page.$$eval(selector, (rows) => rows.map((r) => [...r.cells].map((c) => c.textContent)));

async function addTemplateAndBind(page) {
  await page.goto(BASE + '/templates.html');
  visited.push('templates.html');
  await page.waitForSelector('#template-0');
  const before = (await cells(page, '#templates tbody tr')).length;

  // Refused by the program before the form: a name longer than the record keeps.
  await page.fill('#template-add-name', 'x'.repeat(64));
  let text = await submit(page, () => page.click('#template-add-save'), 'templates.cgi');
  check('an over-long template name is refused: ' + text, text.includes('at most 63 characters'));
  check('the refusal stands beside the name', (await page.textContent('#template-add .field-error')).includes('63'));
  await page.waitForFunction((n) => document.querySelectorAll('#templates tbody tr').length === n, before);

  await page.fill('#template-add-name', 'Lab');
  await page.fill('#template-add-model', 'AP-600');
  text = await submit(page, () => page.click('#template-add-save'), 'templates.cgi');
  check('the template is added: ' + text, text.includes('added'));
  await page.waitForFunction((n) => document.querySelectorAll('#templates tbody tr').length === n + 1, before);
  const rows = await cells(page, '#templates tbody tr');
  check('the list shows the new template: ' + JSON.stringify(rows), rows.some((r) => r[1] === 'Lab' && r[2] === 'AP-600'));

  await page.click('#templates tr:has-text("Lab") button:has-text("Devices")');
  await page.waitForSelector('#bind-' + CSS_escape(MAC));
  check('the AP is a candidate of the new template', (await cells(page, '#candidates tbody tr'))[0][1] === MAC);
  text = await submit(page, () => page.click('#bind-' + CSS_escape(MAC)), 'templates.cgi');
  check('the AP is bound: ' + text, text.includes('bound'));
  await page.waitForSelector('#bound tbody a');
  check('the template shows the AP as bound', (await cells(page, '#bound tbody tr'))[0][1] === MAC);
  check('no candidate is left', (await page.textContent('#candidates tbody')).includes('No device outside a group'));
  await page.click('#template-editor summary');
  await screenshot(page, 'templates-editor');
}

// Playwright's CSS selectors need the colons of an id escaped.
function CSS_escape(id) {
  return id.replace(/:/g, '\\:');
}

async function changeTheAp(page) {
  await page.click('#bound tbody a');
  await page.waitForURL(/ap\.html/);
  visited.push('ap.html');
  await page.waitForSelector('#ap-settings-m_dev_name');
  check('the AP is in the template\'s group', (await page.inputValue('#ap-settings-m_group_name')) === 'Lab');

  // Refused: a reboot hour the device does not have; nothing is stored.
  await page.fill('#ap-settings-m_dev_name', 'not-stored');
  await page.fill('#ap-settings-m_timereboot-m_TimeReboot_Hour', '24');
  let text = await submit(page, () => page.click('#ap-settings-save'), 'templates.cgi');
  check('a reboot hour of 24 is refused: ' + text, text.includes('from 0 to 23'));
  check('the refusal stands beside the hour',
    (await page.getAttribute('#ap-settings .field-error', 'data-for')) === 'm_timereboot.m_TimeReboot_Hour');

  await page.fill('#ap-settings-m_dev_name', 'lab-ap-1');
  await page.fill('#ap-settings-m_timereboot-m_TimeReboot_Hour', '5');
  await page.check('#ap-settings-m_timereboot-m_TimeRebootEnable');
  await page.fill('#ap-settings-m_RebootTime', '05:15');
  text = await submit(page, () => page.click('#ap-settings-save'), 'templates.cgi');
  check('the AP\'s settings are saved: ' + text, text.includes('saved'));
  await page.waitForFunction(() => document.getElementById('title').textContent === 'Access point lab-ap-1');
  const facts = Object.fromEntries(await cells(page, '#device tr'));
  check('the AP page shows the reboot schedule: ' + facts['Timed reboot'], facts['Timed reboot'] === 'on, at 05:15');
  check('the hour is stored', (await page.inputValue('#ap-settings-m_timereboot-m_TimeReboot_Hour')) === '5');
  await screenshot(page, 'ap-settings');
}

// fleetd writes a round every few seconds: once the list's online time has moved on, a round
// was written after the save, and the name must still be the administrator's.
async function seenAfterARound(page) {
  await page.goto(BASE + '/fleet.html');
  visited.push('fleet.html');
  await page.waitForSelector('#aps tbody tr td a');
  const first = (await cells(page, '#aps tbody tr'))[0][6];
  await page.waitForFunction((t) => {
    const row = document.querySelector('#aps tbody tr');
    return row && row.cells[6] && row.cells[6].textContent !== t;
  }, first, { timeout: 60000 });
  const row = (await cells(page, '#aps tbody tr'))[0];
  check('after another fleetd round the list names the AP lab-ap-1: ' + JSON.stringify(row), row[0] === 'lab-ap-1');

  await page.goto(BASE + '/ap.html?mac=' + encodeURIComponent(MAC));
  await page.waitForFunction(() => document.getElementById('title').textContent === 'Access point lab-ap-1');
  const facts = Object.fromEntries(await cells(page, '#device tr'));
  check('the AP page keeps the reboot schedule', facts['Timed reboot'] === 'on, at 05:15');

  await page.goto(BASE + '/templates.html');
  await page.waitForSelector('#templates tr:has-text("Lab")');
  await page.click('#templates tr:has-text("Lab") button:has-text("Devices")');
  await page.waitForSelector('#bound tbody a');
  check('the template page names the bound AP lab-ap-1', (await page.textContent('#bound tbody a')) === 'lab-ap-1');
}

run(async (page) => {
  await logIn(page, ADMIN_PASS);
  await page.waitForURL(/overview\.html|status\.html/);
  await addTemplateAndBind(page);
  await changeTheAp(page);
  await seenAfterARound(page);
});
