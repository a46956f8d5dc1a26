// The schedule-aware filters of the IP/port and MAC filter lists, and the schedule blocks
// they compare: two rules are alike only when they restrict the same hours of the same days.
#include <arpa/inet.h>
#include <netinet/in.h>

#include <cstring>
#include <string_view>

#include "sys/support/text.h"
#include "webmgmt.h"

namespace {

constexpr int kTimeAlways = 0;
constexpr int kTimeGroup = 1;

// Copies a time text whole into a block member (both are 10 bytes; a full-width text stays
// without terminator, as it was), clearing what a previous copy left.
void copy_time(char (&dst)[WEBMGMT_ITEM_TIME], const char *src) {
    std::memset(dst, 0, sizeof dst);
    if (src) std::memcpy(dst, src, strnlen(src, sizeof dst));
}

// An element's own schedule. The form's 32-bit weekday flags pass through
// copy_time_from_config as bytes, as a stored slot's do, so both sides compare alike.
template <typename Item> void own_schedule(schedule_block &b, const Item &item) {
    uint8_t days[WEBMGMT_WEEKDAY_COUNT];
    for (int d = 0; d < WEBMGMT_WEEKDAY_COUNT; ++d)
        days[d] = static_cast<uint8_t>(item.weekday[d]);
    copy_time_from_config(&b, days, item.start_time, item.end_time);
}

// A stored slot's own schedule: one-byte weekday flags.
template <typename Slot> void own_schedule_of_slot(schedule_block &b, const Slot &s) {
    const uint8_t days[WEBMGMT_WEEKDAY_COUNT] = {s.weekday1, s.weekday2, s.weekday3, s.weekday4,
                                                 s.weekday5, s.weekday6, s.weekday7};
    copy_time_from_config(&b, days, s.start_time, s.end_time);
}

template <typename Slot, typename Item>
bool same_schedule(const Slot &s, const Item &item, const rule_config_set *config) {
    if (item.timecontrol == kTimeAlways && s.timecontrol == kTimeAlways) return true;
    schedule_block a;
    schedule_block b;
    std::memset(&a, 0, sizeof a);
    std::memset(&b, 0, sizeof b);
    if (item.timecontrol == kTimeGroup)
        get_time_from_timegroup(&a, item.timegroup_id, config);
    else
        own_schedule(a, item);
    if (s.timecontrol == kTimeGroup)
        get_time_from_timegroup(&b, s.timegroup_id, config);
    else
        own_schedule_of_slot(b, s);
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// The dotted text of an address member, as inet_ntoa prints it.
const char *dotted(const ipaddr_field &a, char (&buf)[INET_ADDRSTRLEN]) {
    in_addr in{};
    in.s_addr = a.v4;
    if (!inet_ntop(AF_INET, &in, buf, sizeof buf)) buf[0] = '\0';
    return buf;
}

// The protocol's sub-value is its port range: both ends must match.
bool same_fwipport(const fwipport_rule &s, const fwipport_item &item) {
    char start[INET_ADDRSTRLEN];
    char end[INET_ADDRSTRLEN];
    return filterate_prot(item.protocol, item.startport, s.protocol, s.devfromport) &&
           filterate_prot(item.protocol, item.endport, s.protocol, s.devtoport) &&
           filterate_ip(item.startip, item.endip, dotted(s.devstartip, start),
                        dotted(s.devendip, end));
}

bool same_fwmac(const fwmac_rule &s, const fwmac_item &item) {
    return wm::member_text(s.devmac, sizeof s.devmac) ==
           wm::member_text(item.devmac, sizeof item.devmac);
}

// Unlike the other filters these compare empty slots (id 0) too; only the item's own slot
// and slots with a negative id are skipped.
template <typename Slot, size_t N, typename Item, typename Same>
int any_duplicate(const Slot (&slots)[N], const Item &item, const rule_config_set *config,
                  Same same) {
    for (const Slot &s : slots) {
        if (s.id == item.id || s.id < 0) continue;
        if (same_schedule(s, item, config) && same(s, item)) return -1;
    }
    return 0;
}

} // namespace

extern "C" {

int get_time_from_timegroup(schedule_block *block, int group_id, const rule_config_set *config) {
    if (!block || !config || !config->timegroup) return 0;
    const timegroup_list &groups = config->timegroup->usertimegroup;
    if (groups.count < 1) return 0;
    // The count comes from the stored record: never scan past the 16 slots.
    int32_t n = groups.count < WEBMGMT_GROUP_COUNT ? groups.count : WEBMGMT_GROUP_COUNT;
    for (int32_t i = 0; i < n; ++i)
        if (groups.element[i].id == group_id) // no break: the last group with the id wins
            own_schedule_of_slot(*block, groups.element[i]);
    return 0;
}

void copy_time_from_config(schedule_block *block, const uint8_t *weekdays, const char *start_time,
                           const char *end_time) {
    if (!block) return;
    if (weekdays)
        for (int d = 0; d < WEBMGMT_WEEKDAY_COUNT; ++d)
            block->weekday[d] = weekdays[d];
    copy_time(block->start_time, start_time);
    copy_time(block->end_time, end_time);
}

int filterate_fwipport_data(const fwipport_config *list, const fwipport_item *item,
                            const rule_config_set *config) {
    if (!list || !item) return 0;
    return any_duplicate(list->fwipport.element, *item, config, same_fwipport);
}

int filterate_fwmac_data(const fwmac_config *list, const fwmac_item *item,
                         const rule_config_set *config) {
    if (!list || !item) return 0;
    return any_duplicate(list->fwmac.element, *item, config, same_fwmac);
}

} // extern "C"
