// Content filters: is a rule the same as another element of its list in what it matches?
#include <arpa/inet.h>
#include <netinet/in.h>

#include <cstring>
#include <string_view>

#include "sys/support/text.h"
#include "webmgmt.h"

namespace {

// A member's text, bounded by the member (a full-width text has no terminator).
template <size_t N> std::string_view text(const char (&member)[N]) {
    return wm::member_text(member, N);
}

// The dotted text of an address member, as inet_ntoa prints it.
std::string_view dotted(const ipaddr_field &a, char (&buf)[INET_ADDRSTRLEN]) {
    in_addr in{};
    in.s_addr = a.v4;
    if (!inet_ntop(AF_INET, &in, buf, sizeof buf)) buf[0] = '\0';
    return buf;
}

// The slots that every filter but the two schedule filters compares: in use (id above 0)
// and not the item itself.
bool compared(int32_t slot_id, int32_t item_id) {
    return slot_id > 0 && slot_id != item_id;
}

bool same_vsipport(const vsipport_rule &s, const vsipport_item &item) {
    char ip[INET_ADDRSTRLEN];
    // The protocol is not compared: one rule per address and port ranges.
    return text(item.innerip) == dotted(s.devip, ip) &&
           s.devexternfromport == item.extern_port_from &&
           s.devexterntoport == item.extern_port_to && s.devinnerfromport == item.inner_port_from &&
           s.devinnertoport == item.inner_port_to;
}

bool same_ipgroup(const ipgroup_entry &s, const ipgroup_item &item) {
    char start[INET_ADDRSTRLEN];
    char end[INET_ADDRSTRLEN];
    return text(item.start_ip) == dotted(s.startip, start) &&
           text(item.end_ip) == dotted(s.endip, end);
}

template <typename Slot> bool same_weekdays(const Slot &s, const int32_t (&weekday)[7]) {
    const uint8_t days[7] = {s.weekday1, s.weekday2, s.weekday3, s.weekday4,
                             s.weekday5, s.weekday6, s.weekday7};
    for (int d = 0; d < 7; ++d)
        if (days[d] != weekday[d]) return false;
    return true;
}

bool same_timegroup(const timegroup_entry &s, const timegroup_item &item) {
    return text(s.start_time) == text(item.start_time) && text(s.end_time) == text(item.end_time) &&
           same_weekdays(s, item.weekday);
}

template <typename Slot, size_t N, typename Same, typename Item>
int any_duplicate(const Slot (&slots)[N], const Item &item, Same same) {
    for (const Slot &s : slots)
        if (compared(s.id, item.id) && same(s, item)) return -1;
    return 0;
}

} // namespace

extern "C" {

int filterate_prot(int a1, int a2, int b1, int b2) {
    return a1 == b1 && a2 == b2 ? 1 : 0;
}

int filterate_ip(const char *a1, const char *a2, const char *b1, const char *b2) {
    if (!a1 || !a2 || !b1 || !b2) return 0;
    return std::strcmp(a1, b1) == 0 && std::strcmp(a2, b2) == 0 ? 1 : 0;
}

int filterate_vsipport_data(const vsipport_config *list, const vsipport_item *item) {
    if (!list || !item) return 0;
    return any_duplicate(list->vsipport.element, *item, same_vsipport);
}

int filterate_ipgroup_data(const ipport_config *list, const ipgroup_item *item) {
    if (!list || !item) return 0;
    return any_duplicate(list->useripgroup.element, *item, same_ipgroup);
}

int filterate_timegroup_data(const timegroup_config *list, const timegroup_item *item) {
    if (!list || !item) return 0;
    return any_duplicate(list->usertimegroup.element, *item, same_timegroup);
}

} // extern "C"
