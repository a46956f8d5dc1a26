// The wireless access lists: the mode of every radio, each radio's list, the global list.
'use strict';

const MODES = { 0: 'Off', 1: 'Allow only the listed stations', 2: 'Refuse the listed stations' };

function entryForm(form, prefix) {
  CL.field(form, 'Name', CL.input(prefix, 'name'));
  CL.field(form, 'MAC address', CL.input(prefix, 'mac', { placeholder: '00:11:22:AA:BB:CC' }));
  CL.field(form, 'Mark', CL.input(prefix, 'mark'));
  const box = CL.input(prefix, 'status', { type: 'checkbox', checked: true, defaultChecked: true });
  CL.field(form, '', box).parentElement.classList.add('check');
  box.after(' Enabled');
  form.noValidate = true; // the device's program checks and answers beside the field
}

function entryFields(prefix) {
  const v = (n) => document.getElementById(prefix + n).value.trim();
  return { name: v('name'), mac: v('mac'), mark: v('mark'), status: document.getElementById(prefix + 'status').checked ? '1' : '0' };
}

function entries(list) {
  return ((list || {}).element || []).filter((e) => e.id);
}

function render(radios, global) {
  const r = Number(document.getElementById('radio').value);
  const radio = (radios.acl || [])[r] || {};
  document.getElementById('mode-now').textContent = 'now: ' + (MODES[radio.mode] || radio.mode || '?');
  document.getElementById('mode').value = radio.mode || '0';
  document.getElementById('radio-count').textContent = '(' + (radio.count || '0') + ' of ' + (radios.max_count || '32') + ')';
  const columns = [(e) => e.name, (e) => e.mac, (e) => (e.status === '1' ? '✓' : ''), (e) => e.mark];
  CL.fill(document.getElementById('radio-list'), entries(radio), columns, (e, tr) => {
    tr.dataset.name = e.name;
    return [CL.button('Delete', 'danger delete', () => CL.change({ form: 'acl', radio: String(r), action: 'delete', id: e.id },
      '"' + e.name + '" deleted.', null, load))];
  }, 'This radio lists no station.');
  // The extended view shows the global list for every radio: the first is enough.
  const g = (global.acl || [])[0] || {};
  document.getElementById('global-count').textContent = '(' + (g.count || '0') + ' of ' + (global.max_count || '128') + ')';
  CL.fill(document.getElementById('global-list'), entries(g), columns, (e, tr) => {
    tr.dataset.name = e.name;
    return [CL.button('Delete', 'danger delete', () => CL.change({ form: 'aclext', action: 'delete', id: e.id },
      '"' + e.name + '" deleted.', null, load))];
  }, 'The global list is empty.');
}

async function load() {
  const [radios, global] = await Promise.all([CL.view('acl'), CL.view('acl', '&ext=1')]);
  render(radios, global);
}

function start() {
  WM.menu('acl');
  const radioForm = document.getElementById('radio-form');
  const globalForm = document.getElementById('global-form');
  entryForm(radioForm, 'r-');
  entryForm(globalForm, 'x-');
  document.getElementById('radio').addEventListener('change', () => load().catch((e) => WM.show(e.message, false)));
  document.getElementById('mode-save').addEventListener('click', () => {
    const mode = document.getElementById('mode').value;
    CL.change({ form: 'aclmode', mode }, 'Access mode: ' + MODES[mode] + '.', null, load);
  });
  radioForm.addEventListener('submit', (e) => {
    e.preventDefault();
    const fields = entryFields('r-');
    CL.change({ form: 'acl', radio: document.getElementById('radio').value, action: 'add', ...fields },
      '"' + fields.name + '" added.', radioForm, load);
  });
  globalForm.addEventListener('submit', (e) => {
    e.preventDefault();
    const fields = entryFields('x-');
    CL.change({ form: 'aclext', action: 'add', ...fields }, '"' + fields.name + '" added to the global list.', globalForm, load);
  });
  document.getElementById('radio-delete-all').addEventListener('click', () => {
    if (confirm('Delete every entry of this radio?'))
      CL.change({ form: 'acl', radio: document.getElementById('radio').value, action: 'deleteall' }, 'All entries deleted.', null, load);
  });
  load().catch((e) => WM.show(e.message, false));
}

start();
