// The demo console's pages in headless Chromium (Debian's), driven by playwright-core.
// Exit status: 0 passed, 1 failed.
'use strict';

const path = require('path');
const { env, check, message, submit, logIn, visited, run, logInToOverview, navigate } = require('./flow_lib');

const { BASE, ADMIN_PASS, ARTIFACTS } = env;
const ADMIN_USER = env.ADMIN_USER;

async function fillRule(page, rule) {
  for (const [name, value] of Object.entries(rule)) {
    const selector = '#f-' + name;
    if ((await page.$eval(selector, (e) => e.tagName)) === 'SELECT') await page.selectOption(selector, value);
    else await page.fill(selector, value);
  }
}

// The names in the editor's table, sorted, as JSON.
async function ruleNames(page) {
  return JSON.stringify(await page.$$eval('#rules tbody tr[data-name]', (rows) => rows.map((r) => r.dataset.name).sort()));
}

// A port-forwarding rule for TCP from one outer port to one inner port.
const pfRule = (name, innerip, outer, inner) => ({
  name, innerip, protocol: '1', extren_Port_From: outer, extren_Port_To: outer, inner_Port_From: inner, inner_Port_To: inner,
});

// The port-forwarding editor: add two rules, modify one, a duplicate name, delete one, the
// switch.
async function editPortForwarding(page) {
  await navigate(page, 'portforward', /rules\.html\?list=portforward/, 'rules.html?list=portforward');
  await page.waitForSelector('#rules tbody tr');
  check('the editor counts the rules against the list size: ' + (await page.textContent('#count')),
    (await page.textContent('#count')) === '(0 of 32)');
  await submit(page, () => page.click('#delete-all'));
  for (const rule of [pfRule('web', '192.168.1.10', '8080', '80'), pfRule('ssh', '192.168.1.11', '2222', '22')]) {
    await fillRule(page, rule);
    const text = await submit(page, () => page.click('#submit'));
    check('adding "' + rule.name + '" says so: ' + text, text.includes('added'));
  }
  check('the table lists both rules', (await ruleNames(page)) === '["ssh","web"]');

  await page.click('#rules tr[data-name="ssh"] button.modify');
  await page.fill('#f-name', 'ssh-admin');
  await page.fill('#f-extren_Port_From', '2200');
  await page.fill('#f-extren_Port_To', '2200');
  let text = await submit(page, () => page.click('#submit'));
  check('modifying a rule says so: ' + text, text.includes('saved'));
  check('the table shows the new name', (await ruleNames(page)) === '["ssh-admin","web"]');

  await fillRule(page, pfRule('web', '192.168.1.20', '9000', '90'));
  text = await submit(page, () => page.click('#submit'));
  check('a duplicate name shows the message: ' + text, text.includes('A rule with this name or the same settings already exists'));
  await page.screenshot({ path: path.join(ARTIFACTS, 'portforward.png'), fullPage: true });

  text = await submit(page, () => page.click('#rules tr[data-name="web"] button.delete'));
  check('deleting a rule says so: ' + text, text.includes('deleted'));
  check('the table lists the other rule only', (await ruleNames(page)) === '["ssh-admin"]');

  await page.check('#switch');
  text = await submit(page, () => page.click('#switch-save'));
  check('the switch says so: ' + text, text === 'Port forwarding enabled.');
  await page.reload();
  await page.waitForSelector('#rules tbody tr[data-name]');
  check('after a reload the switch is on', await page.isChecked('#switch'));
}

// Each other editor opens with its table and form, and adds one rule.
async function visitOtherEditors(page) {
  const samples = {
    ipportfilter: { name: 'lan-web', startip: '192.168.1.100', endip: '192.168.1.120', startport: '80', endport: '80' },
    macfilter: { name: 'laptop', devmac: '00:11:22:33:44:55' },
    urlfilter: { name: 'news', url: 'example.com' },
    qos: { name: 'guests', startip: '192.168.1.200', endip: '192.168.1.220', bw_up: '1000', bw_down: '4000' },
    ipgroup: { name: 'office', start_ip: '192.168.1.10', end_ip: '192.168.1.50' },
    timegroup: { name: 'work hours', start_time: '08:00', end_time: '18:00' },
  };
  for (const [list, rule] of Object.entries(samples)) {
    await navigate(page, list, new RegExp('rules\\.html\\?list=' + list));
    await page.waitForSelector('#rules tbody tr');
    visited.push('rules.html?list=' + list);
    await fillRule(page, rule);
    if (list === 'timegroup') await page.check('#f-weekday1');
    const text = await submit(page, () => page.click('#submit'));
    check(list + ': adding a rule says so: ' + text, text.includes('added'));
    check(list + ': the table lists it', (await ruleNames(page)) === JSON.stringify([rule.name]));
    if (list === 'macfilter') {
      // The view does not show the address: modifying asks for it again.
      await page.click('#rules tr[data-name="laptop"] button.modify');
      check('macfilter: modify asks for the address again',
        (await page.$eval('#f-devmac', (e) => e.required && e.value === '')));
      await fillRule(page, { name: 'laptop2', devmac: '00:11:22:33:44:66' });
      const saved = await submit(page, () => page.click('#submit'));
      check('macfilter: the rule is modified: ' + saved, saved.includes('saved'));
    }
    await page.screenshot({ path: path.join(ARTIFACTS, list + '.png'), fullPage: true });
  }
}

// The whole flow in one page of the browser.
async function flow(page) {
  // A page of the console without a session goes back to the login page.
  await page.goto(BASE + '/overview.html');
  await page.waitForURL(/login\.html/);
  visited.push('overview.html (no session) -> login.html');
  check('without a session the overview sends the browser to the login page', page.url().includes('reason=expired'));

  // Log in and see the overview.
  await logInToOverview(page, ADMIN_PASS);
  await page.waitForFunction(() => document.querySelectorAll('#system tr').length > 0);
  visited.push('login.html', 'overview.html');
  const facts = await page.$$eval('#product th, #system th', (cells) => cells.map((c) => c.textContent));
  check('the overview shows product and system information', facts.includes('Product') && facts.includes('Administrator'));
  const admin = await page.$eval('#system', (t) => t.textContent);
  check('the overview names the administrator', admin.includes(ADMIN_USER));
  await page.screenshot({ path: path.join(ARTIFACTS, 'overview.png'), fullPage: true });

  await editPortForwarding(page);
  await visitOtherEditors(page);

  // Log out and find the pages closed.
  await page.click('#logout');
  await page.waitForURL(/login\.html\?reason=logout/);
  visited.push('log out -> login.html');
  check('the login page says so: ' + (await message(page)), (await message(page)) === 'You have logged out.');
  await page.goto(BASE + '/rules.html?list=portforward');
  await page.waitForURL(/login\.html\?reason=expired/);
  visited.push('rules.html?list=portforward (logged out) -> login.html');
  check('after logging out the editor sends the browser to the login page', true);
  // Wrong passwords until the lock-out.
  let last = '';
  for (let i = 0; i < 5; i++) {
    await logIn(page, 'wrong-password');
    last = await message(page);
  }
  visited.push('login.html (lock-out)');
  check('the fifth wrong password shows the lock-out: ' + last, last.includes('Too many failed logins'));
  await page.screenshot({ path: path.join(ARTIFACTS, 'lockout.png'), fullPage: true });
}

run(flow);
