// Online times as the pages print them, at the day boundaries and at the widest value.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "webmgmt.h"

TEST(RuntimeText, DayBoundariesAndWidth) {
    const struct {
        uint32_t seconds;
        const char *text;
    } cases[] = {{0, "0:00:00"},
                 {59, "0:00:59"},
                 {3661, "1:01:01"},
                 {86399, "23:59:59"},
                 {86400, "1Day 0:00:00"},
                 {172799, "1Day 23:59:59"},
                 {172800, "2Days 0:00:00"},
                 {864000, "10Days 0:00:00"},
                 {4294967295u, "49710Days 6:28:15"}};
    for (const auto &c : cases) {
        char out[30];
        std::memset(out, 'x', sizeof out);
        const int length = get_runtime_web(c.seconds, out);
        EXPECT_EQ(std::string(out), c.text) << c.seconds;
        EXPECT_EQ(length, int(std::strlen(c.text))) << c.seconds;
    }
}
