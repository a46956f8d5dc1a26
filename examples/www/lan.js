// The LAN page: address, port VLANs, both DHCP servers, IPv6 and both static-lease lists,
// each saved through lan.cgi, which refuses what would break the device.
'use strict';

const DONE = {
  base: 'The LAN address is saved.',
  vlans: 'The port VLAN ids are saved.',
  devdhcp: 'The DHCP server is saved.',
  acdhcp: 'The controller DHCP server is saved.',
  ipv6: 'The IPv6 settings are saved.',
};

// Where each form's values are in the views.
function valuesOf(form, lan, vlans) {
  switch (form) {
    case 'vlans':
      return Object.fromEntries(vlans.ports.map((id, i) => ['m_lan_port_vlan_id' + i, id]));
    case 'devdhcp':
      return lan.dev_dhcpserver;
    case 'acdhcp':
      return { ...lan.ac_dhcpserver, ac_enable: lan.ac_enable, acipaddr: lan.acipaddr, acsubnet: lan.acsubnet };
    default:
      return lan;
  }
}

// Fills every form, or only `only`: after a save just the saved form is filled again, so
// that what the administrator is typing into another form meanwhile is kept.
async function loadForms(only) {
  const [lan, vlans] = await Promise.all([Fields.get('lan.cgi', 'lan'), Fields.get('lan.cgi', 'vlans')]);
  for (const form of document.querySelectorAll('form[data-form]')) {
    if (!only || form === only) Fields.fill(form, valuesOf(form.dataset.form, lan, vlans));
  }
  return lan;
}

function setUpForms() {
  for (const form of document.querySelectorAll('form[data-form]')) {
    form.addEventListener('submit', async (event) => {
      event.preventDefault();
      const name = form.dataset.form;
      const result = await Fields.post(form, 'lan.cgi', { form: name, ...Fields.read(form) }, DONE[name]);
      // The port VLANs are applied to the switch once stored; say so when it refused them.
      if (result === 0 && name === 'vlans' && Fields.last.applied === -1) {
        WM.show('The port VLAN ids are saved, but the switch did not take them.', false);
      }
      if (result !== null) await loadForms(form);
    });
  }
}

// One static-lease list: its table, add, modify, delete, delete all.
function leaseEditor(box) {
  const list = box.dataset.list; // "dev" or "ac"
  box.append(document.getElementById('lease-editor').content.cloneNode(true));
  const form = box.querySelector('form');
  const tbody = box.querySelector('tbody');
  let editing = null;

  function startEditing(lease) {
    editing = lease ? lease.id : null;
    Fields.clearErrors(form);
    for (const input of form.querySelectorAll('[name]')) input.value = lease ? lease[input.name] ?? '' : input.tagName === 'SELECT' ? '0' : '';
    box.querySelector('.lease-title').textContent = lease ? 'Modify the lease of ' + lease.mac : 'Add a lease';
    box.querySelector('.lease-submit').textContent = lease ? 'Save changes' : 'Add';
    box.querySelector('.lease-cancel').hidden = !lease;
  }

  async function send(fields, done) {
    const result = await Fields.post(form, 'lan.cgi', { form: 'lease', list, ...fields }, done);
    if (result !== null) {
      startEditing(null);
      await load();
    }
  }

  async function load() {
    const view = await Fields.get('lan.cgi', list === 'dev' ? 'lan' : 'acleases');
    const leases = view.dhcp_server_bindlist.element.filter((e) => Number(e.id) > 0);
    tbody.replaceChildren();
    for (const lease of leases) {
      const row = document.createElement('tr');
      row.dataset.mac = lease.mac;
      const names = { 0: 'Computer', 1: 'Phone', 2: 'Printer', 3: 'Other' };
      for (const text of [names[lease.devtype] || lease.devtype, lease.mac, lease.ip, lease.mark]) WM.cell(row, text);
      const actions = WM.cell(row, '');
      actions.className = 'actions';
      const modify = document.createElement('button');
      modify.className = 'secondary modify';
      modify.textContent = 'Modify';
      modify.addEventListener('click', () => startEditing(lease));
      const remove = document.createElement('button');
      remove.className = 'danger delete';
      remove.textContent = 'Delete';
      remove.addEventListener('click', () => send({ action: 'delete', id: lease.id }, 'The lease of ' + lease.mac + ' is deleted.'));
      actions.append(modify, ' ', remove);
      tbody.append(row);
    }
    if (!leases.length) {
      const row = document.createElement('tr');
      const cell = WM.cell(row, 'No static leases.');
      cell.className = 'empty';
      cell.colSpan = 5;
      tbody.append(row);
    }
  }

  form.addEventListener('submit', (event) => {
    event.preventDefault();
    const fields = Fields.read(form);
    if (editing) send({ action: 'modify', id: editing, ...fields }, 'The lease is saved.');
    else send({ action: 'add', ...fields }, 'The lease of ' + fields.mac + ' is added.');
  });
  box.querySelector('.lease-cancel').addEventListener('click', () => startEditing(null));
  box.querySelector('.delete-all').addEventListener('click', () => {
    if (confirm('Delete every static lease of this list?')) send({ action: 'deleteall' }, 'All static leases are deleted.');
  });
  return load();
}

WM.menu('lan');
setUpForms();
Promise.all([loadForms(), ...[...document.querySelectorAll('.lease-list')].map(leaseEditor)])
  .catch((e) => WM.show(e.message, false));
