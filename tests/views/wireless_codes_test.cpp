// The code tables between the wireless pages and the stored configuration, over every 16-bit
// input and some beyond, against the tables as the pages and the AP firmware document them
// (written here as plain maps, not as the library's own lookup); and the two MAC matches.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <map>

#include "webmgmt.h"

namespace {

struct Table {
    const char *name;
    int (*lookup)(int);
    std::map<int, int> listed;
    int otherwise;
};

int authmode_obj_enabled(int code) {
    return get_authmode_obj(1, code);
}

const Table kTables[] = {
    {"get_authmode_obj(1, x)", authmode_obj_enabled, {{1, 5}, {2, 6}, {3, 9}}, 1},
    {"get_ciphertype_obj", get_ciphertype_obj, {{1, 0}, {2, 8}, {3, 1}, {4, 3}, {5, 7}}, 9},
    {"get_power_obj", get_power_obj, {{10, 1}, {20, 2}, {35, 3}, {65, 4}}, 5},
    {"get_power_web", get_power_web, {{1, 12}, {2, 25}, {3, 50}, {4, 75}}, 100},
    {"get_authmode_web",
     get_authmode_web,
     {{3, 2}, {4, 0}, {5, 1}, {6, 1}, {7, 0}, {8, 0}, {9, 1}},
     0},
    {"get_security_web",
     get_security_web,
     {{3, 1}, {4, 0}, {5, 1}, {6, 2}, {7, 0}, {8, 0}, {9, 3}},
     0},
    {"get_securitycipher_web",
     get_securitycipher_web,
     {{0, 1}, {1, 3}, {2, 4}, {3, 4}, {4, 0}, {5, 0}, {6, 4}, {7, 5}, {8, 2}, {9, 0}},
     0},
};

TEST(WirelessCodes, EveryShortInputGivesTheTablesAnswer) {
    for (const Table &t : kTables) {
        int wrong = 0;
        for (int x = -32768; x <= 65535 && wrong < 5; ++x) {
            auto it = t.listed.find(x);
            int want = it == t.listed.end() ? t.otherwise : it->second;
            if (t.lookup == get_power_web) {
                // Only the low 16 bits are compared: -65535 is 1 there.
                auto low = t.listed.find(x & 0xFFFF);
                want = low == t.listed.end() ? t.otherwise : low->second;
            }
            if (t.lookup(x) != want) {
                ADD_FAILURE() << t.name << "(" << x << ") = " << t.lookup(x) << ", want " << want;
                ++wrong;
            }
        }
    }
}

TEST(WirelessCodes, BeyondSixteenBits) {
    EXPECT_EQ(get_power_web(65537), 12);
    EXPECT_EQ(get_power_web(65536 + 4), 75);
    EXPECT_EQ(get_power_web(65536), 100);
    EXPECT_EQ(get_power_web(INT_MIN + 2), 25);
    // The other tables compare the whole value.
    EXPECT_EQ(get_power_obj(65536 + 10), 5);
    EXPECT_EQ(get_authmode_web(65536 + 3), 0);
    EXPECT_EQ(get_securitycipher_web(INT_MIN), 0);
    EXPECT_EQ(get_ciphertype_obj(INT_MAX), 9);
}

TEST(WirelessCodes, AuthmodeOfADisabledVapIsOpen) {
    for (int code : {-1, 0, 1, 2, 3, 4, 99})
        EXPECT_EQ(get_authmode_obj(0, code), 1) << code;
    EXPECT_EQ(get_authmode_obj(2, 3), 9); // any non-zero flag enables
}

TEST(WirelessCodes, MacMatches) {
    static ap_template_entry group; // large: not on the stack
    static ap_device_record ap;
    const uint8_t mac[6] = {0x00, 0x11, 0x22, 0xAA, 0xBB, 0xCC};
    uint8_t other[6] = {0x00, 0x11, 0x22, 0xAA, 0xBB, 0xCD};
    std::memcpy(group.m_member_mac.mac, mac, 6);
    std::memcpy(ap.m_dev_mac.mac, mac, 6);
    EXPECT_EQ(have_grop_conf_macs6(&group, mac), 1);
    EXPECT_EQ(have_grop_conf_macs6(&group, other), 0);
    EXPECT_EQ(have_grop_conf_macs6(nullptr, mac), 0);
    EXPECT_EQ(have_grop_conf_macs6(&group, nullptr), 0);
    EXPECT_EQ(get_ap_conf_by_mac6(&ap, mac), &ap.m_conf);
    EXPECT_EQ(get_ap_conf_by_mac6(&ap, other), nullptr);
    EXPECT_EQ(get_ap_conf_by_mac6(&ap, nullptr), nullptr);
    EXPECT_EQ(get_ap_conf_by_mac6(nullptr, mac), nullptr);
}

} // namespace
