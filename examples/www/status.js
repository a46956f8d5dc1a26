// The status page: system figures and the load chart refreshed every few seconds; ports,
// addresses, IPv6 state, leases and the ARP table on load and with the system figures.
'use strict';
WM.menu('status');

const REFRESH_MS = 3000;
const HISTORY = 40; // samples kept in the chart
const SERIES = [
  ['All cores', '#1f3b57'], ['Core 1', '#2f6aa1'], ['Core 2', '#3f9b5a'],
  ['Core 3', '#d08a1e'], ['Core 4', '#b3362f'],
];
const history = SERIES.map(() => []);
let samples = 0;

async function statusView(view) {
  const url = '/cgi-bin/status.cgi?stork=' + encodeURIComponent(WM.token()) + '&view=' + view;
  const response = await fetch(url, { credentials: 'same-origin', cache: 'no-store' });
  if (response.status === 401) return WM.toLogin('expired');
  const body = await WM.readJson(response);
  if (!response.ok) throw new Error(body.error || 'The device answered ' + response.status + '.');
  return body;
}

function duration(seconds) {
  let s = Number(seconds);
  if (!Number.isFinite(s) || s < 0) return '—';
  const d = Math.floor(s / 86400); s -= d * 86400;
  const h = Math.floor(s / 3600); s -= h * 3600;
  const m = Math.floor(s / 60); s -= m * 60;
  const hms = [h, m, s].map((v) => String(v).padStart(2, '0')).join(':');
  return d ? d + ' d ' + hms : hms;
}

function facts(rows) {
  const table = document.getElementById('system');
  table.replaceChildren();
  for (const [label, value, meter] of rows) {
    const tr = document.createElement('tr');
    const th = document.createElement('th');
    th.textContent = label;
    tr.append(th);
    const td = WM.cell(tr, value);
    if (meter !== undefined) {
      const bar = document.createElement('span');
      bar.className = 'meter';
      const fill = document.createElement('div');
      fill.style.width = Math.max(0, Math.min(100, meter)) + '%';
      bar.append(fill);
      td.append(bar);
    }
    table.append(tr);
  }
}

function rows(tableId, items, cells) {
  const body = document.querySelector('#' + tableId + ' tbody');
  body.replaceChildren();
  if (!items.length) {
    const tr = document.createElement('tr');
    const td = WM.cell(tr, 'none');
    td.className = 'empty';
    td.colSpan = document.querySelectorAll('#' + tableId + ' thead th').length;
    body.append(tr);
    return;
  }
  for (const item of items) {
    const tr = document.createElement('tr');
    for (const [text, cls] of cells(item)) {
      const td = WM.cell(tr, text === '' ? '—' : String(text));
      if (cls) td.className = cls;
    }
    body.append(tr);
  }
}

function drawChart() {
  const canvas = document.getElementById('cpu-chart');
  const ctx = canvas.getContext('2d');
  const w = canvas.width, h = canvas.height, pad = 28;
  ctx.clearRect(0, 0, w, h);
  ctx.font = '12px system-ui, sans-serif';
  ctx.fillStyle = '#6b7683';
  ctx.strokeStyle = '#e3e7ec';
  for (const p of [0, 25, 50, 75, 100]) {
    const y = h - pad / 2 - (h - pad) * p / 100;
    ctx.beginPath(); ctx.moveTo(pad, y); ctx.lineTo(w, y); ctx.stroke();
    ctx.fillText(p + '%', 0, y + 4);
  }
  SERIES.forEach(([, color], i) => {
    const points = history[i];
    if (!points.length) return;
    ctx.strokeStyle = color;
    ctx.lineWidth = i === 0 ? 2.5 : 1.5;
    ctx.beginPath();
    points.forEach((v, k) => {
      const x = pad + (w - pad) * (k + HISTORY - points.length) / (HISTORY - 1);
      const y = h - pad / 2 - (h - pad) * v / 100;
      if (k === 0) ctx.moveTo(x, y); else ctx.lineTo(x, y);
    });
    ctx.stroke();
  });
  canvas.dataset.samples = String(samples);
}

function legend(latest) {
  const box = document.getElementById('cpu-legend');
  box.replaceChildren();
  SERIES.forEach(([label, color], i) => {
    const span = document.createElement('span');
    span.style.setProperty('--c', color);
    span.textContent = label + ': ' + (latest ? latest[i] + ' %' : '—');
    box.append(span);
  });
}

async function refreshSystem() {
  const s = await statusView('system');
  facts([
    ['Uptime', duration(s.uptime)],
    ['Memory', s.mem_class + ' MB, ' + s.mem_usage + ' % in use', Number(s.mem_usage)],
    ['Connections', s.connections + ' of ' + s.connections_max],
  ]);
  s.cpu.forEach((v, i) => {
    history[i].push(Number(v));
    if (history[i].length > HISTORY) history[i].shift();
  });
  samples++;
  legend(s.cpu);
  drawChart();
}

async function refreshTables() {
  const [ports, leases, arp, ipv6] = await Promise.all(
    [statusView('ports'), statusView('leases'), statusView('arp'), statusView('ipv6')]);
  rows('ports', ports.ports, (p) => [
    [p.port], [p.ifname], [p.link, p.link === 'up' ? 'up' : 'down'], [p.speed], [p.duplex],
    [p.rx], [p.tx], [p.rx_packets + ' / ' + p.tx_packets],
  ]);
  rows('addresses', ports.ports, (p) => [[p.ifname], [p.ip], [p.mask], [p.mac]]);
  document.getElementById('gateway').textContent =
    ports.gateway ? ports.gateway + ' (' + ports.gateway_if + ')' : 'none';
  rows('leases', leases.leases, (l) => [[l.name], [l.mac], [l.ip], [duration(l.expires)]]);
  rows('arp', arp.arp, (a) => [[a.ip], [a.mac], [a.name]]);
  document.getElementById('ipv6-if').textContent = ipv6.ifname;
  rows('ipv6-addresses', ipv6.addresses, (a) => [[a.address], [a.prefix], [a.scope]]);
  document.getElementById('ipv6-gateway').textContent = ipv6.gateway || 'none';
  document.getElementById('ipv6-dns').textContent = ipv6.dns.join(', ') || 'none';
  rows('ipv6-routes', ipv6.routes, (r) => [[r.destination + '/' + r.prefix], [r.next_hop], [r.metric], [r.device]]);
}

async function tick() {
  try {
    await refreshSystem();
    await refreshTables();
  } catch (e) {
    WM.show(e.message, false);
  } finally {
    setTimeout(tick, REFRESH_MS);
  }
}

legend(null);
drawChart();
tick();
