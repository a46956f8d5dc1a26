// The binding tables of the rule-list element forms: one function per list that binds the
// form's variables to the members of its working element.
#pragma once

#include "forms/binding.h"

namespace wm {

void bind_vsipport(Bindings &b, vsipport_item &e);
void bind_fwipport(Bindings &b, fwipport_item &e);
void bind_ipgroup(Bindings &b, ipgroup_item &e);
void bind_timegroup(Bindings &b, timegroup_item &e);
void bind_fwmac(Bindings &b, fwmac_item &e);
void bind_fwurl(Bindings &b, fwurl_item &e);
void bind_qos(Bindings &b, qos_item &e);

} // namespace wm
