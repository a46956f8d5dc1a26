// What the client and access-list pages share: their views and forms go to clients.cgi.
'use strict';

const CL = {
  // Some of the device's documents are not JSON as they stand: the client views end every
  // object in a comma before its brace. Only that comma is dropped (strings are matched
  // whole, so a comma inside one stays); a repeated key keeps its last value, as JSON.parse
  // does anyway.
  parse(text) {
    const fixed = text.replace(/("(?:[^"\\]|\\.)*")|,(?=\})/g, (m, str) => str || '');
    try {
      return JSON.parse(fixed);
    } catch (e) {
      throw new Error('The device sent an answer that is not valid JSON.');
    }
  },

  async view(name, extra) {
    const url = '/cgi-bin/clients.cgi?stork=' + encodeURIComponent(WM.token()) + '&view=' +
      encodeURIComponent(name) + (extra || '');
    const response = await fetch(url, { credentials: 'same-origin', cache: 'no-store' });
    if (response.status === 401) return WM.toLogin('expired');
    const body = CL.parse(await response.text());
    if (!response.ok) throw new Error(body.error || 'The device answered ' + response.status + '.');
    return body;
  },

  // Clears the messages beside the fields of `form`.
  clearErrors(form) {
    for (const e of form.querySelectorAll('.field-error')) e.textContent = '';
  },

  // Posts a form to clients.cgi. A refusal that names a field is shown beside it (in
  // `form`, the element whose "err-<field>" box it has) and in the message box.
  async post(fields, form) {
    if (form) CL.clearErrors(form);
    const url = '/cgi-bin/clients.cgi?stork=' + encodeURIComponent(WM.token());
    const response = await fetch(url, {
      method: 'POST',
      credentials: 'same-origin',
      headers: { 'Content-Type': 'application/x-www-form-urlencoded' },
      body: new URLSearchParams(fields).toString(),
    });
    if (response.status === 401) return WM.toLogin('expired');
    const body = CL.parse(await response.text());
    if (!response.ok) {
      const box = form && body.field && form.querySelector('.field-error[data-for="' + body.field + '"]');
      if (box) box.textContent = body.error;
      throw new Error(body.error || 'The device answered ' + response.status + '.');
    }
    return body.result;
  },

  resultText(result, done) {
    const known = {
      2: 'The mark table is full: at most 256 stations can be marked.',
      3: 'The list is full.',
      4: 'That entry no longer exists.',
      10: 'An entry with this name already exists.',
    };
    if (result === 0) return [done, true];
    return [(known[result] || 'The device refused the change') + ' (code ' + result + ').', false];
  },

  // A label with its input and the box for the device's message about it.
  field(form, label, input) {
    const l = document.createElement('label');
    const err = document.createElement('span');
    err.className = 'field-error';
    err.dataset.for = input.name;
    l.append(label, input, err);
    form.querySelector('.buttons').before(l);
    return input;
  },

  // An input named `name`, with the id `prefix` + name (the pages hold several forms).
  input(prefix, name, attrs) {
    const i = document.createElement('input');
    i.name = name;
    i.id = prefix + name;
    Object.assign(i, attrs || {});
    return i;
  },

  button(text, cls, onClick) {
    const b = document.createElement('button');
    b.type = 'button';
    b.className = cls;
    b.textContent = text;
    b.addEventListener('click', onClick);
    return b;
  },

  // Fills the tbody of `table` with one row per item (cells from `columns`, then actions).
  fill(table, items, columns, actions, empty) {
    const body = table.querySelector('tbody');
    body.replaceChildren();
    if (!items.length) {
      const tr = document.createElement('tr');
      const td = WM.cell(tr, empty);
      td.colSpan = columns.length + (actions ? 1 : 0);
      td.className = 'empty';
      body.append(tr);
      return;
    }
    for (const item of items) {
      const tr = document.createElement('tr');
      for (const c of columns) WM.cell(tr, c(item));
      if (actions) {
        const td = WM.cell(tr, '');
        td.className = 'actions';
        for (const b of actions(item, tr)) td.append(b, ' ');
      }
      body.append(tr);
    }
  },

  // Online seconds as the device's pages show them ("H:MM:SS", "1Day H:MM:SS", "nDays ...").
  runtime(seconds) {
    const s = Number(seconds) || 0;
    const day = 86400;
    const two = (n) => String(n).padStart(2, '0');
    const hms = Math.floor((s % day) / 3600) + ':' + two(Math.floor((s % 3600) / 60)) + ':' + two(s % 60);
    if (s < day) return Math.floor(s / 3600) + ':' + two(Math.floor((s % 3600) / 60)) + ':' + two(s % 60);
    const days = Math.floor(s / day);
    return days + (days === 1 ? 'Day ' : 'Days ') + hms;
  },

  // Sends a change, reloads, then shows the answer beside what it changed.
  async change(fields, done, form, reload) {
    try {
      const result = await CL.post(fields, form);
      const [text, ok] = CL.resultText(result, done);
      if (ok && form) form.reset();
      await reload();
      WM.show(text, ok);
      return ok;
    } catch (e) {
      WM.show(e.message, false);
      return false;
    }
  },
};
