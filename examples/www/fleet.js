// What the fleet pages share: fleet.cgi's answers, readable numbers, tables, and reading the
// two documents the device prints in shapes of their own (the survey's XML and the members
// of a template).
'use strict';

const Fleet = {
  async fetch(params) {
    const query = new URLSearchParams({ stork: WM.token(), ...params });
    const response = await fetch('/cgi-bin/fleet.cgi?' + query.toString(), { credentials: 'same-origin', cache: 'no-store' });
    if (response.status === 401) return WM.toLogin('expired');
    const text = await response.text();
    if (!response.ok) {
      let message = 'The device answered ' + response.status + '.';
      try { message = JSON.parse(text).error || message; } catch (e) { /* not JSON */ }
      throw new Error(message);
    }
    return text;
  },

  async json(params) {
    const text = await Fleet.fetch(params);
    try {
      return JSON.parse(text);
    } catch (e) {
      throw new Error('The device sent an answer that is not valid JSON.');
    }
  },

  // The rows of the list documents, one document per device (the {} sentinel left out).
  rows(listAnswer) {
    const rows = [];
    for (const doc of listAnswer.devices) {
      for (const row of (doc.ApDevList && doc.ApDevList.data) || []) {
        if (row.m_dev_mac) rows.push(row);
      }
    }
    return rows;
  },

  // Byte counters arrive as decimal text of up to 64 bits.
  bytes(text) {
    let n = Number(text || 0);
    const units = ['B', 'KB', 'MB', 'GB', 'TB'];
    let unit = 0;
    while (n >= 1024 && unit < units.length - 1) { n /= 1024; unit++; }
    return (unit === 0 ? String(n) : n.toFixed(n < 10 ? 2 : 1)) + ' ' + units[unit];
  },

  band(radioType) {
    if (radioType === '0') return 'unused';
    return radioType === '1' ? '2.4 GHz' : radioType === '2' ? '5 GHz' : 'type ' + radioType;
  },

  // Fills a tbody with rows of cells: text, or a node placed as is.
  fill(tbody, rows, emptyText, columns) {
    tbody.replaceChildren();
    if (rows.length === 0) {
      const tr = document.createElement('tr');
      const td = WM.cell(tr, emptyText);
      td.className = 'empty';
      td.colSpan = columns;
      tbody.append(tr);
      return;
    }
    for (const cells of rows) {
      const tr = document.createElement('tr');
      for (const c of cells) {
        if (c instanceof Node) {
          const td = document.createElement('td');
          td.append(c);
          tr.append(td);
        } else {
          WM.cell(tr, c === undefined || c === '' ? '—' : String(c));
        }
      }
      tbody.append(tr);
    }
  },

  facts(table, pairs) {
    table.replaceChildren();
    for (const [label, value] of pairs) {
      const tr = document.createElement('tr');
      const th = document.createElement('th');
      th.textContent = label;
      tr.append(th);
      WM.cell(tr, value === undefined || value === '' ? '—' : String(value));
      table.append(tr);
    }
  },

  link(text, href) {
    const a = document.createElement('a');
    a.href = href;
    a.textContent = text;
    return a;
  },

  // The survey: <chnel> lines and <data> lines. The device writes the network names as the
  // APs stored them, quoted or not, so the lines are read one by one rather than as XML.
  survey(text) {
    const channels = [];
    const networks = [];
    for (const line of text.split('\n')) {
      let m = /^<chnel( curr="1")?>(\d+)<\/chnel>$/.exec(line);
      if (m) { channels.push({ channel: m[2], current: !!m[1] }); continue; }
      m = /^<data id="(\d+)" channel="(-?\d+)" value="(-?\d+)" name=(.*) bssid="([0-9A-F:]{17})" quality="(.?)"> <\/data>$/.exec(line);
      if (m) {
        let name = m[4];
        if (name.length >= 2 && name.startsWith('"') && name.endsWith('"')) name = name.slice(1, -1);
        networks.push({ id: m[1], channel: m[2], signal: m[3], name, bssid: m[5], quality: m[6] });
      }
    }
    return { channels, networks };
  },

  // The devices of a template, one document per device. The device's page reads the row
  // with its radios standing outside the row object; joined back, the document is JSON.
  members(text) {
    const rows = [];
    for (const doc of text.split('\x1e')) {
      if (!doc) continue;
      const joined = doc.replace(/"\},"m_radio":\[/g, '","m_radio":[');
      const parsed = JSON.parse(joined);
      for (const row of parsed.ApDevList.data || []) if (row.m_dev_mac) rows.push(row);
    }
    return rows;
  },
};
