// The store keeps each rule as its list's slot record; the forms collect it in a working
// element. These fill a zeroed slot from a working element: dotted addresses become address
// members, numbers take the slot's width, texts are cut to the slot's member.
#pragma once

#include "webmgmt.h"

namespace wm {

void to_slot(const vsipport_item &e, vsipport_rule &s);
void to_slot(const fwipport_item &e, fwipport_rule &s);
void to_slot(const ipgroup_item &e, ipgroup_entry &s);
void to_slot(const timegroup_item &e, timegroup_entry &s);
void to_slot(const fwmac_item &e, fwmac_rule &s);
void to_slot(const fwurl_item &e, fwurl_rule &s);
void to_slot(const qos_item &e, qos_rule &s);

} // namespace wm
