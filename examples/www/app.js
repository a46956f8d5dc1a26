// What every page shares: the session token, the two CGI entry points, messages, the menu.
'use strict';

const WM = {

  // The cookie is HttpOnly; the token the login answered is kept for the query strings.
  token() {
    return sessionStorage.getItem('stork') || '';
  },

  toLogin(reason) {
    sessionStorage.removeItem('stork');
    location.replace('/login.html' + (reason ? '?reason=' + encodeURIComponent(reason) : ''));
    return new Promise(() => {}); // the page is going away
  },

  async readJson(response) {
    const text = await response.text();
    try {
      return JSON.parse(text);
    } catch (e) {
      throw new Error('The device sent an answer that is not valid JSON (status ' + response.status + ').');
    }
  },

  // GET one section's view.
  async view(name) {
    const url = '/cgi-bin/view.cgi?stork=' + encodeURIComponent(WM.token()) + '&name=' + encodeURIComponent(name);
    const response = await fetch(url, { credentials: 'same-origin', cache: 'no-store' });
    if (response.status === 401) return WM.toLogin('expired');
    const body = await WM.readJson(response);
    if (!response.ok) throw new Error(body.error || 'The device answered ' + response.status + '.');
    return body;
  },

  // POST a form to a CGI program; the token goes in the query string as well as the cookie.
  async post(program, fields) {
    const url = '/cgi-bin/' + program + '?stork=' + encodeURIComponent(WM.token());
    const response = await fetch(url, {
      method: 'POST',
      credentials: 'same-origin',
      headers: { 'Content-Type': 'application/x-www-form-urlencoded' },
      body: new URLSearchParams(fields).toString(),
    });
    if (response.status === 401) return WM.toLogin('expired');
    const body = await WM.readJson(response);
    if (!response.ok) throw new Error(body.error || 'The device answered ' + response.status + '.');
    return body;
  },

  show(text, ok) {
    const box = document.getElementById('message');
    box.textContent = text;
    box.className = ok ? 'ok' : 'error';
  },

  // The menu: [key, label, address]. Each area of the console has its own page and CGI
  // programs; the rule lists share rules.html.
  pages: [
    ['overview', 'Overview', '/overview.html'],
    ['status', 'Status', '/status.html'],
    ['lan', 'LAN & DHCP', '/lan.html'],
    ['wan', 'WAN', '/wan.html'],
    ['system', 'System', '/system.html'],
    ['wireless', 'Wireless', '/wireless.html'],
    ['fleet', 'Access points', '/fleet.html'],
    ['templates', 'AP templates', '/templates.html'],
    ['wlan', 'Wireless overview', '/wlan.html'],
    ['clients', 'Clients', '/clients.html'],
    ['acl', 'Access lists', '/acl.html'],
    ['portforward', 'Port forwarding', '/rules.html?list=portforward'],
    ['ipportfilter', 'IP/port filter', '/rules.html?list=ipportfilter'],
    ['macfilter', 'MAC filter', '/rules.html?list=macfilter'],
    ['urlfilter', 'URL filter', '/rules.html?list=urlfilter'],
    ['qos', 'QoS', '/rules.html?list=qos'],
    ['ipgroup', 'IP groups', '/rules.html?list=ipgroup'],
    ['timegroup', 'Time groups', '/rules.html?list=timegroup'],
  ],

  menu(current) {
    const header = document.createElement('header');
    const brand = document.createElement('span');
    brand.className = 'brand';
    brand.textContent = 'Router management';
    header.append(brand);
    for (const [key, label, href] of WM.pages) {
      const a = document.createElement('a');
      a.href = href;
      a.textContent = label;
      a.id = 'nav-' + key;
      if (key === current) a.className = 'current';
      header.append(a);
    }
    const logout = document.createElement('button');
    logout.id = 'logout';
    logout.className = 'secondary';
    logout.textContent = 'Log out';
    logout.addEventListener('click', async () => {
      try {
        await WM.post('logout.cgi', {});
      } finally {
        WM.toLogin('logout');
      }
    });
    header.append(logout);
    document.body.prepend(header);
  },

  cell(row, text) {
    const td = document.createElement('td');
    td.textContent = text;
    row.append(td);
    return td;
  },
};
