// What every page shares: the session token, the two CGI entry points, messages, the menu.
'use strict';

const WM = {
  lists: ['portforward', 'ipportfilter', 'macfilter', 'urlfilter', 'qos', 'ipgroup', 'timegroup'],

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

  menu(current) {
    const names = {
      overview: 'Overview', portforward: 'Port forwarding', ipportfilter: 'IP/port filter',
      macfilter: 'MAC filter', urlfilter: 'URL filter', qos: 'QoS', ipgroup: 'IP groups',
      timegroup: 'Time groups',
    };
    const header = document.createElement('header');
    const brand = document.createElement('span');
    brand.className = 'brand';
    brand.textContent = 'Router management';
    header.append(brand);
    for (const key of ['overview', ...WM.lists]) {
      const a = document.createElement('a');
      a.href = key === 'overview' ? '/overview.html' : '/rules.html?list=' + key;
      a.textContent = names[key];
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
