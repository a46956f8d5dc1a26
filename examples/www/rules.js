// One editor for the rule list named in ?list=: its table, add, modify, delete, delete
// all and the list's switch, each answered with the library's result as a sentence.
'use strict';

const listName = new URLSearchParams(location.search).get('list');
const list = LISTS[listName];
let editingId = null; // the id of the rule being modified, or null when adding

function resultText(result, done) {
  if (result === 0) return [done, true];
  const known = RESULT_TEXT[result];
  return [(known || 'The device refused the change') + ' (code ' + result + ').', false];
}

function optionLabel(field, value) {
  const match = (field.options || []).find(([v]) => v === value);
  return match ? match[1] : value;
}

function buildForm() {
  const form = document.getElementById('rule-form');
  const buttons = form.querySelector('.buttons');
  const days = document.createElement('fieldset');
  for (const field of list.fields) {
    const label = document.createElement('label');
    let input;
    if (field.options) {
      input = document.createElement('select');
      for (const [value, text] of field.options) input.append(new Option(text, value));
    } else {
      input = document.createElement('input');
      if (field.type === 'checkbox') input.type = 'checkbox';
      if (field.number) Object.assign(input, { type: 'number', min: 0, max: 65535 });
      if (field.placeholder) input.placeholder = field.placeholder;
      if (field.required) input.required = true;
      if (field.name === 'name' || field.name === 'mark') input.maxLength = 63;
    }
    input.id = 'f-' + field.name;
    input.name = field.name;
    if (field.type === 'checkbox') {
      label.append(input, ' ' + field.label);
      days.append(label);
    } else {
      label.append(field.label, input);
      form.insertBefore(label, buttons);
    }
  }
  if (days.childElementCount) form.insertBefore(days, buttons);
}

function formFields() {
  const fields = { ...(list.fixed || {}) };
  for (const field of list.fields) {
    const input = document.getElementById('f-' + field.name);
    fields[field.name] = field.type === 'checkbox' ? (input.checked ? '1' : '0') : input.value.trim();
  }
  return fields;
}

function startEditing(rule) {
  editingId = rule ? rule.id : null;
  for (const field of list.fields) {
    const input = document.getElementById('f-' + field.name);
    const value = rule ? rule[field.key] : undefined;
    // A value the list's view does not show (the MAC filter's address) must be entered
    // again on a modify: the form stores what it is sent.
    const unseen = Boolean(rule) && !(field.key in rule);
    if (!field.type && !field.options) {
      input.required = Boolean(field.required) || unseen;
      input.placeholder = unseen ? 'not shown by the device: enter it again' : field.placeholder || '';
    }
    if (field.type === 'checkbox') input.checked = value === '1';
    else if (field.options) input.value = value !== undefined ? value : field.options[0][0];
    else input.value = value !== undefined && !(field.number && value === '0' && !rule) ? value : '';
  }
  document.getElementById('form-title').textContent = rule ? 'Modify rule "' + rule.name + '"' : 'Add a rule';
  document.getElementById('submit').textContent = rule ? 'Save changes' : 'Add';
  document.getElementById('cancel').hidden = !rule;
}

function renderTable(doc) {
  const listObject = doc[list.object] || {};
  const rules = (listObject.element || []).filter((rule) => Number(rule.id) > 0);
  document.getElementById('count').textContent =
    '(' + rules.length + ' of ' + (listObject.max_count || '?') + ')';
  const shown = list.fields.filter((f) => f.key in (listObject.element && listObject.element[0] || {}));
  const head = document.querySelector('#rules thead');
  const headRow = document.createElement('tr');
  for (const field of shown) {
    const th = document.createElement('th');
    th.textContent = field.label;
    headRow.append(th);
  }
  headRow.append(document.createElement('th'));
  head.replaceChildren(headRow);

  const body = document.querySelector('#rules tbody');
  body.replaceChildren();
  if (!rules.length) {
    const tr = document.createElement('tr');
    const td = WM.cell(tr, 'No rules yet.');
    td.colSpan = shown.length + 1;
    td.className = 'empty';
    body.append(tr);
  }
  for (const rule of rules) {
    const tr = document.createElement('tr');
    tr.dataset.id = rule.id;
    tr.dataset.name = rule.name;
    for (const field of shown) {
      const value = rule[field.key];
      WM.cell(tr, field.type === 'checkbox' ? (value === '1' ? '✓' : '') : optionLabel(field, value));
    }
    const actions = WM.cell(tr, '');
    actions.className = 'actions';
    const modify = document.createElement('button');
    modify.className = 'secondary modify';
    modify.textContent = 'Modify';
    modify.addEventListener('click', () => startEditing(rule));
    const remove = document.createElement('button');
    remove.className = 'danger delete';
    remove.textContent = 'Delete';
    remove.addEventListener('click', () => change({ action: 'delete', id: rule.id }, 'Rule "' + rule.name + '" deleted.'));
    actions.append(modify, ' ', remove);
    body.append(tr);
  }
  if (list.switchVar) document.getElementById('switch').checked = doc[list.switchVar] === '1';
}

async function load() {
  renderTable(await WM.view(listName));
}

// Sends one change, reloads the table, then shows the library's answer (so that the
// message never stands beside a table that does not show the change yet).
async function change(fields, done) {
  try {
    const answer = await WM.post('form.cgi', { list: listName, ...fields });
    const [text, ok] = resultText(answer.result, done);
    if (ok && (fields.action === 'add' || fields.action === 'modify')) startEditing(null);
    await load();
    WM.show(text, ok);
  } catch (e) {
    WM.show(e.message, false);
  }
}

function start() {
  if (!list) {
    WM.menu('');
    WM.show('There is no rule list called "' + listName + '".', false);
    return;
  }
  WM.menu(listName);
  document.title = list.title + ' · Router management';
  document.getElementById('title').textContent = list.title;
  buildForm();
  startEditing(null);
  if (list.switchVar) {
    document.getElementById('switch-card').hidden = false;
    document.getElementById('switch-label').textContent = list.switchLabel;
    document.getElementById('switch-save').addEventListener('click', () => {
      const on = document.getElementById('switch').checked;
      change({ action: 'switch', [list.switchVar]: on ? '1' : '0' }, list.title + (on ? ' enabled.' : ' disabled.'));
    });
  }
  document.getElementById('rule-form').addEventListener('submit', (event) => {
    event.preventDefault();
    const fields = formFields();
    if (editingId === null) change({ action: 'add', ...fields }, 'Rule "' + fields.name + '" added.');
    else change({ action: 'modify', id: editingId, ...fields }, 'Rule "' + fields.name + '" saved.');
  });
  document.getElementById('cancel').addEventListener('click', () => startEditing(null));
  document.getElementById('delete-all').addEventListener('click', () => {
    if (confirm('Delete every rule of this list?')) change({ action: 'deleteall' }, 'All rules deleted.');
  });
  load().catch((e) => WM.show(e.message, false));
}

start();
