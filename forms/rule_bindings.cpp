// The variables each rule-list page sends, and the working-element member each one fills.
#include "forms/rule_bindings.h"

namespace wm {
namespace {

using namespace conv;

constexpr const char *kWeekdays[WEBMGMT_WEEKDAY_COUNT] = {
    "weekday1", "weekday2", "weekday3", "weekday4", "weekday5", "weekday6", "weekday7"};
constexpr const char *kGroupWeekdays[WEBMGMT_WEEKDAY_COUNT] = {
    "t_weekday1", "t_weekday2", "t_weekday3", "t_weekday4",
    "t_weekday5", "t_weekday6", "t_weekday7"};

void bind_weekdays(Bindings &b, const char *const (&names)[WEBMGMT_WEEKDAY_COUNT],
                   int32_t (&days)[WEBMGMT_WEEKDAY_COUNT]) {
    for (int d = 0; d < WEBMGMT_WEEKDAY_COUNT; ++d)
        b.add<kInt>(names[d], days[d]);
}

// A rule's own schedule: "weekday1".."weekday7", "start_time", "end_time".
template <typename Item> void bind_own_schedule(Bindings &b, Item &e) {
    bind_weekdays(b, kWeekdays, e.weekday);
    b.add<kText>("start_time", e.start_time);
    b.add<kText>("end_time", e.end_time);
}

// The copy of the chosen time group under the "t_" prefix.
void bind_time_copy(Bindings &b, rule_timegroup_copy &t) {
    b.add<kInt>("t_id", t.id);
    b.add<kText>("t_name", t.name);
    bind_weekdays(b, kGroupWeekdays, t.weekday);
    b.add<kText>("t_start_time", t.start_time);
    b.add<kText>("t_end_time", t.end_time);
    b.add<kText>("t_mark", t.mark);
    b.add<kInt>("t_enable", t.enable);
}

// The copy of the chosen IP group under the "ip_" prefix.
void bind_ip_copy(Bindings &b, rule_ipgroup_copy &ip) {
    b.add<kInt>("ip_id", ip.id);
    b.add<kText>("ip_name", ip.name);
    b.add<kText>("ip_start_ip", ip.start_ip);
    b.add<kText>("ip_end_ip", ip.end_ip);
    b.add<kText>("ip_mark", ip.mark);
    b.add<kInt>("ip_enable", ip.enable);
}

} // namespace

void bind_vsipport(Bindings &b, vsipport_item &e) {
    b.add<kInt>("id", e.id);
    b.add<kText>("name", e.name);
    b.add<kText>("devname", e.devname);
    b.add<kInt>("protocol", e.protocol);
    b.add<kText>("innerip", e.innerip);
    // Misspelled so on purpose: the pages send these names.
    b.add<kInt>("extren_Port_From", e.extern_port_from);
    b.add<kInt>("extren_Port_To", e.extern_port_to);
    b.add<kInt>("inner_Port_From", e.inner_port_from);
    b.add<kInt>("inner_Port_To", e.inner_port_to);
    b.add<kInt>("status", e.status);
    b.add<kText>("mark", e.mark);
    b.add<kInt>("wanid", e.wanid);
    b.add<kInt>("enable", e.enable);
}

void bind_fwipport(Bindings &b, fwipport_item &e) {
    b.add<kInt>("id", e.id);
    b.add<kText>("name", e.name);
    b.add<kText>("devname", e.devname);
    b.add<kInt>("ipcontrol", e.ipcontrol);
    b.add<kInt>("ipgroup_id", e.ipgroup_id);
    b.add<kText>("ipname", e.ipname);
    b.add<kInt>("timecontrol", e.timecontrol);
    b.add<kInt>("timegroup_id", e.timegroup_id);
    b.add<kText>("timename", e.timename);
    bind_time_copy(b, e.t);
    bind_ip_copy(b, e.ip);
    bind_own_schedule(b, e);
    b.add<kText>("startip", e.startip);
    b.add<kText>("endip", e.endip);
    b.add<kInt>("startport", e.startport);
    b.add<kInt>("endport", e.endport);
    b.add<kInt>("protocol", e.protocol);
    b.add<kText>("mark", e.mark);
    b.add<kInt>("enable", e.enable);
    b.add<kInt>("status", e.status);
}

void bind_ipgroup(Bindings &b, ipgroup_item &e) {
    b.add<kInt>("id", e.id);
    b.add<kText>("name", e.name);
    b.add<kText>("start_ip", e.start_ip);
    b.add<kText>("end_ip", e.end_ip);
    b.add<kText>("mark", e.mark);
    b.add<kInt>("enable", e.enable);
}

void bind_timegroup(Bindings &b, timegroup_item &e) {
    b.add<kInt>("id", e.id);
    b.add<kText>("name", e.name);
    bind_own_schedule(b, e);
    b.add<kText>("mark", e.mark);
    b.add<kInt>("enable", e.enable);
}

void bind_fwmac(Bindings &b, fwmac_item &e) {
    b.add<kInt>("id", e.id);
    b.add<kText>("name", e.name);
    b.add<kText>("devname", e.devname);
    b.add<kText>("devmac", e.devmac);
    b.add<kInt>("timecontrol", e.timecontrol);
    b.add<kInt>("timegroup_id", e.timegroup_id);
    b.add<kText>("timename", e.timename);
    bind_own_schedule(b, e);
    b.add<kInt>("status", e.status);
    b.add<kText>("mark", e.mark);
    bind_time_copy(b, e.t);
}

void bind_fwurl(Bindings &b, fwurl_item &e) {
    b.add<kText>("name", e.name);
    b.add<kText>("devname", e.devname);
    b.add<kInt>("ipgroup_id", e.ipgroup_id);
    b.add<kInt>("id", e.id);
    // The URL page sends its IP group copy under "ipgroup_", without the group's id.
    b.add<kText>("ipgroup_name", e.ipgroup.name);
    b.add<kText>("ipgroup_start_ip", e.ipgroup.start_ip);
    b.add<kText>("ipgroup_end_ip", e.ipgroup.end_ip);
    b.add<kText>("ipgroup_mark", e.ipgroup.mark);
    b.add<kInt>("ipgroup_enable", e.ipgroup.enable);
    bind_time_copy(b, e.t);
    b.add<kInt>("timecontrol", e.timecontrol);
    b.add<kInt>("timegroup_id", e.timegroup_id);
    b.add<kText>("timename", e.timename);
    bind_own_schedule(b, e);
    b.add<kInt>("status", e.status);
    b.add<kInt>("enable", e.enable);
    b.add<kText>("mark", e.mark);
    b.add<kText>("url", e.url);
}

void bind_qos(Bindings &b, qos_item &e) {
    b.add<kText>("name", e.name);
    b.add<kText>("devname", e.devname);
    b.add<kInt>("id", e.id);
    b.add<kInt>("control_type", e.control_type);
    b.add<kInt>("ipcontrol", e.ipcontrol);
    b.add<kInt>("ipgroup_id", e.ipgroup_id);
    b.add<kText>("ipname", e.ipname);
    bind_ip_copy(b, e.ip);
    b.add<kInt>("timecontrol", e.timecontrol);
    b.add<kInt>("timegroup_id", e.timegroup_id);
    b.add<kText>("timename", e.timename);
    bind_time_copy(b, e.t);
    b.add<kText>("devmac", e.devmac);
    b.add<kText>("startip", e.startip);
    b.add<kText>("endip", e.endip);
    b.add<kInt>("bw_up", e.bw_up);
    b.add<kInt>("bw_down", e.bw_down);
    b.add<kInt>("bw_share_mode", e.bw_share_mode);
    bind_own_schedule(b, e);
    b.add<kInt>("status", e.status);
    b.add<kInt>("enable", e.enable);
    b.add<kText>("mark", e.mark);
}

} // namespace wm
