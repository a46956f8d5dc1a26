// The codes the wireless pages use and the codes the stored configuration and the AP
// firmware use, translated both ways through constant tables; and the two MAC matches of
// the template and managed-AP views.
#include <array>
#include <cstdint>
#include <cstring>

#include "webmgmt.h"

namespace wm {
namespace {

struct CodePair {
    int from;
    int to;
};

template <size_t N>
constexpr int translate(const std::array<CodePair, N> &table, int code, int otherwise) {
    for (const CodePair &p : table)
        if (p.from == code) return p.to;
    return otherwise;
}

// Page to store.
constexpr std::array<CodePair, 3> kAuthmodeObj{{{1, 5}, {2, 6}, {3, 9}}};
constexpr std::array<CodePair, 5> kCipherObj{{{1, 0}, {2, 8}, {3, 1}, {4, 3}, {5, 7}}};
// The pages offer 10, 20, 35 and 65 percent ...
constexpr std::array<CodePair, 4> kPowerObj{{{10, 1}, {20, 2}, {35, 3}, {65, 4}}};
// ... and show the stored levels as 12, 25, 50 and 75: the two tables are not inverses.
constexpr std::array<CodePair, 4> kPowerWeb{{{1, 12}, {2, 25}, {3, 50}, {4, 75}}};
// Store to page.
constexpr std::array<CodePair, 7> kAuthmodeWeb{
    {{3, 2}, {4, 0}, {5, 1}, {6, 1}, {7, 0}, {8, 0}, {9, 1}}};
constexpr std::array<CodePair, 7> kSecurityWeb{
    {{3, 1}, {4, 0}, {5, 1}, {6, 2}, {7, 0}, {8, 0}, {9, 3}}};
constexpr std::array<CodePair, 10> kCipherWeb{
    {{0, 1}, {1, 3}, {2, 4}, {3, 4}, {4, 0}, {5, 0}, {6, 4}, {7, 5}, {8, 2}, {9, 0}}};

static_assert(translate(kPowerWeb, 4, 100) == 75 && translate(kPowerWeb, 5, 100) == 100);

bool same_mac(const uint8_t *a, const uint8_t *b) {
    return std::memcmp(a, b, 6) == 0;
}

} // namespace
} // namespace wm

extern "C" {

int get_authmode_obj(int enable, int web_code) {
    if (enable == 0) return 1;
    return wm::translate(wm::kAuthmodeObj, web_code, 1);
}

int get_ciphertype_obj(int web_code) {
    return wm::translate(wm::kCipherObj, web_code, 9);
}

int get_power_obj(int web_code) {
    return wm::translate(wm::kPowerObj, web_code, 5);
}

int get_power_web(int level) {
    // The device keeps the level in a 16-bit member: only those bits are compared.
    return wm::translate(wm::kPowerWeb, static_cast<uint16_t>(level), 100);
}

int get_authmode_web(int code) {
    return wm::translate(wm::kAuthmodeWeb, code, 0);
}

int get_security_web(int code) {
    return wm::translate(wm::kSecurityWeb, code, 0);
}

int get_securitycipher_web(int code) {
    return wm::translate(wm::kCipherWeb, code, 0);
}

int have_grop_conf_macs6(const ap_template_entry *group, const uint8_t *mac) {
    if (!group || !mac) return 0;
    return wm::same_mac(group->m_member_mac.mac, mac) ? 1 : 0;
}

const ap_config_body *get_ap_conf_by_mac6(const ap_device_record *ap, const uint8_t *mac) {
    if (!ap || !mac) return nullptr;
    return wm::same_mac(ap->m_dev_mac.mac, mac) ? &ap->m_conf : nullptr;
}

} // extern "C"
