// Two CGI processes adding the same name to one list at once. The name check runs under the
// list's lock; the add comes after the lock is released, so both can pass the check: the
// store then holds both elements, and its file stays whole.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "store/config_data_api.h"
#include "support/harness.h"

using wmtest::TempRoot;

namespace {

// The name check waits while another process holds the list's lock.
TEST(NameLock, CheckWaitsForTheListLock) {
    TempRoot root;
    std::string path =
        wmtest::output_of([] { std::printf("%s", SC_Get_VsIpport_System_Config()->lock_file); });
    ASSERT_FALSE(path.empty());
    EXPECT_EQ(wmtest::result_after_lock_wait(path,
                                             [] {
                                                 return filterate_name(
                                                     SC_Get_VsIpport_System_Config(), "web", 0,
                                                     WEBMGMT_KIND_VSIPPORT);
                                             }),
              0);
}

// Both processes fetch the list, then add the same name at once: both checks pass (each
// scans its own copy; the add is not under the check's lock), both elements are stored.
TEST(NameLock, SameNameFromTwoProcessesIsStoredTwice) {
    TempRoot root;
    auto adder = [](int outer_port) {
        return [outer_port](const std::function<bool()> &go) {
            rule_config_set set{};
            set.misc = SC_Get_Misc_System_Config();
            set.misc->need_filter_firewall = 1;
            set.vsipport = SC_Get_VsIpport_System_Config();
            if (!go()) return -1;
            // The two adds differ in content only by their outer port, so the content filter
            // passes too.
            std::string port = std::to_string(outer_port);
            char name[] = "name", value[] = "same", ipn[] = "innerip", ipv[] = "10.1.1.1",
                 portn[] = "extren_Port_From";
            form_pair all[] = {{name, value}, {ipn, ipv}, {portn, port.data()}};
            return save_vsipport_config_element(set.vsipport, 0, all, 3, &set);
        };
    };
    auto [ra, rb] = wmtest::run_together(adder(8001), adder(8002));
    EXPECT_EQ(ra, CONFIG_OK);
    EXPECT_EQ(rb, CONFIG_OK);

    std::string list = wmtest::output_of([] {
        const vsipport_config *c = SC_Get_VsIpport_System_Config();
        std::printf("%d", c->vsipport.count);
        for (const auto &e : c->vsipport.element)
            if (e.id > 0) std::printf(" %d:%s", e.id, e.name);
    });
    size_t named = 0;
    for (size_t at = list.find(":same"); at != std::string::npos; at = list.find(":same", at + 1))
        ++named;
    EXPECT_EQ(list.substr(0, 2), "2 ") << list;
    EXPECT_EQ(named, 2u) << list;
    struct stat st {};
    ASSERT_EQ(stat(root.path("/var/config/vsipport.bin").c_str(), &st), 0);
    EXPECT_EQ(st.st_size, off_t(sizeof(vsipport_config)));
    // A later check in a fresh process sees the name.
    auto later = wmtest::run_in_child([] {
        return filterate_name(SC_Get_VsIpport_System_Config(), "same", 0, WEBMGMT_KIND_VSIPPORT) +
               10;
    });
    EXPECT_EQ(later.exit_code(), 9);
}

} // namespace
