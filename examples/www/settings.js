// What the settings pages (system.html, wireless.html) share: forms built from a list of
// fields, values filled from the program's JSON, each form posted to its program, and a
// refusal shown beside the field it names. Everything is set with textContent or value.
'use strict';

const SETTINGS = {
  // GET the program's settings (its view).
  async load(program) {
    const url = '/cgi-bin/' + program + '?stork=' + encodeURIComponent(WM.token());
    const response = await fetch(url, { credentials: 'same-origin', cache: 'no-store' });
    if (response.status === 401) return WM.toLogin('expired');
    const body = await WM.readJson(response);
    if (!response.ok) throw new Error(body.error || 'The device answered ' + response.status + '.');
    return body;
  },

  // POST a form; answers { ok, status, body } so that a refusal's field can be shown.
  async send(program, fields) {
    const url = '/cgi-bin/' + program + '?stork=' + encodeURIComponent(WM.token());
    const response = await fetch(url, {
      method: 'POST',
      credentials: 'same-origin',
      headers: { 'Content-Type': 'application/x-www-form-urlencoded' },
      body: new URLSearchParams(fields).toString(),
    });
    if (response.status === 401) return WM.toLogin('expired');
    return { ok: response.ok, status: response.status, body: await WM.readJson(response) };
  },

  // One labelled input for a field { name, label, type, options, min, max, placeholder }.
  // Its id is "f-<key>-<name>", the message beside it "e-<key>-<name>" (<key>: its form).
  input(key, field) {
    const label = document.createElement('label');
    label.className = 'field';
    let input;
    if (field.options) {
      input = document.createElement('select');
      for (const [value, text] of field.options) input.append(new Option(text, value));
    } else {
      input = document.createElement('input');
      input.type = field.type === 'switch' ? 'checkbox' : field.type || 'text';
      if (field.type === 'number') {
        if (field.min !== undefined) input.min = field.min;
        if (field.max !== undefined) input.max = field.max;
      }
      if (field.placeholder) input.placeholder = field.placeholder;
      if (field.type === 'password') input.autocomplete = 'new-password';
    }
    input.id = 'f-' + key + '-' + field.name;
    input.name = field.name;
    const error = document.createElement('span');
    error.className = 'field-error';
    error.id = 'e-' + key + '-' + field.name;
    if (field.type === 'switch') {
      label.classList.add('check');
      label.append(input, ' ' + field.label, error);
    } else {
      label.append(field.label, input, error);
    }
    if (field.hint) {
      const hint = document.createElement('small');
      hint.textContent = field.hint;
      label.append(hint);
    }
    return label;
  },

  // A field, or a group { group: title, fields: [...] } as a fieldset (id "g-<key>-<id>").
  item(key, field) {
    if (!field.group) return SETTINGS.input(key, field);
    const set = document.createElement('fieldset');
    if (field.id) set.id = 'g-' + key + '-' + field.id;
    const legend = document.createElement('legend');
    legend.textContent = field.group;
    set.append(legend);
    for (const f of field.fields) set.append(SETTINGS.item(key, f));
    return set;
  },

  // A card with a title, the fields and a Save button; submit(fields) is called with the
  // values of the fields (switches as "1" or "0").
  card(parent, key, title, fields, submit) {
    const section = document.createElement('section');
    section.className = 'card';
    const h2 = document.createElement('h2');
    h2.textContent = title;
    const form = document.createElement('form');
    form.className = 'settings';
    form.noValidate = true; // the programs check the values and say what is wrong
    form.id = 'form-' + key;
    for (const field of fields) form.append(SETTINGS.item(key, field));
    const buttons = document.createElement('div');
    buttons.className = 'buttons';
    const save = document.createElement('button');
    save.type = 'submit';
    save.textContent = 'Save';
    save.id = 'save-' + key;
    buttons.append(save);
    form.append(buttons);
    form.addEventListener('submit', (event) => {
      event.preventDefault();
      submit(SETTINGS.values(form), form);
    });
    section.append(h2, form);
    parent.append(section);
    return form;
  },

  values(form) {
    const fields = {};
    for (const input of form.querySelectorAll('input, select')) {
      if (!input.name || input.closest('[hidden]')) continue;
      fields[input.name] = input.type === 'checkbox' ? (input.checked ? '1' : '0') : input.value.trim();
    }
    return fields;
  },

  // Sets the inputs of `form` whose names are keys of `values`; password inputs stay empty.
  fill(form, values, suffix = '') {
    for (const [key, value] of Object.entries(values)) {
      const input = form.querySelector('[name="' + CSS.escape(key + suffix) + '"]');
      if (!input || input.type === 'password') continue;
      if (input.type === 'checkbox') input.checked = value === '1';
      else input.value = value;
    }
  },

  clearErrors(form) {
    for (const span of form.querySelectorAll('.field-error')) span.textContent = '';
    for (const input of form.querySelectorAll('.invalid')) input.classList.remove('invalid');
  },

  // Posts `fields` to `program`; a refusal goes beside its field, the result to #message
  // once after() (the page's refresh) has run, so that the page shows what was stored when
  // it says so. Resolves true when the device stored the settings.
  async post(program, key, form, fields, done, after) {
    SETTINGS.clearErrors(form);
    try {
      const answer = await SETTINGS.send(program, fields);
      if (answer.ok && answer.body.result === 0) {
        if (after) await after();
        WM.show(done, true);
        return true;
      }
      const field = answer.body.field;
      const span = field && document.getElementById('e-' + key + '-' + field);
      if (span) {
        span.textContent = answer.body.error;
        document.getElementById('f-' + key + '-' + field).classList.add('invalid');
      }
      WM.show('Not saved: ' + (answer.body.error || 'the device answered ' + answer.status + '.'), false);
    } catch (e) {
      WM.show(e.message, false);
    }
    return false;
  },
};
