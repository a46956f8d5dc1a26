// What the LAN and WAN pages share: reading a program's views, filling a form from a view,
// posting a form and showing a refusal beside the field it concerns.
'use strict';

const Fields = {

  async get(program, view) {
    const url = '/cgi-bin/' + program + '?stork=' + encodeURIComponent(WM.token()) + '&view=' + encodeURIComponent(view);
    const response = await fetch(url, { credentials: 'same-origin', cache: 'no-store' });
    if (response.status === 401) return WM.toLogin('expired');
    const body = await WM.readJson(response);
    if (!response.ok) throw new Error(body.error || 'The device answered ' + response.status + '.');
    return body;
  },

  // Sets every named input of `form` from the member of the same name in `values`.
  fill(form, values) {
    for (const input of form.querySelectorAll('[name]')) {
      const value = values[input.name];
      if (value === undefined) continue;
      if (input.type === 'checkbox') input.checked = value === '1';
      else input.value = value;
    }
  },

  // The named inputs of `form` as the program's variables (a checkbox is "1" or "0").
  read(form) {
    const fields = {};
    for (const input of form.querySelectorAll('[name]')) {
      if (input.closest('[hidden]')) continue; // fields of another connection type
      fields[input.name] = input.type === 'checkbox' ? (input.checked ? '1' : '0') : input.value.trim();
    }
    return fields;
  },

  clearErrors(form) {
    for (const span of form.querySelectorAll('.field-error')) span.remove();
  },

  // The refusal's message, right behind the input it names.
  showError(form, field, text) {
    const input = form.querySelector('[name="' + CSS.escape(field) + '"]');
    const span = document.createElement('span');
    span.className = 'field-error';
    span.dataset.for = field;
    span.textContent = text;
    if (input) input.after(span);
    else form.prepend(span);
  },

  // Posts `fields` to `program`; answers the library's result, or null after showing a
  // refusal (beside its field) or an error.
  async post(form, program, fields, done) {
    Fields.clearErrors(form);
    const url = '/cgi-bin/' + program + '?stork=' + encodeURIComponent(WM.token());
    try {
      const response = await fetch(url, {
        method: 'POST',
        credentials: 'same-origin',
        headers: { 'Content-Type': 'application/x-www-form-urlencoded' },
        body: new URLSearchParams(fields).toString(),
      });
      if (response.status === 401) return WM.toLogin('expired');
      const body = await WM.readJson(response);
      if (response.status === 400 && body.field) {
        Fields.showError(form, body.field, body.error);
        WM.show('Not saved: ' + body.error, false);
        return null;
      }
      if (!response.ok) throw new Error(body.error || 'The device answered ' + response.status + '.');
      if (body.result !== 0) {
        WM.show((FORM_RESULTS[body.result] || 'The device refused the change') + ' (code ' + body.result + ').', false);
        return null;
      }
      Fields.last = body; // the whole answer, for what a page reads besides the result
      WM.show(done, true);
      return body.result;
    } catch (e) {
      WM.show(e.message, false);
      return null;
    }
  },
};

const FORM_RESULTS = {
  3: 'The list is full',
  4: 'No entry has this id any more',
  5: 'The device could not take this request',
  '-1': 'The device could not store the change',
};

// A refusal's message goes once its value is changed.
document.addEventListener('input', (event) => {
  const next = event.target.nextElementSibling;
  if (next && next.classList.contains('field-error')) next.remove();
});
