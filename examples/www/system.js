// The system settings: one card per section of system.cgi, each saved on its own.
'use strict';

const ON_OFF = (name, label) => ({ name, label, type: 'switch' });

const TIME_ZONES = [
  ['UTC0', 'UTC'], ['UTC-8', 'UTC+8 (China)'], ['UTC-9', 'UTC+9 (Japan)'],
  ['UTC-1', 'UTC+1 (Central Europe)'], ['UTC5', 'UTC-5 (US East)'], ['UTC8', 'UTC-8 (US West)'],
];

// [form key, title, fields]; the keys are the forms of system.cgi and its view's sections.
const CARDS = [
  ['user', 'Accounts', [
    { name: 'rootname', label: 'Administrator name' },
    { name: 'oldpwd', label: 'Current password', type: 'password', hint: 'Needed for any change of the accounts.' },
    { name: 'rootpwd', label: 'New password', type: 'password', hint: '8 to 63 characters; empty keeps the password.' },
    { name: 'rootpwd2', label: 'New password again', type: 'password' },
    { name: 'username', label: 'User account name', hint: 'Empty: no user account.' },
    { name: 'userpwd', label: 'User account password', type: 'password', hint: 'Empty keeps it.' },
  ]],
  ['actimer', 'Controller timers', [
    { name: 'sys_ac_discovery_timeout', label: 'AP discovery timeout (s)', type: 'number', min: 1, max: 255 },
    { name: 'sys_ac_echo_interval', label: 'Echo interval (s)', type: 'number', min: 1, max: 255 },
  ]],
  ['dmz', 'DMZ', [
    ON_OFF('dmz_enable', 'DMZ host'),
    { name: 'dmz_host', label: 'DMZ host address', placeholder: '192.168.1.20' },
  ]],
  ['nat', 'NAT', [ON_OFF('enable', 'Network address translation')]],
  ['kvr', 'Band steering', [
    ON_OFF('m_kvr_enable', 'Band steering'),
    ON_OFF('m_is_5g_first', 'Prefer 5 GHz'),
    { name: 'm_kvr_2g_rssi_thr', label: '2.4 GHz signal threshold (dBm)', type: 'number', min: -100, max: -40 },
    { name: 'm_kvr_5g_rssi_thr', label: '5 GHz signal threshold (dBm)', type: 'number', min: -100, max: -40 },
  ]],
  ['ddns', 'Dynamic DNS', [
    ON_OFF('enable', 'Dynamic DNS'),
    { name: 'usertype', label: 'Provider', options: [['0', 'DynDNS'], ['1', 'No-IP'], ['2', 'Oray'], ['3', 'Other']] },
    { name: 'user', label: 'User name' },
    { name: 'pwd', label: 'Password', type: 'password', hint: 'Empty keeps the stored password.' },
    { name: 'domain', label: 'Domain', placeholder: 'myrouter.example.net' },
  ]],
  ['log', 'System log', [
    ON_OFF('log_enable', 'Keep a system log'),
    ON_OFF('remote_log_enable', 'Send it to a log server'),
    { name: 'remote_log_server_host', label: 'Log server', placeholder: '192.168.1.10' },
  ]],
  ['ntp', 'Time and NTP', [
    ON_OFF('enable', 'Set the clock from NTP'),
    { name: 'ntp_tz', label: 'Time zone', options: TIME_ZONES },
    ON_OFF('ntp_server_mode', 'Use my own server'),
    { name: 'ntp_server_addr', label: 'NTP server', placeholder: 'pool.ntp.org' },
  ]],
  ['remote', 'Remote access', [
    ON_OFF('enable_web', 'Web management from the WAN'),
    ON_OFF('enable_telnet', 'Telnet from the WAN'),
    ON_OFF('local_enable_telnet', 'Telnet from the LAN'),
    { name: 'remote_port', label: 'Remote port', type: 'number', min: 1, max: 65535, placeholder: '8080' },
  ]],
  ['timereboot', 'Scheduled reboot', [
    ON_OFF('m_TimeRebootEnable', 'Reboot on a schedule'),
    { name: 'm_TimeRebootType', label: 'Every', options: [['0', 'day'], ['1', 'week'], ['2', 'month']] },
    { name: 'm_TimeReboot_Hour', label: 'Hour (0 to 23)', type: 'number', min: 0, max: 23 },
    { name: 'm_TimeReboot_Week', label: 'Weekday', options: [['0', 'Sunday'], ['1', 'Monday'], ['2', 'Tuesday'], ['3', 'Wednesday'], ['4', 'Thursday'], ['5', 'Friday'], ['6', 'Saturday']] },
    { name: 'm_TimeReboot_Day', label: 'Day of the month', type: 'number', min: 1, max: 31 },
  ]],
  ['product', 'Product information', [
    { name: 'device_name', label: 'Device name' },
    { name: 'device_position', label: 'Location' },
    { name: 'default_language', label: 'Page language', options: [['en', 'English'], ['zh', 'Chinese']] },
  ]],
];

const forms = {};

// The view's numbers of a day or a month start at 0 in a fresh record: show a valid value.
function fixups(key, values) {
  if (key === 'timereboot' && values.m_TimeReboot_Day === '0') values.m_TimeReboot_Day = '1';
  // No remote port yet: the field stays empty (and is not sent) until one is given.
  if (key === 'remote' && values.remote_port === '0') values.remote_port = '';
  return values;
}

async function refresh() {
  const view = await SETTINGS.load('system.cgi');
  for (const [key] of CARDS) SETTINGS.fill(forms[key], fixups(key, { ...view[key] }));
  const p = view.product;
  document.getElementById('product-facts').textContent =
    p.productname + ' · serial ' + (p.device_sn || 'none') + ' · CPU ' + p.device_cpu;
  document.getElementById('remote-url').textContent = view.remote.web_url
    ? 'Remote address: ' + view.remote.web_url : 'No remote address yet.';
  document.getElementById('ddns-pwd').textContent = view.ddns.pwd_set === '1'
    ? 'A password is stored.' : 'No password stored.';
}

function build() {
  const cards = document.getElementById('cards');
  for (const [key, title, fields] of CARDS) {
    forms[key] = SETTINGS.card(cards, key, title, fields, async (values, form) => {
      // The month is not set by these pages; the device ignores it for daily and weekly.
      if (key === 'timereboot') values.m_TimeReboot_Month = '1';
      if (key === 'remote' && values.remote_port === '') delete values.remote_port;
      const saved = await SETTINGS.post('system.cgi', key, form, { form: key, ...values }, title + ': saved.', refresh);
      if (saved && key === 'user') {
        for (const input of form.querySelectorAll('input[type=password]')) input.value = '';
      }
    });
  }
  for (const [key, id] of [['product', 'product-facts'], ['remote', 'remote-url'], ['ddns', 'ddns-pwd']]) {
    const p = document.createElement('p');
    p.className = 'facts';
    p.id = id;
    forms[key].before(p);
  }
}

WM.menu('system');
build();
refresh().catch((e) => WM.show(e.message, false));
