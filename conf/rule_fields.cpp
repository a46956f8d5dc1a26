// Field tables of the rule-list records: QoS, URL and MAC filters, time and IP groups,
// virtual servers, the IP/port filter.
#include <iterator>

#include "conf/field_rows.h"
#include "conf/record_head.h"

namespace {

WM_CODES(qos_codes, WEBMGMT_QOS_CONFIG_MEMBERS(WM_CODE_OF));
WM_CODES(fwurl_codes, WEBMGMT_FWURL_CONFIG_MEMBERS(WM_CODE_OF));
WM_CODES(fwmac_codes, WEBMGMT_FWMAC_CONFIG_MEMBERS(WM_CODE_OF));
WM_CODES(timegroup_codes, WEBMGMT_TIMEGROUP_CONFIG_MEMBERS(WM_CODE_OF));
WM_CODES(vsipport_codes, WEBMGMT_VSIPPORT_CONFIG_MEMBERS(WM_CODE_OF));
WM_CODES(fwipport_codes, WEBMGMT_FWIPPORT_CONFIG_MEMBERS(WM_CODE_OF));
WM_CODES(rule_list_codes, WEBMGMT_RULE_LIST_MEMBERS(WM_CODE_OF, void, 1));
WM_CODES(group_list_codes, WEBMGMT_GROUP_LIST_MEMBERS(WM_CODE_OF, void, 1));
WM_CODES(fwipport_list_codes, WEBMGMT_FWIPPORT_LIST_MEMBERS(WM_CODE_OF));
WM_CODES(ipgroup_codes, WEBMGMT_IPGROUP_MEMBERS(WM_CODE_OF));

WM_BLOCK_ROWS(element_rows, qos_rule, WEBMGMT_QOS_RULE_MEMBERS)
WM_BLOCK_ROWS(element_rows, fwurl_rule, WEBMGMT_FWURL_RULE_MEMBERS)
WM_BLOCK_ROWS(element_rows, fwmac_rule, WEBMGMT_FWMAC_RULE_MEMBERS)
WM_BLOCK_ROWS(element_rows, timegroup_entry, WEBMGMT_TIMEGROUP_MEMBERS)
WM_BLOCK_ROWS(element_rows, vsipport_rule, WEBMGMT_VSIPPORT_RULE_MEMBERS)
WM_BLOCK_ROWS(element_rows, fwipport_rule, WEBMGMT_FWIPPORT_RULE_MEMBERS)

// count, every element, and the list's reserved room.
template <class Codes, class List> void list_rows(wm::RowWriter &w, List &list, const char *name) {
    w.prefix("%s.", name);
    WM_ROW(w, Codes, list, count);
    for (size_t i = 0; i < std::size(list.element); ++i) {
        w.prefix("%s.element[%d].", name, static_cast<int>(i));
        element_rows(w, list.element[i]);
    }
    w.prefix("%s.", name);
    WM_ROW(w, Codes, list, resved);
}

// Records of one switch or mode byte and one rule list.
template <class Codes, class Record, class List>
void switched_list_rows(field_desc *table, Record &record, uint8_t &flag, int16_t flag_code,
                        const char *flag_name, List &list, const char *list_name) {
    wm::RowWriter w(table);
    wm::head_rows(w, record);
    wm::add_member(w, flag_name, -1, flag_code, flag);
    list_rows<rule_list_codes>(w, list, list_name);
    w.no_prefix();
    WM_ROW(w, Codes, record, resved);
}

} // namespace

extern "C" {

void qos_field(field_desc *table, qos_config *config) {
    switched_list_rows<qos_codes>(table, *config, config->mode, qos_codes::mode, "mode",
                                  config->qos, "qos");
}

void fwurl_field(field_desc *table, fwurl_config *config) {
    switched_list_rows<fwurl_codes>(table, *config, config->mode, fwurl_codes::mode, "mode",
                                    config->fwurl, "fwurl");
}

void fwmac_field(field_desc *table, fwmac_config *config) {
    switched_list_rows<fwmac_codes>(table, *config, config->mode, fwmac_codes::mode, "mode",
                                    config->fwmac, "fwmac");
}

void vsipport_field(field_desc *table, vsipport_config *config) {
    switched_list_rows<vsipport_codes>(table, *config, config->enable, vsipport_codes::enable,
                                       "enable", config->vsipport, "vsipport");
}

void fwipport_field(field_desc *table, fwipport_config *config) {
    wm::RowWriter w(table);
    wm::head_rows(w, *config);
    WM_ROW(w, fwipport_codes, *config, mode);
    fwipport_list &list = config->fwipport;
    w.prefix("fwipport.");
    WM_ROW(w, fwipport_list_codes, list, count);
    for (int i = 0; i < WEBMGMT_RULE_COUNT; ++i) {
        w.prefix("fwipport.element[%d].", i);
        element_rows(w, list.element[i]);
    }
    w.no_prefix();
    WM_ROW(w, fwipport_codes, *config, resved);
}

void timegroup_field(field_desc *table, timegroup_config *config) {
    wm::RowWriter w(table);
    wm::head_rows(w, *config);
    list_rows<group_list_codes>(w, config->usertimegroup, "usertimegroup");
    w.no_prefix();
    WM_ROW(w, timegroup_codes, *config, resved);
}

// The IP-group table describes only the first two groups, then one mark row named for
// group 15 but placed on group 0's mark, then group 0's reserved room; kept as the pages
// and defaults files know it.
void ipport_field(field_desc *table, ipport_config *config) {
    wm::RowWriter w(table);
    wm::head_rows(w, *config);
    ipgroup_list &list = config->useripgroup;
    w.prefix("useripgroup.");
    WM_ROW(w, group_list_codes, list, count);
    for (int i = 0; i < 2; ++i) {
        ipgroup_entry &e = list.element[i];
        w.prefix("useripgroup.element[%d].", i);
        WM_ROW(w, ipgroup_codes, e, lock_location);
        WM_ROW(w, ipgroup_codes, e, id);
        WM_ROW(w, ipgroup_codes, e, name);
        WM_ROW(w, ipgroup_codes, e, startip);
        WM_ROW(w, ipgroup_codes, e, endip);
    }
    w.prefix("useripgroup.element[%d].", 15);
    WM_ROW(w, ipgroup_codes, list.element[0], mark);
    w.prefix("useripgroup.element[%d].", 0);
    WM_ROW(w, ipgroup_codes, list.element[0], resved);
}

} // extern "C"
