// What the browser flows share: checks, the console's message box, logging in and starting
// Chromium off the network. Each flow script requires it and calls run(flow).
'use strict';

const { chromium } = require('playwright-core');
const path = require('path');

const env = process.env;
let failures = 0;
const visited = [];

function check(what, ok) {
  console.log((ok ? 'ok: ' : 'FAIL: ') + what);
  if (!ok) failures++;
}

async function message(page) {
  await page.waitForFunction(() => document.getElementById('message').textContent !== '');
  return page.textContent('#message');
}

// Waits for the answer of the CGI program `program` to click() and returns the page's
// message.
async function submit(page, click, program = 'form.cgi') {
  await page.evaluate(() => { document.getElementById('message').textContent = ''; });
  await Promise.all([page.waitForResponse((r) => r.url().includes('/cgi-bin/' + program)), click()]);
  return message(page);
}

async function logIn(page, password, user = env.ADMIN_USER) {
  await page.goto(env.BASE + '/login.html');
  await page.evaluate(() => { document.getElementById('message').textContent = ''; });
  await page.fill('#username', user);
  await page.fill('#password', password);
  await page.click('#login');
}

// Logs in and waits for the overview the console opens with.
async function logInToOverview(page, password) {
  await logIn(page, password);
  await page.waitForURL(/overview\.html/);
}

// Opens the page of menu entry `nav` and waits for its address `url`; `name`, when given,
// is recorded as visited.
async function navigate(page, nav, url, name) {
  await page.click('#nav-' + nav);
  await page.waitForURL(url);
  if (name) visited.push(name);
}

function screenshot(page, name) {
  return page.screenshot({ path: path.join(env.ARTIFACTS, name + '.png'), fullPage: true });
}

// Starts Chromium with a fresh profile and the flags that keep it off the network (no
// background requests, no name but the console's address resolves), runs flow(page) and
// exits 0 when every check passed.
function run(flow) {
  (async () => {
    const browser = await chromium.launchPersistentContext(env.PROFILE, {
      executablePath: '/usr/bin/chromium',
      headless: true,
      timeout: 120000, // Chromium's start, slow on a loaded machine
      viewport: { width: 1200, height: 900 },
      args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
        '--disable-background-networking', '--disable-component-update', '--disable-sync',
        '--disable-domain-reliability', '--no-pings',
        '--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1'],
    });
    try {
      const page = browser.pages()[0] || (await browser.newPage());
      // Generous for a loaded machine, yet a missing element fails the test well before the
      // CTest timeout would end it.
      page.setDefaultTimeout(60000);
      page.on('dialog', (dialog) => dialog.accept());
      page.on('pageerror', (e) => check('no script error on ' + page.url() + ': ' + e.message, false));
      await flow(page);
    } finally {
      await browser.close();
    }
    console.log('screens visited: ' + visited.join(', '));
    console.log('screenshots: ' + env.ARTIFACTS);
    if (failures) process.exit(1);
    console.log('all checks passed');
  })().catch((e) => {
    console.log('FAIL: ' + e.stack);
    process.exit(1);
  });
}

module.exports = {
  env, check, message, submit, logIn, logInToOverview, navigate, screenshot, visited, run,
};
