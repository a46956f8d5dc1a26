// Client accounts, client groups, the blacklist, the stations and their marks.
'use strict';

let accounts = [];   // the accounts as the view printed them
let groupList = [];
let editingGroup = null;
let editingClient = null;

function buildForms() {
  const mark = document.getElementById('mark-form');
  CL.field(mark, 'Station MAC', CL.input('m-', 'mac', { placeholder: '00:11:22:AA:BB:CC' }));
  CL.field(mark, 'Mark', CL.input('m-', 'mark'));

  const group = document.getElementById('group-form');
  CL.field(group, 'Group name', CL.input('g-', 'm_name'));

  const client = document.getElementById('client-form');
  CL.field(client, 'Name', CL.input('c-', 'm_name'));
  CL.field(client, 'MAC address', CL.input('c-', 'm_haddr', { placeholder: '00:11:22:AA:BB:CC' }));
  const select = document.createElement('select');
  select.name = 'm_group_id';
  select.id = 'c-m_group_id';
  CL.field(client, 'Group', select);
  CL.field(client, 'Mark', CL.input('c-', 'm_mark'));
  for (const [name, label] of [['m_is_bindmac', 'Bind the MAC to this account'], ['m_is_deny', 'Blacklisted']]) {
    const box = CL.input('c-', name, { type: 'checkbox' });
    CL.field(client, '', box).parentElement.classList.add('check');
    box.after(' ' + label);
  }
  // The device's program checks every value and answers beside the field it refuses.
  for (const form of [mark, group, client]) form.noValidate = true;
}

function groupName(id) {
  const g = groupList.find((x) => x.m_id === id);
  return g ? g.m_name : id === '0' ? '' : 'group ' + id;
}

function fillGroupSelect() {
  const select = document.getElementById('c-m_group_id');
  const keep = select.value;
  select.replaceChildren(new Option('(none)', '0'));
  for (const g of groupList) select.append(new Option(g.m_name, g.m_id));
  select.value = keep || '0';
}

// ---- stations and marks ---------------------------------------------------------------------

function markOf(marks, mac) {
  const m = marks.find((x) => x.mac === mac);
  return m ? m.mark : '';
}

function startMarking(mac, current) {
  document.getElementById('m-mac').value = mac;
  document.getElementById('m-mark').value = current;
  document.getElementById('m-mark').focus();
}

function renderStations(doc, marks) {
  const list = ((doc.DevStalist || {}).sta || []).filter((s) => s.mac);
  document.getElementById('station-count').textContent = '(' + list.length + ')';
  CL.fill(document.getElementById('stations'), list, [
    (s) => s.mac, (s) => s.name, (s) => s.ip, (s) => s.signal + ' dBm',
    (s) => s.tx_rate + ' / ' + s.rx_rate, (s) => CL.runtime(s.time), (s) => s.mark,
    (s) => markOf(marks, s.mac),
  ], (s, tr) => {
    tr.dataset.mac = s.mac;
    return [CL.button('Mark', 'secondary mark', () => startMarking(s.mac, markOf(marks, s.mac)))];
  }, 'No station is associated.');
}

function renderApStations(doc, marks) {
  // The view ends in a placeholder station without a MAC.
  const list = ((doc.DevStalist || {}).sta || []).filter((s) => s.mac);
  document.getElementById('apstation-count').textContent = '(' + list.length + ' shown, ' +
    ((doc.DevStalist || {}).count || '0') + ' associated)';
  CL.fill(document.getElementById('apstations'), list, [
    (s) => s.mac, (s) => s.ip, (s) => s.signal + ' dBm', (s) => s.radioid + ' / WLAN ' + s.wlanid,
    (s) => s.time, (s) => markOf(marks, s.mac),
  ], null, 'No station on a managed access point.');
}

// ---- groups ---------------------------------------------------------------------------------

function editGroup(g) {
  editingGroup = g ? g.m_id : null;
  document.getElementById('g-m_name').value = g ? g.m_name : '';
  document.getElementById('group-form-title').textContent = g ? 'Rename group "' + g.m_name + '"' : 'Add a group';
  document.getElementById('group-submit').textContent = g ? 'Save group' : 'Add group';
  document.getElementById('group-cancel').hidden = !g;
}

function renderGroups(doc) {
  const groups = ((doc.Groups || {}).data || []).filter((g) => g.m_id);
  groupList = groups;
  document.getElementById('group-count').textContent = '(' + groups.length + ' of ' + ((doc.Groups || {}).max_count || '10') + ')';
  CL.fill(document.getElementById('groups'), groups, [(g) => g.m_name], (g, tr) => {
    tr.dataset.name = g.m_name;
    return [
      CL.button('Rename', 'secondary modify', () => editGroup(g)),
      CL.button('Delete', 'danger delete', () => CL.change({ form: 'group', action: 'delete', id: g.m_id },
        'Group "' + g.m_name + '" deleted.', null, load)),
    ];
  }, 'No client groups yet.');
  fillGroupSelect();
}

// ---- accounts -------------------------------------------------------------------------------

// Every member the account view shows, as the client form takes them back: a modify stores
// exactly what it is sent.
function accountFields(a) {
  const fields = {};
  for (const [k, v] of Object.entries(a)) if (k !== 'm_index') fields[k] = v;
  return fields;
}

function editClient(a) {
  editingClient = a || null;
  const set = (name, v) => { document.getElementById('c-' + name).value = v; };
  set('m_name', a ? a.m_name : '');
  set('m_haddr', a ? a.m_haddr : '');
  set('m_group_id', a ? a.m_group_id : '0');
  set('m_mark', a ? a.m_mark : '');
  document.getElementById('c-m_is_bindmac').checked = a ? a.m_is_bindmac === '1' : false;
  document.getElementById('c-m_is_deny').checked = a ? a.m_is_deny === '1' : false;
  document.getElementById('client-form-title').textContent = a ? 'Modify account "' + a.m_name + '"' : 'Add an account';
  document.getElementById('client-submit').textContent = a ? 'Save account' : 'Add account';
  document.getElementById('client-cancel').hidden = !a;
}

function setDeny(a, deny) {
  const fields = { ...accountFields(a), form: 'client', action: 'modify', id: a.m_id, m_is_deny: deny ? '1' : '0' };
  return CL.change(fields, deny ? '"' + a.m_name + '" is on the blacklist.' : '"' + a.m_name + '" is off the blacklist.', null, load);
}

function renderClients(doc) {
  accounts = ((doc.Clients || {}).data || []).filter((a) => a.m_id);
  document.getElementById('client-count').textContent = '(' + accounts.length + ' of ' + ((doc.Clients || {}).max_count || '300') + ')';
  CL.fill(document.getElementById('clients'), accounts, [
    (a) => a.m_name, (a) => a.m_haddr, (a) => groupName(a.m_group_id),
    (a) => (a.m_is_bindmac === '1' ? '✓' : ''), (a) => (a.m_is_deny === '1' ? '✓' : ''), (a) => a.m_mark,
  ], (a, tr) => {
    tr.dataset.name = a.m_name;
    return [
      CL.button('Modify', 'secondary modify', () => editClient(a)),
      a.m_is_deny === '1' ? CL.button('Unblock', 'secondary unblock', () => setDeny(a, false))
        : CL.button('Blacklist', 'secondary blacklist', () => setDeny(a, true)),
      CL.button('Delete', 'danger delete', () => CL.change({ form: 'client', action: 'delete', id: a.m_id, m_haddr: a.m_haddr },
        'Account "' + a.m_name + '" deleted.', null, load)),
    ];
  }, 'No client accounts yet.');
}

function renderBlack(doc) {
  const black = ((doc.Clients || {}).data || []).filter((a) => a.m_id);
  document.getElementById('black-count').textContent = '(' + black.length + ')';
  CL.fill(document.getElementById('black'), black, [(a) => a.m_name, (a) => a.m_haddr, (a) => a.m_mark], (a, tr) => {
    tr.dataset.name = a.m_name;
    return [CL.button('Remove from blacklist', 'secondary unblock', () => setDeny(a, false))];
  }, 'Nobody is blacklisted.');
}

async function load() {
  const [groups, clients, black, stations, apstations, marks] = await Promise.all(
    ['groups', 'clients', 'black', 'stations', 'apstations', 'marks'].map((v) => CL.view(v)));
  renderGroups(groups);
  renderClients(clients);
  renderBlack(black);
  renderStations(stations, marks.marks || []);
  renderApStations(apstations, marks.marks || []);
}

function start() {
  WM.menu('clients');
  buildForms();
  const markForm = document.getElementById('mark-form');
  markForm.addEventListener('submit', (e) => {
    e.preventDefault();
    const mac = document.getElementById('m-mac').value.trim();
    CL.change({ form: 'mark', mac, mark: document.getElementById('m-mark').value }, 'Station ' + mac + ' marked.', markForm, load);
  });
  document.getElementById('mark-clear').addEventListener('click', () => {
    const mac = document.getElementById('m-mac').value.trim();
    CL.change({ form: 'unmark', mac }, 'The mark of ' + mac + ' is cleared.', markForm, load);
  });

  const groupForm = document.getElementById('group-form');
  groupForm.addEventListener('submit', async (e) => {
    e.preventDefault();
    const name = document.getElementById('g-m_name').value.trim();
    const fields = editingGroup === null ? { form: 'group', action: 'add', m_name: name }
      : { form: 'group', action: 'modify', id: editingGroup, m_id: editingGroup, m_name: name };
    if (await CL.change(fields, 'Group "' + name + '" ' + (editingGroup === null ? 'added.' : 'saved.'), groupForm, load)) editGroup(null);
  });
  document.getElementById('group-cancel').addEventListener('click', () => editGroup(null));
  document.getElementById('groups-delete-all').addEventListener('click', () => {
    if (confirm('Delete every client group?')) CL.change({ form: 'group', action: 'deleteall' }, 'All groups deleted.', null, load);
  });

  const clientForm = document.getElementById('client-form');
  clientForm.addEventListener('submit', async (e) => {
    e.preventDefault();
    const value = (name) => document.getElementById('c-' + name).value.trim();
    const fields = {
      ...(editingClient ? accountFields(editingClient) : {}),
      form: 'client',
      m_name: value('m_name'),
      m_haddr: value('m_haddr'),
      m_group_id: value('m_group_id'),
      m_mark: value('m_mark'),
      m_is_bindmac: document.getElementById('c-m_is_bindmac').checked ? '1' : '0',
      m_is_deny: document.getElementById('c-m_is_deny').checked ? '1' : '0',
    };
    if (editingClient) Object.assign(fields, { action: 'modify', id: editingClient.m_id });
    else fields.action = 'add';
    if (await CL.change(fields, 'Account "' + fields.m_name + '" ' + (editingClient ? 'saved.' : 'added.'), clientForm, load)) editClient(null);
  });
  document.getElementById('client-cancel').addEventListener('click', () => editClient(null));
  document.getElementById('clients-delete-all').addEventListener('click', () => {
    if (confirm('Delete every client account?')) CL.change({ form: 'client', action: 'deleteall' }, 'All accounts deleted.', null, load);
  });
  load().catch((e) => WM.show(e.message, false));
}

start();
