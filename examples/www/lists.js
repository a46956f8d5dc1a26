// The seven rule lists: the form variables each editor sends (the library's names, the
// pages' misspellings included) and the keys of the list's view that show them.
'use strict';

const ON_OFF = [['1', 'Enabled'], ['0', 'Disabled']];
const PROTOCOLS = [['1', 'TCP'], ['2', 'UDP'], ['3', 'TCP and UDP']];
const WEEKDAYS = ['Mon', 'Tue', 'Wed', 'Thu', 'Fri', 'Sat', 'Sun'].map((day, i) => ({
  name: 'weekday' + (i + 1), key: 'weekday' + (i + 1), label: day, type: 'checkbox',
}));

const LISTS = {
  portforward: {
    title: 'Port forwarding',
    object: 'vsipport',
    switchVar: 'enable', switchLabel: 'Port forwarding enabled',
    fields: [
      { name: 'name', key: 'name', label: 'Name', required: true },
      { name: 'innerip', key: 'devip', label: 'Internal address', placeholder: '192.168.1.10' },
      { name: 'protocol', key: 'protocol', label: 'Protocol', options: PROTOCOLS },
      { name: 'extren_Port_From', key: 'devexternfromport', label: 'External port from', number: true },
      { name: 'extren_Port_To', key: 'devexterntoport', label: 'External port to', number: true },
      { name: 'inner_Port_From', key: 'devinnerfromport', label: 'Internal port from', number: true },
      { name: 'inner_Port_To', key: 'devinnertoport', label: 'Internal port to', number: true },
      { name: 'status', key: 'status', label: 'State', options: ON_OFF },
      { name: 'mark', key: 'mark', label: 'Note' },
    ],
  },
  ipportfilter: {
    title: 'IP/port filter',
    object: 'fwipport',
    switchVar: 'mode', switchLabel: 'IP/port filter enabled',
    fixed: { ipcontrol: '0', timecontrol: '0' }, // own address range, at all times
    fields: [
      { name: 'name', key: 'name', label: 'Name', required: true },
      { name: 'startip', key: 'devstartip', label: 'First address', placeholder: '192.168.1.100' },
      { name: 'endip', key: 'devendip', label: 'Last address', placeholder: '192.168.1.120' },
      { name: 'startport', key: 'devfromport', label: 'Port from', number: true },
      { name: 'endport', key: 'devtoport', label: 'Port to', number: true },
      { name: 'protocol', key: 'protocol', label: 'Protocol', options: PROTOCOLS },
      { name: 'status', key: 'status', label: 'State', options: ON_OFF },
      { name: 'mark', key: 'mark', label: 'Note' },
    ],
  },
  macfilter: {
    title: 'MAC filter',
    object: 'fwmac',
    switchVar: 'mode', switchLabel: 'MAC filter enabled',
    fixed: { timecontrol: '0' },
    fields: [
      { name: 'name', key: 'name', label: 'Name', required: true },
      { name: 'devmac', key: 'devmac', label: 'MAC address', placeholder: '00:11:22:33:44:55' },
      { name: 'status', key: 'status', label: 'State', options: ON_OFF },
      { name: 'mark', key: 'mark', label: 'Note' },
    ],
  },
  urlfilter: {
    title: 'URL filter',
    object: 'fwurl',
    switchVar: 'mode', switchLabel: 'URL filter enabled',
    fixed: { timecontrol: '0' },
    fields: [
      { name: 'name', key: 'name', label: 'Name', required: true },
      { name: 'url', key: 'url', label: 'URL', placeholder: 'example.com' },
      { name: 'status', key: 'status', label: 'State', options: ON_OFF },
      { name: 'mark', key: 'mark', label: 'Note' },
    ],
  },
  qos: {
    title: 'QoS',
    object: 'qos',
    switchVar: 'mode', switchLabel: 'Bandwidth control enabled',
    fixed: { ipcontrol: '0', timecontrol: '0' },
    fields: [
      { name: 'name', key: 'name', label: 'Name', required: true },
      { name: 'startip', key: 'devstartip', label: 'First address', placeholder: '192.168.1.100' },
      { name: 'endip', key: 'devendip', label: 'Last address', placeholder: '192.168.1.120' },
      { name: 'bw_up', key: 'bw_up', label: 'Upload (kbit/s)', number: true },
      { name: 'bw_down', key: 'bw_down', label: 'Download (kbit/s)', number: true },
      { name: 'status', key: 'status', label: 'State', options: ON_OFF },
      { name: 'mark', key: 'mark', label: 'Note' },
    ],
  },
  ipgroup: {
    title: 'IP groups',
    object: 'useripgroup',
    fields: [
      { name: 'name', key: 'name', label: 'Name', required: true },
      { name: 'start_ip', key: 'startip', label: 'First address', placeholder: '192.168.1.100' },
      { name: 'end_ip', key: 'endip', label: 'Last address', placeholder: '192.168.1.120' },
      { name: 'mark', key: 'mark', label: 'Note' },
    ],
  },
  timegroup: {
    title: 'Time groups',
    object: 'usertimegroup',
    fields: [
      { name: 'name', key: 'name', label: 'Name', required: true },
      ...WEEKDAYS,
      { name: 'start_time', key: 'start_time', label: 'From', placeholder: '08:00' },
      { name: 'end_time', key: 'end_time', label: 'To', placeholder: '18:00' },
      { name: 'mark', key: 'mark', label: 'Note' },
    ],
  },
};

// The library's answers as sentences: 10 is the forms' own code for a duplicate, the
// others are the configuration store's list codes (CONFIG_ERR_* of its header).
const RESULT_TEXT = {
  10: 'A rule with this name or the same settings already exists',
  3: 'The list is full',
  4: 'This rule no longer exists',
  [-1]: 'The settings could not be written',
};
