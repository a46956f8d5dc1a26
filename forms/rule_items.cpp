// Working elements of the rule-list forms into the store's slot records.
#include "forms/rule_items.h"

#include <arpa/inet.h>

#include <cstring>

#include "sys/support/text.h"

namespace wm {
namespace {

template <size_t D, size_t S> void text(char (&dst)[D], const char (&src)[S]) {
    copy_bounded(dst, member_text(src, S));
}

// A dotted address into an address member, as inet_addr reads it; a variable the page did
// not send (an empty text) leaves 0.0.0.0 rather than inet_addr's all ones.
template <size_t S> void address(ipaddr_field &dst, const char (&src)[S]) {
    char buf[S + 1];
    if (copy_bounded(buf, member_text(src, S)) > 0) dst.v4 = inet_addr(buf);
}

template <typename Slot> void weekdays(Slot &s, const int32_t (&d)[WEBMGMT_WEEKDAY_COUNT]) {
    s.weekday1 = uint8_t(d[0]);
    s.weekday2 = uint8_t(d[1]);
    s.weekday3 = uint8_t(d[2]);
    s.weekday4 = uint8_t(d[3]);
    s.weekday5 = uint8_t(d[4]);
    s.weekday6 = uint8_t(d[5]);
    s.weekday7 = uint8_t(d[6]);
}

// The head every slot shares, and the schedule members of the filter rules.
template <typename Item, typename Slot> void head(const Item &e, Slot &s) {
    std::memset(&s, 0, sizeof s);
    s.id = e.id;
    text(s.name, e.name);
    text(s.mark, e.mark);
}
template <typename Item, typename Slot> void schedule(const Item &e, Slot &s) {
    s.timecontrol = uint8_t(e.timecontrol);
    s.timegroup_id = uint8_t(e.timegroup_id);
    weekdays(s, e.weekday);
    text(s.start_time, e.start_time);
    text(s.end_time, e.end_time);
}

} // namespace

void to_slot(const vsipport_item &e, vsipport_rule &s) {
    head(e, s);
    address(s.devip, e.innerip);
    s.protocol = uint8_t(e.protocol);
    s.devinnerfromport = e.inner_port_from;
    s.devinnertoport = e.inner_port_to;
    s.devexternfromport = e.extern_port_from;
    s.devexterntoport = e.extern_port_to;
    s.wanid = uint8_t(e.wanid);
    s.status = uint8_t(e.status);
}

void to_slot(const fwipport_item &e, fwipport_rule &s) {
    head(e, s);
    s.ipcontrol = uint8_t(e.ipcontrol);
    s.ipgroup_id = int16_t(e.ipgroup_id);
    address(s.devstartip, e.startip);
    address(s.devendip, e.endip);
    s.devfromport = e.startport;
    s.devtoport = e.endport;
    s.protocol = uint8_t(e.protocol);
    schedule(e, s);
    s.status = uint8_t(e.status);
}

void to_slot(const ipgroup_item &e, ipgroup_entry &s) {
    head(e, s);
    address(s.startip, e.start_ip);
    address(s.endip, e.end_ip);
}

void to_slot(const timegroup_item &e, timegroup_entry &s) {
    head(e, s);
    weekdays(s, e.weekday);
    text(s.start_time, e.start_time);
    text(s.end_time, e.end_time);
}

void to_slot(const fwmac_item &e, fwmac_rule &s) {
    head(e, s);
    text(s.devmac, e.devmac);
    schedule(e, s);
    s.status = uint8_t(e.status);
}

void to_slot(const fwurl_item &e, fwurl_rule &s) {
    head(e, s);
    text(s.url, e.url);
    schedule(e, s);
    s.status = uint8_t(e.status);
}

void to_slot(const qos_item &e, qos_rule &s) {
    head(e, s);
    s.control_type = uint8_t(e.control_type);
    text(s.devmac, e.devmac);
    s.ipcontrol = uint8_t(e.ipcontrol);
    s.ipgroup_id = int16_t(e.ipgroup_id);
    address(s.devstartip, e.startip);
    address(s.devendip, e.endip);
    schedule(e, s);
    s.bw_up = e.bw_up;
    s.bw_down = e.bw_down;
    s.bw_shared_mode = uint8_t(e.bw_share_mode);
    s.status = uint8_t(e.status);
}

} // namespace wm
