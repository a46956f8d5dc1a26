// Views of the rule lists: port forwarding, IP/port filter, address and time groups, MAC and
// URL filters, bandwidth rules. Every view prints all slots of its table whatever the count
// says (the page filters by the count), and "max_count" is the table's capacity.
#include <iterator>

#include "views/json_print.h"

namespace wm {
namespace {

using json::Sep;

// --- Pieces shared by the slots ---------------------------------------------------------

// "lock_location", "id", "name": every slot begins with them.
template <typename Slot> void slot_head(const Slot &s) {
    json::number("lock_location", s.lock_location);
    json::number("id", s.id);
    json::text("name", s.name);
}

// "weekday1" to "weekday7", then the daily window.
template <typename Slot> void week_and_hours(const Slot &s) {
    static constexpr const char *kKeys[] = {"weekday1", "weekday2", "weekday3", "weekday4",
                                            "weekday5", "weekday6", "weekday7"};
    const uint8_t days[] = {s.weekday1, s.weekday2, s.weekday3, s.weekday4,
                            s.weekday5, s.weekday6, s.weekday7};
    for (size_t i = 0; i < std::size(days); ++i)
        json::number(kKeys[i], days[i]);
    json::text("start_time", s.start_time);
    json::text("end_time", s.end_time);
}

// A filter's schedule: the time-group switch and group, then the days and hours.
template <typename Slot> void schedule(const Slot &s) {
    json::number("timecontrol", s.timecontrol);
    json::number("timegroup_id", s.timegroup_id);
    week_and_hours(s);
}

// The address selection of the IP/port filter and the bandwidth rules.
template <typename Slot> void address_selection(const Slot &s) {
    json::number("ipcontrol", s.ipcontrol);
    json::short_number("ipgroup_id", s.ipgroup_id);
    json::ipv4("devstartip", s.devstartip);
    json::ipv4("devendip", s.devendip);
}

// "mark" and "resved", the last members of every slot.
template <typename Slot> void mark_and_resved(const Slot &s) {
    json::text("mark", s.mark);
    json::text("resved", s.resved, Sep::Last);
}

template <typename Slot> void status_mark_and_resved(const Slot &s) {
    json::number("status", s.status);
    mark_and_resved(s);
}

// --- One slot of each table ---------------------------------------------------------------

void vsipport_slot(const vsipport_rule &r) {
    slot_head(r);
    json::ipv4("devip", r.devip);
    json::number("protocol", r.protocol);
    json::number("devinnerfromport", r.devinnerfromport);
    json::number("devinnertoport", r.devinnertoport);
    json::number("devexternfromport", r.devexternfromport);
    json::number("devexterntoport", r.devexterntoport);
    json::number("wanid", r.wanid);
    status_mark_and_resved(r);
}

void fwipport_slot(const fwipport_rule &r) {
    slot_head(r);
    address_selection(r);
    json::number("devfromport", r.devfromport);
    json::number("devtoport", r.devtoport);
    json::number("protocol", r.protocol);
    schedule(r);
    status_mark_and_resved(r);
}

void ipgroup_slot(const ipgroup_entry &g) {
    slot_head(g);
    json::ipv4("startip", g.startip);
    json::ipv4("endip", g.endip);
    mark_and_resved(g);
}

void timegroup_slot(const timegroup_entry &g) {
    slot_head(g);
    week_and_hours(g);
    mark_and_resved(g);
}

void fwmac_slot(const fwmac_rule &r) {
    slot_head(r);
    schedule(r);
    status_mark_and_resved(r);
}

void fwurl_slot(const fwurl_rule &r) {
    slot_head(r);
    json::text("url", r.url);
    schedule(r);
    status_mark_and_resved(r);
}

void qos_slot(const qos_rule &r) {
    slot_head(r);
    json::number("control_type", r.control_type);
    json::text("devmac", r.devmac);
    address_selection(r);
    schedule(r);
    json::number("bw_up", r.bw_up);
    json::number("bw_down", r.bw_down);
    json::number("bw_shared_mode", r.bw_shared_mode);
    status_mark_and_resved(r);
}

// --- Whole documents --------------------------------------------------------------------

// The count: 16-bit in the rule lists, 32-bit in the two group lists.
inline void list_count(int16_t count) {
    json::short_number("count", count);
}
inline void list_count(int32_t count) {
    json::number("count", count);
}

// `"name":{`, the count, the capacity and every slot, up to the closing `]`.
template <typename List, typename PrintSlot>
void list_slots(const char *name, const List &list, PrintSlot print_slot) {
    json::open_object(name);
    list_count(list.count);
    json::number("max_count", static_cast<int>(std::size(list.element)));
    json::slots(list.element, print_slot);
    json::raw(']');
}

// A list object that carries its own "resved", then the record's, then the end.
template <typename List, typename PrintSlot, size_t N>
void list_and_record_end(const char *name, const List &list, PrintSlot print_slot,
                         const char (&record_resved)[N]) {
    list_slots(name, list, print_slot);
    json::raw(',');
    json::text("resved", list.resved, Sep::Last);
    json::close_object();
    json::text("resved", record_resved, Sep::Last);
    json::close_document();
}

} // namespace
} // namespace wm

namespace json = wm::json;

extern "C" {

void printf_VsIpport_json(const vsipport_config *c) {
    json::open_document();
    json::number("enable", c->enable);
    wm::list_and_record_end("vsipport", c->vsipport, wm::vsipport_slot, c->resved);
}

// This list has no "resved" of its own: the page expects `}]},` before the record's.
void printf_FwIpport_json(const fwipport_config *c) {
    json::open_document();
    json::number("mode", c->mode);
    wm::list_slots("fwipport", c->fwipport, wm::fwipport_slot);
    json::close_object();
    json::text("resved", c->resved, json::Sep::Last);
    json::close_document();
}

void printf_IpGroup_json(const ipport_config *c) {
    json::open_document();
    wm::list_and_record_end("useripgroup", c->useripgroup, wm::ipgroup_slot, c->resved);
}

void printf_TimeGroup_json(const timegroup_config *c) {
    json::open_document();
    wm::list_and_record_end("usertimegroup", c->usertimegroup, wm::timegroup_slot, c->resved);
}

void printf_FwMac_json(const fwmac_config *c) {
    json::open_document();
    json::number("mode", c->mode);
    wm::list_and_record_end("fwmac", c->fwmac, wm::fwmac_slot, c->resved);
}

void printf_FwUrl_json(const fwurl_config *c) {
    json::open_document();
    json::number("mode", c->mode);
    wm::list_and_record_end("fwurl", c->fwurl, wm::fwurl_slot, c->resved);
}

void printf_Qos_json(const qos_config *c) {
    json::open_document();
    json::number("mode", c->mode);
    wm::list_and_record_end("qos", c->qos, wm::qos_slot, c->resved);
}

} // extern "C"
