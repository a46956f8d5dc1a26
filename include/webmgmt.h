/*
 * webmgmt: the support library of the router's web-management CGI programs.
 *
 * The one header a CGI program includes. Each subsystem declares its records and functions
 * in a header of its own under webmgmt/, which also compiles alone:
 *
 *   webmgmt/common.h        export macros, static assertions, C-linkage brackets
 *   webmgmt/request.h       request decoding, template variables and pages, upload, diagnostics
 *   webmgmt/fields.h        property files and field tables
 *   webmgmt/record_types.h  the building blocks of every configuration record
 *   webmgmt/wireless.h      wireless and system records and their field-table builders
 *   webmgmt/network.h       LAN, WAN and rule-list records and their field-table builders
 *   webmgmt/device.h        managed access points, AP templates, scan results, stations,
 *                           client accounts and groups, station marks, the update schedule
 *   webmgmt/forms.h         the form framework, duplicate filters and the forms
 *   webmgmt/views.h         the JSON and XML views
 *   webmgmt/session.h       login sessions, lock-out and password hashing
 *   webmgmt/probes.h        commands and processes, interfaces and ports, ARP and leases,
 *                           statistics, firmware verification and small conversions
 */
#ifndef WEBMGMT_H
#define WEBMGMT_H

#include "webmgmt/common.h"
#include "webmgmt/request.h"
#include "webmgmt/fields.h"
#include "webmgmt/record_types.h"
#include "webmgmt/wireless.h"
#include "webmgmt/network.h"
#include "webmgmt/device.h"
#include "webmgmt/forms.h"
#include "webmgmt/views.h"
#include "webmgmt/session.h"
#include "webmgmt/probes.h"

#endif /* WEBMGMT_H */
