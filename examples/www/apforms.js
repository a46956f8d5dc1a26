// What the template editor and an AP's settings share: forms built from the records the
// fleet views print (radios and their VAPs, reboot schedule, web login, IPTV), posted to
// templates.cgi, which refuses what would break the device beside its field.
'use strict';

const ApForms = {
  // A labelled input named `name` (the form's variable), its value set from the record.
  field(parent, label, name, value, kind) {
    const wrap = document.createElement('label');
    wrap.textContent = label;
    const input = document.createElement('input');
    input.name = name;
    input.id = parent.closest('form').id + '-' + name.replace(/\./g, '-');
    if (kind === 'checkbox') {
      input.type = 'checkbox';
      input.checked = value === '1';
    } else {
      input.type = kind || 'text';
      input.value = value === undefined ? '' : value;
    }
    wrap.append(input);
    parent.append(wrap);
    return input;
  },

  heading(form, text) {
    const fieldset = document.createElement('fieldset');
    const legend = document.createElement('strong');
    legend.textContent = text;
    fieldset.append(legend);
    form.append(fieldset);
    return fieldset;
  },

  // The radios a record holds ("m_channel1", "m_ssid12": radio 1, VAP 2). A VLAN id of 0
  // (none) shows empty and, left empty, is not sent.
  radios(form, radios) {
    radios.forEach((r, i) => {
      if (r.m_radio_type === '0') return; // a radio the model lacks
      ApForms.heading(form, 'Radio ' + i + ' · ' + Fleet.band(r.m_radio_type));
      ApForms.field(form, 'Channel (0 automatic)', 'm_channel' + i, r.m_channel);
      ApForms.field(form, 'Power level', 'm_wlan_txpower' + i, r.m_wlan_txpower);
      ApForms.field(form, 'Max. stations', 'm_MaxStanum' + i, r.m_MaxStanum);
      (r.m_vap || []).forEach((v, j) => {
        const set = ApForms.heading(form, 'Network ' + i + '.' + j);
        ApForms.field(set, 'On', 'm_wlan_enable' + i + j, v.m_wlan_enable, 'checkbox');
        ApForms.field(form, 'SSID (1 to 32 bytes)', 'm_ssid' + i + j, v.m_ssid);
        ApForms.field(form, 'VLAN (1 to 4094)', 'm_vlanid' + i + j, v.m_vlanid === '0' ? '' : v.m_vlanid);
        ApForms.field(form, 'WPA key (8 to 63)', 'm_psk_keystr' + i + j, v.m_psk_keystr, 'password');
      });
    });
  },

  reboot(form, block) {
    const set = ApForms.heading(form, 'Timed reboot');
    ApForms.field(set, 'On', 'm_timereboot.m_TimeRebootEnable', block.m_TimeRebootEnable, 'checkbox');
    ApForms.field(form, 'Hour (0 to 23)', 'm_timereboot.m_TimeReboot_Hour', block.m_TimeReboot_Hour);
  },

  weblogin(form, block) {
    const set = ApForms.heading(form, 'Web login');
    ApForms.field(set, 'On', 'm_weblogin.m_enable', block.m_enable, 'checkbox');
    ApForms.field(form, 'User name', 'm_weblogin.m_username', block.m_username);
    ApForms.field(form, 'Password', 'm_weblogin.m_userpwd', block.m_userpwd, 'password');
  },

  iptv(form, block) {
    const set = ApForms.heading(form, 'IPTV');
    ApForms.field(set, 'On', 'm_iptv.m_enable', block.m_enable, 'checkbox');
    ApForms.field(form, 'IPTV VLAN (1 to 4094)', 'm_iptv.m_vlanid', block.m_vlanid === '0' ? '' : block.m_vlanid);
  },

  // Empties the form and puts its fields, built by `build`, before a Save button.
  build(form, label, build) {
    form.replaceChildren();
    build(form);
    const buttons = document.createElement('div');
    buttons.className = 'buttons';
    const save = document.createElement('button');
    save.type = 'submit';
    save.id = form.id + '-save';
    save.textContent = label;
    buttons.append(save);
    form.append(buttons);
  },

  // The filled fields of `form` (empty ones keep what is stored) with `extra`.
  values(form, extra) {
    const fields = Fields.read(form);
    for (const name of Object.keys(fields)) if (fields[name] === '') delete fields[name];
    return { ...fields, ...extra };
  },

  // Posts on submit; `after` runs once the device took the change.
  onSave(form, extra, done, after) {
    form.onsubmit = async (event) => {
      event.preventDefault();
      const result = await Fields.post(form, 'templates.cgi', ApForms.values(form, extra()), done);
      if (result !== null && after) await after();
    };
  },
};
