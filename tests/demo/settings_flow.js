// The settings pages (system.html, wireless.html) in headless Chromium.
// Exit status: 0 passed, 1 failed.
'use strict';

const crypto = require('crypto');
const fs = require('fs');
const path = require('path');
const { env, check, message, submit, logIn, screenshot, run, logInToOverview, navigate } = require('./flow_lib');

const { BASE, ADMIN_PASS, DEMO_ROOT } = env;
const NEW_PASS = 'N3w-admin-pass';
const SSID = 'Office-Net';
const PSK = 'correct-horse-42';

// Every stored copy of the system section (memory and flash), as raw bytes.
function systemCopies() {
  return ['var/config/misc.bin', 'etc/config_flash/misc.bin']
    .map((f) => path.join(DEMO_ROOT, f))
    .filter((f) => fs.existsSync(f))
    .map((f) => fs.readFileSync(f));
}

// What a reboot loses: the memory copies of the store and the sessions (var/ is RAM).
function restartDevice() {
  const dir = path.join(DEMO_ROOT, 'var/config');
  for (const f of fs.readdirSync(dir)) if (f.endsWith('.bin')) fs.unlinkSync(path.join(dir, f));
  fs.rmSync(path.join(DEMO_ROOT, 'var/usertoken'), { force: true });
}

async function fieldError(page, id) {
  return (await page.textContent('#e-' + id)).trim();
}

async function systemPage(page) {
  await navigate(page, 'system', /system\.html/, 'system.html');
  await page.waitForFunction(() => (document.getElementById('f-user-rootname') || {}).value);
  check('the account card shows the administrator', (await page.inputValue('#f-user-rootname')) === env.ADMIN_USER);

  // Refused: a reboot hour of 24, beside the field, and the stored hour stays.
  const hour = await page.inputValue('#f-timereboot-m_TimeReboot_Hour');
  await page.fill('#f-timereboot-m_TimeReboot_Hour', '24');
  let text = await submit(page, () => page.click('#save-timereboot'), 'system.cgi');
  check('a reboot hour of 24 is refused: ' + text, text.startsWith('Not saved'));
  check('the message stands beside the hour', (await fieldError(page, 'timereboot-m_TimeReboot_Hour')) === 'The hour is 0 to 23.');
  await page.reload();
  await page.waitForFunction(() => (document.getElementById('f-user-rootname') || {}).value);
  check('the stored hour is unchanged', (await page.inputValue('#f-timereboot-m_TimeReboot_Hour')) === hour);

  // A valid change of another card.
  await page.fill('#f-dmz-dmz_host', '192.168.1.77');
  await page.check('#f-dmz-dmz_enable');
  text = await submit(page, () => page.click('#save-dmz'), 'system.cgi');
  check('the DMZ card saves: ' + text, text === 'DMZ: saved.');

  // A wrong current password changes nothing.
  await page.fill('#f-user-oldpwd', 'not-the-password');
  await page.fill('#f-user-rootpwd', NEW_PASS);
  await page.fill('#f-user-rootpwd2', NEW_PASS);
  text = await submit(page, () => page.click('#save-user'), 'system.cgi');
  check('a wrong current password is refused', (await fieldError(page, 'user-oldpwd')) === 'The current password is wrong.');

  // The password change.
  await page.fill('#f-user-oldpwd', ADMIN_PASS);
  await page.fill('#f-user-rootpwd', NEW_PASS);
  await page.fill('#f-user-rootpwd2', NEW_PASS);
  text = await submit(page, () => page.click('#save-user'), 'system.cgi');
  check('the password change is saved: ' + text, text === 'Accounts: saved.');
  await screenshot(page, 'system');

  const digest = crypto.createHash('sha256').update(NEW_PASS).digest('hex');
  const copies = systemCopies();
  check('the store has the system section in memory and flash', copies.length === 2);
  check('no stored copy holds the new password in clear', copies.every((b) => !b.includes(NEW_PASS)));
  check('the stored copies hold its SHA-256 digest', copies.every((b) => b.includes(digest)));
  const answer = await page.evaluate(async () => (await fetch('/cgi-bin/system.cgi?stork=' + WM.token())).text());
  check('the system page is never sent the password or its digest',
    !answer.includes(NEW_PASS) && !answer.includes(digest) && !answer.includes('"rootpwd"'));

  await page.click('#logout');
  await page.waitForURL(/login\.html/);
  await logIn(page, ADMIN_PASS);
  text = await message(page);
  check('the old password no longer logs in: ' + text, text.includes('Wrong user name or password'));
  await logInToOverview(page, NEW_PASS);
  check('the new password logs in', true);
}

async function wirelessPage(page) {
  await navigate(page, 'wireless', /wireless\.html/, 'wireless.html');
  await page.waitForSelector('#f-radio0-m_ssid00');
  await page.waitForFunction(() => (document.getElementById('f-radio0-m_ssid00') || {}).value);
  const before = await page.inputValue('#f-radio0-m_ssid00');

  // Refused: an SSID of 33 bytes and a WPA key of 7 characters, each beside its field.
  await page.fill('#f-radio0-m_ssid00', 'x'.repeat(33));
  let text = await submit(page, () => page.click('#save-radio0'), 'wireless.cgi');
  check('an SSID of 33 bytes is refused: ' + text, text.startsWith('Not saved'));
  check('the message stands beside the SSID', (await fieldError(page, 'radio0-m_ssid00')) === 'An SSID has 1 to 32 bytes.');
  await page.fill('#f-radio0-m_ssid00', SSID);
  await page.selectOption('#f-radio0-m_security00', '6');
  await page.fill('#f-radio0-m_psk_keystr00', 'short77');
  text = await submit(page, () => page.click('#save-radio0'), 'wireless.cgi');
  check('a WPA key of 7 characters is refused', (await fieldError(page, 'radio0-m_psk_keystr00')).startsWith('A WPA key has 8 to 63'));
  check('the SSID message is gone', (await fieldError(page, 'radio0-m_ssid00')) === '');
  await page.fill('#f-radio1-m_channel1', '14');
  text = await submit(page, () => page.click('#save-radio1'), 'wireless.cgi');
  check('channel 14 is refused on the 5 GHz radio', (await fieldError(page, 'radio1-m_channel1')) === 'This channel is not in the 5 GHz band.');
  await page.reload();
  await page.waitForFunction(() => (document.getElementById('f-radio0-m_ssid00') || {}).value);
  check('nothing refused was stored', (await page.inputValue('#f-radio0-m_ssid00')) === before);

  // A valid SSID and key.
  await page.fill('#f-radio0-m_ssid00', SSID);
  await page.selectOption('#f-radio0-m_security00', '6');
  await page.fill('#f-radio0-m_psk_keystr00', PSK);
  text = await submit(page, () => page.click('#save-radio0'), 'wireless.cgi');
  check('the radio card saves: ' + text, text.endsWith(': saved.'));
  await page.fill('#f-timeclose-m_start_time', '23:30');
  text = await submit(page, () => page.click('#save-timeclose'), 'wireless.cgi');
  check('the timed switch-off saves: ' + text, text === 'Timed switch-off: saved.');
  await screenshot(page, 'wireless');

  // After a restart: log in again (the sessions are gone) and find the settings.
  restartDevice();
  await logInToOverview(page, NEW_PASS);
  await page.goto(BASE + '/wireless.html');
  await page.waitForFunction(() => (document.getElementById('f-radio0-m_ssid00') || {}).value);
  check('after a restart the SSID is there', (await page.inputValue('#f-radio0-m_ssid00')) === SSID);
  check('after a restart the WPA key is there', (await page.inputValue('#f-radio0-m_psk_keystr00')) === PSK);
  check('after a restart the switch-off time is there', (await page.inputValue('#f-timeclose-m_start_time')) === '23:30');
  await screenshot(page, 'wireless-after-restart');
}

run(async (page) => {
  await logInToOverview(page, ADMIN_PASS);
  await systemPage(page);
  await wirelessPage(page);
});
