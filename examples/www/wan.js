// The WAN page: the four WAN lines (each edited with its connection type's fields only),
// bypass and cloud management, saved through wan.cgi.
'use strict';

const CONNECTIONS = { 0: 'Static address', 1: 'DHCP client', 2: 'PPPoE' };
const lineForm = document.getElementById('line-form');
let lines = [];

// Shows the fields of the chosen connection type; the others are not sent.
function showConnection(type) {
  for (const box of lineForm.querySelectorAll('.conn')) box.hidden = box.dataset.conn !== type;
}

function editLine(index) {
  const line = lines[index];
  Fields.clearErrors(lineForm);
  for (const box of lineForm.querySelectorAll('.conn')) Fields.fill(box, line);
  Fields.fill(lineForm, { line: String(index), enable: line.enable, conn_type: CONNECTIONS[line.conn_type] ? line.conn_type : '1' });
  showConnection(lineForm.conn_type.value);
  document.getElementById('line-title').textContent = 'WAN line ' + (index + 1);
  document.getElementById('line-card').hidden = false;
}

async function loadLines() {
  lines = (await Fields.get('wan.cgi', 'wan')).wanconfig;
  const tbody = document.querySelector('#lines tbody');
  tbody.replaceChildren();
  lines.forEach((line, i) => {
    const row = document.createElement('tr');
    row.dataset.line = String(i);
    WM.cell(row, 'WAN ' + (i + 1));
    WM.cell(row, line.enable === '1' ? 'in use' : 'off');
    WM.cell(row, CONNECTIONS[line.conn_type] || 'type ' + line.conn_type);
    WM.cell(row, line.phy_name);
    WM.cell(row, line.conn_type === '0' ? line.ipaddr + ' / ' + line.subnet : '');
    WM.cell(row, line.conn_type === '2' ? line.ppp_username : '');
    const edit = document.createElement('button');
    edit.className = 'secondary edit';
    edit.textContent = 'Edit';
    edit.addEventListener('click', () => editLine(i));
    WM.cell(row, '').append(edit);
    tbody.append(row);
  });
}

async function loadSettings() {
  const [bypass, cloud] = await Promise.all([Fields.get('wan.cgi', 'bypass'), Fields.get('wan.cgi', 'cloud')]);
  Fields.fill(document.getElementById('bypass-form'), bypass);
  Fields.fill(document.getElementById('cloud-form'), cloud);
}

lineForm.conn_type.addEventListener('change', () => showConnection(lineForm.conn_type.value));
document.getElementById('line-cancel').addEventListener('click', () => { document.getElementById('line-card').hidden = true; });
lineForm.addEventListener('submit', async (event) => {
  event.preventDefault();
  const fields = { form: 'line', ...Fields.read(lineForm) };
  const index = Number(fields.line);
  if ((await Fields.post(lineForm, 'wan.cgi', fields, 'WAN line ' + (index + 1) + ' is saved.')) !== null) {
    await loadLines();
    editLine(index);
  }
});
for (const form of document.querySelectorAll('form[data-form]')) {
  form.addEventListener('submit', async (event) => {
    event.preventDefault();
    const done = form.dataset.form === 'bypass' ? 'The bypass settings are saved.' : 'The cloud settings are saved.';
    if ((await Fields.post(form, 'wan.cgi', { form: form.dataset.form, ...Fields.read(form) }, done)) !== null) await loadSettings();
  });
}

WM.menu('wan');
Promise.all([loadLines(), loadSettings()]).catch((e) => WM.show(e.message, false));
