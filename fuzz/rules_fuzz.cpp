// Fuzzes form values into records and the records back out: the rule-list forms (their
// binding tables, save_data_base, the duplicate filters and the store's list calls) on a
// list section whose stored file is the fuzzer's, then the list's view. Fields (split at
// 0xFF): a header (list, operation, duplicate-check switch), the section file's bytes
// (repeated to the record's size; empty: no file), "name=value" lines of the form, and one
// value that save_data_base converts by every code.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "config_data_api.h"
#include "fuzz_fields.h"
#include "fuzz_files.h"
#include "webmgmt.h"

namespace {

std::string roots[2];
int turn = 0;

const char *const kFiles[] = {"vsipport", "fwipport", "ipport", "timegroup",
                              "fwurl",    "fwmac",    "qos"};
constexpr int kLists = 7;

size_t record_size(int list) {
    switch (list) {
    case 0:
        return sizeof(vsipport_config);
    case 1:
        return sizeof(fwipport_config);
    case 2:
        return sizeof(ipport_config);
    case 3:
        return sizeof(timegroup_config);
    case 4:
        return sizeof(fwurl_config);
    case 5:
        return sizeof(fwmac_config);
    default:
        return sizeof(qos_config);
    }
}

int apply_and_print(int list, int op, const form_pair *pairs, int count, rule_config_set *c) {
    switch (list) {
    case 0: {
        int rc = save_vsipport_config_element(c->vsipport, op, pairs, count, c);
        printf_VsIpport_json(c->vsipport);
        return rc;
    }
    case 1: {
        int rc = save_fwipport_config_element(c->fwipport, op, pairs, count, c);
        printf_FwIpport_json(c->fwipport);
        return rc;
    }
    case 2: {
        int rc = save_ipgroup_config_element(c, op, pairs, count);
        printf_IpGroup_json(c->ipgroup);
        return rc;
    }
    case 3: {
        int rc = save_timegroup_config_element(c, op, pairs, count);
        printf_TimeGroup_json(c->timegroup);
        return rc;
    }
    case 4: {
        int rc = save_fwurl_config_element(c->fwurl, op, pairs, count, c);
        printf_FwUrl_json(c->fwurl);
        return rc;
    }
    case 5: {
        int rc = save_fwmac_config_element(c->fwmac, op, pairs, count, c);
        printf_FwMac_json(c->fwmac);
        return rc;
    }
    default: {
        int rc = save_qos_config_element(c->qos, op, pairs, count, c);
        printf_Qos_json(c->qos);
        return rc;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    for (int i = 0; i < 2; ++i) {
        roots[i] = fuzzsupport::scratch_path(i ? "b" : "a");
        for (const char *dir : {"", "/var", "/var/config", "/tmp", "/etc", "/usr"})
            mkdir((roots[i] + dir).c_str(), 0700);
    }
    setenv("WEBMGMT_DEFAULTS_DIR", fuzzsupport::scratch_path("no-defaults").c_str(), 1);
    if (!std::freopen("/dev/null", "w", stdout)) return 0;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    auto f = fuzzsupport::split_fields(data, size, 4);
    uint8_t h0 = f[0].size() > 0 ? uint8_t(f[0][0]) : 0;
    uint8_t h1 = f[0].size() > 1 ? uint8_t(f[0][1]) : 0;
    int list = h0 % kLists;
    static const int kOps[] = {0, 1, 7, -1, -2};
    int op = kOps[h1 % 5];

    // A fresh root each time, so the store loads the section file anew.
    const std::string &root = roots[turn ^= 1];
    setenv("WEBMGMT_ROOT", root.c_str(), 1);
    std::string file = root + "/var/config/" + kFiles[list] + ".bin";
    for (const char *name : kFiles)
        unlink((root + "/var/config/" + name + ".bin").c_str());
    if (!f[1].empty()) {
        std::vector<uint8_t> record(record_size(list));
        for (size_t i = 0; i < record.size(); ++i)
            record[i] = uint8_t(f[1][i % f[1].size()]);
        fuzzsupport::write_bytes(file, record.data(), record.size());
    }

    rule_config_set config{};
    config.misc = SC_Get_Misc_System_Config();
    config.vsipport = SC_Get_VsIpport_System_Config();
    config.fwipport = SC_Get_FwIpport_System_Config();
    config.ipgroup = SC_Get_IpGroup_System_Config();
    config.timegroup = SC_Get_TimeGroup_System_Config();
    config.fwurl = SC_Get_FwUrl_System_Config();
    config.fwmac = SC_Get_FwMac_System_Config();
    config.qos = SC_Get_Qos_System_Config();
    if (!config.misc || !config.vsipport || !config.fwipport || !config.ipgroup ||
        !config.timegroup || !config.fwurl || !config.fwmac || !config.qos)
        return 0;
    config.misc->need_filter_firewall = (h0 & 0x80) ? 1 : 0;

    // The form: one pair a line, split at the first '='.
    std::vector<std::string> names, values;
    std::string form = fuzzsupport::c_text(f[2]);
    for (size_t at = 0; at <= form.size() && names.size() < 64;) {
        size_t end = form.find('\n', at);
        if (end == std::string::npos) end = form.size();
        std::string line = form.substr(at, end - at);
        size_t eq = line.find('=');
        names.push_back(line.substr(0, eq));
        values.push_back(eq == std::string::npos ? "" : line.substr(eq + 1));
        at = end + 1;
    }
    std::vector<form_pair> pairs(names.size());
    for (size_t i = 0; i < names.size(); ++i)
        pairs[i] = form_pair{names[i].data(), values[i].data()};
    apply_and_print(list, op, pairs.data(), int(pairs.size()), &config);

    // save_data_base by every code, on a member of every width up to 48 bytes.
    std::string value = fuzzsupport::c_text(f[3]);
    unsigned char member[48 + 8];
    for (int16_t type = 0; type <= 13; ++type) {
        uint16_t width = uint16_t(h1 % 49);
        std::memset(member, 0xA5, sizeof member);
        field_desc row{};
        std::strcpy(row.name, "fuzz");
        row.address = member;
        row.type = type;
        row.size = width;
        save_data_base(row, value.c_str());
        // Nothing beyond the member's width; codes 4 and 5 keep a one-byte number in a
        // member of 0 or 1 bytes, as the device does.
        size_t allowed = (type == 4 || type == 5) && width < 1 ? 1 : width;
        for (size_t i = allowed; i < sizeof member; ++i)
            if (member[i] != 0xA5) std::abort();
    }
    filterate_ip(value.c_str(), value.c_str(), form.c_str(), "10.0.0.1");
    filterate_prot(int(h0), int(h1), int(h1) - 3, int(h0) + 5);
    return 0;
}
