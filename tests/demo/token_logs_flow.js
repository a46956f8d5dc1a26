// A browser session on the console (headless Chromium): log in through the login page, the
// overview, a rule editor with a change, then the system view as the console serves it to
// the browser. Leaves the session token in $DEMO_ROOT.token for token_logs_flow.sh, which
// looks for it in every log of the demo tree once the server has ended.
'use strict';

const fs = require('fs');
const { env, check, submit, screenshot, visited, run, logInToOverview, navigate } = require('./flow_lib');

run(async (page) => {
  await logInToOverview(page, env.ADMIN_PASS);
  await page.waitForFunction(() => document.querySelectorAll('#system tr').length > 0);
  visited.push('login.html', 'overview.html');

  await navigate(page, 'portforward', /rules\.html\?list=portforward/);
  await page.waitForSelector('#rules tbody tr');
  visited.push('rules.html?list=portforward');
  await submit(page, () => page.click('#delete-all'));
  await screenshot(page, 'token-logs');

  const cookie = (await page.context().cookies()).find((c) => c.name === 'stork');
  check('the browser holds the session cookie', !!cookie && /^[A-Za-z0-9]{16}$/.test(cookie.value));
  // The system view with the browser's own cookies, as the overview fetches it.
  const answer = await page.request.get(env.BASE + '/cgi-bin/view.cgi?name=system');
  const system = await answer.json();
  check('the system view names the administrator', system.sys_user.rootname === env.ADMIN_USER);
  check('but carries no password', system.sys_user.rootpwd === '');
  const digest = require('crypto').createHash('sha256').update(env.ADMIN_PASS).digest('hex');
  check('nor its digest', !JSON.stringify(system).includes(digest));
  fs.writeFileSync(env.DEMO_ROOT + '.token', cookie ? cookie.value : '');
});
