// The device's wireless settings: a card per radio with its four access points, the
// repeater and the timed switch-off, each saved through wireless.cgi. The radio card's
// variables carry the radio (and access point) number, as the device's form names them.
'use strict';

const BAND_24 = '1';
const SECURITY = [['0', 'Open'], ['1', 'WEP'], ['6', 'WPA2 personal'], ['8', 'WPA2 enterprise (RADIUS)']];
const COUNTRIES = [['CN', 'China'], ['US', 'United States'], ['EU', 'Europe'], ['JP', 'Japan']];

function bandName(type) {
  return type === BAND_24 ? '2.4 GHz' : '5 GHz';
}

// The fields of one access point (or of the repeater, with an empty suffix).
function securityFields(s, enterprise) {
  const fields = [
    { name: 'm_security' + s, label: 'Security', options: enterprise ? SECURITY : SECURITY.slice(0, 3) },
    { name: 'm_psk_keystr' + s, label: 'WPA key', hint: '8 to 63 characters' },
    { name: 'm_wep_keystr' + s, label: 'WEP key', hint: '5 or 13 characters, 10 or 26 hex digits' },
  ];
  if (enterprise) {
    fields.push({ name: 'm_radius_serverip' + s, label: 'RADIUS server', placeholder: '192.168.1.5' },
      { name: 'm_radius_serverport' + s, label: 'RADIUS port', type: 'number', min: 1, max: 65535 },
      { name: 'm_radius_sharekey' + s, label: 'RADIUS secret' });
  }
  return fields;
}

function radioFields(radio) {
  const r = radio.radio;
  const five = radio.m_radio_type !== BAND_24;
  const fields = [
    { name: 'm_enable' + r, label: 'Radio on', type: 'switch' },
    { name: 'm_wirelessmode' + r, label: 'Mode', options: five ? [['0', '802.11a/n/ac'], ['1', '802.11ac'], ['2', '802.11ax']] : [['0', '802.11b/g/n'], ['1', '802.11n'], ['2', '802.11ax']] },
    { name: 'm_wirelessbwmode' + r, label: 'Bandwidth', options: five ? [['0', '20 MHz'], ['1', '40 MHz'], ['2', '80 MHz']] : [['0', '20 MHz'], ['1', '40 MHz']] },
    { name: 'm_channel' + r, label: 'Channel (0: automatic)', type: 'number', min: 0, max: 165 },
    { name: 'm_wlan_txpower' + r, label: 'Power (dBm)', type: 'number', min: 1, max: 30 },
    { name: 'contrystr' + r, label: 'Country', options: COUNTRIES },
  ];
  for (let v = 0; v < 4; v++) {
    const s = '' + r + v;
    fields.push({ group: 'Access point ' + (v + 1), id: 'vap' + v, fields: [
      { name: 'm_wlan_enable' + s, label: 'On', type: 'switch' },
      { name: 'm_ssid' + s, label: 'SSID', hint: '1 to 32 bytes' },
      { name: 'm_wlan_hide_ssid' + s, label: 'Hide the SSID', type: 'switch' },
      { name: 'm_vlanid' + s, label: 'VLAN (0: none)', type: 'number', min: 0, max: 4094 },
      ...securityFields(s, true),
    ] });
  }
  return fields;
}

// Shows only the key fields that the chosen security needs.
function followSecurity(form, key, s) {
  const select = document.getElementById('f-' + key + '-m_security' + s);
  const show = () => {
    const mode = select.value;
    const need = { m_psk_keystr: mode === '6', m_wep_keystr: mode === '1', m_radius_serverip: mode === '8', m_radius_serverport: mode === '8', m_radius_sharekey: mode === '8' };
    for (const [name, on] of Object.entries(need)) {
      const input = document.getElementById('f-' + key + '-' + name + s);
      if (input) input.closest('label').hidden = !on;
    }
  };
  select.addEventListener('change', show);
  return show;
}

let view = null;
const followers = [];

function fillAll() {
  for (const radio of view.radios) {
    const key = 'radio' + radio.radio;
    const form = document.getElementById('form-' + key);
    SETTINGS.fill(form, radio, radio.radio);
    radio.vaps.forEach((vap, v) => SETTINGS.fill(form, vap, '' + radio.radio + v));
  }
  const repeaterRadio = view.radios.find((r) => r.radio === view.m_repeater_radio_id) || view.radios[0];
  if (repeaterRadio) {
    const form = document.getElementById('form-repeater');
    const rep = { ...repeaterRadio.repeater, radio: repeaterRadio.radio };
    if (rep.m_lockbssid !== '1') rep.m_bssid = '';
    SETTINGS.fill(form, rep);
  }
  SETTINGS.fill(document.getElementById('form-timeclose'), view.timeclose);
  for (const show of followers) show();
}

async function refresh() {
  view = await SETTINGS.load('wireless.cgi');
  fillAll();
}

async function build() {
  view = await SETTINGS.load('wireless.cgi');
  const cards = document.getElementById('cards');
  for (const radio of view.radios) {
    const key = 'radio' + radio.radio;
    const title = 'Radio ' + (Number(radio.radio) + 1) + ' (' + bandName(radio.m_radio_type) + ')';
    const form = SETTINGS.card(cards, key, title, radioFields(radio), async (values, f) => {
      await SETTINGS.post('wireless.cgi', key, f, { form: 'radio', radio: radio.radio, ...values }, title + ': saved.', refresh);
    });
    for (let v = 0; v < 4; v++) followers.push(followSecurity(form, key, '' + radio.radio + v));
  }
  const repeater = SETTINGS.card(cards, 'repeater', 'Repeater', [
    { name: 'radio', label: 'Radio', options: view.radios.map((r) => [r.radio, 'Radio ' + (Number(r.radio) + 1) + ' (' + bandName(r.m_radio_type) + ')']) },
    { name: 'm_wlan_enable', label: 'Connect to another access point', type: 'switch' },
    { name: 'm_ssid', label: 'Its SSID' },
    ...securityFields('', false),
    { name: 'm_bssid', label: 'Its BSSID (optional)', placeholder: '00:11:22:33:44:55' },
  ], async (values, f) => {
    await SETTINGS.post('wireless.cgi', 'repeater', f, { form: 'repeater', ...values }, 'Repeater: saved.', refresh);
  });
  followers.push(followSecurity(repeater, 'repeater', ''));
  SETTINGS.card(cards, 'timeclose', 'Timed switch-off', [
    { name: 'm_enable', label: 'Switch the radios off every night', type: 'switch' },
    { name: 'm_start_time', label: 'From (HH:MM)', placeholder: '00:00' },
    { name: 'm_end_time', label: 'Until (HH:MM)', placeholder: '06:00' },
  ], async (values, f) => {
    await SETTINGS.post('wireless.cgi', 'timeclose', f, { form: 'timeclose', ...values }, 'Timed switch-off: saved.', refresh);
  });
  fillAll();
}

WM.menu('wireless');
build().catch((e) => WM.show(e.message, false));
