// A writer killed with SIGKILL at random moments of a save to flash leaves the previous or
// the new section whole.
#include <csignal>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "store_test_util.h"

using namespace storetest;
using wmtest::TempRoot;

namespace {

constexpr size_t kHead = 136; // version, lock-file path, lock position

// Saves the template list to flash over and over, each time filled with the next
// generation's byte, and reports each finished save on `done`.
[[noreturn]] void save_forever(int done) {
    ap_template_list_config *t = SC_Get_ApTemplateList_System_Config();
    auto *bytes = reinterpret_cast<uint8_t *>(t);
    for (uint8_t g = uint8_t(bytes[kHead] + 1);; ++g) {
        std::memset(bytes + kHead, g, sizeof *t - kHead);
        if (SC_Save_System_ApTemplateList_Config2Flash(t) != CONFIG_OK) _exit(2);
        if (write(done, &g, 1) != 1) _exit(3);
    }
}

// The generation a section file holds, or -1 when it is torn or of the wrong size.
int generation(const std::string &path) {
    std::string data = wmtest::read_file(path);
    if (data.size() != sizeof(ap_template_list_config)) return -1;
    for (size_t i = kHead + 1; i < data.size(); ++i)
        if (data[i] != data[kHead]) return -1;
    return uint8_t(data[kHead]);
}

TEST(CrashSafety, KilledWhileSavingToFlashLeavesOldOrNewSection) {
    TempRoot root;
    wmtest::SeededRandom rng;
    const int rounds = 30;
    int killed_mid_write = 0;
    const std::string copies[2] = {memory_copy(root, "ap_templates"),
                                   flash_copy(root, "ap_templates")};
    for (int round = 0; round < rounds; ++round) {
        int before[2] = {generation(copies[0]), generation(copies[1])};
        int first = before[0] < 0 ? 1 : before[0] + 1; // the writer goes on from memory
        int last = first - 1;                          // the last save it reported
        int pipefd[2];
        ASSERT_EQ(pipe(pipefd), 0);
        pid_t pid = fork();
        if (pid == 0) {
            close(pipefd[0]);
            save_forever(pipefd[1]);
        }
        close(pipefd[1]);
        // Let it finish 0 to 2 saves, then kill it somewhere inside the next one.
        int finished = int(rng() % 3);
        uint8_t g = 0;
        for (int i = 0; i < finished && read(pipefd[0], &g, 1) == 1; ++i)
            last = g;
        volatile unsigned spin = rng() % 1000000;
        while (spin > 0)
            spin = spin - 1;
        kill(pid, SIGKILL);
        int status = 0;
        waitpid(pid, &status, 0);
        while (read(pipefd[0], &g, 1) == 1) // saves that finished before the kill
            last = g;
        close(pipefd[0]);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer stopped by itself";
        killed_mid_write +=
            wmtest::file_exists(copies[0] + ".cgi") || wmtest::file_exists(copies[1] + ".cgi");
        for (int c = 0; c < 2; ++c) {
            if (!wmtest::file_exists(copies[c])) continue; // killed before its first save
            int found = generation(copies[c]);
            ASSERT_GE(found, 0) << copies[c] << " is torn in round " << round;
            // What it held before, a save the writer finished, or the one it was killed in.
            // Generations are one byte and wrap: compare distances from `first` modulo 256.
            int span = (last + 1 - first) & 0xff;
            // A memory copy that did not exist may also hold the factory section (all zeros),
            // which the writer's first get stores.
            bool factory = c == 0 && before[c] < 0 && found == 0;
            EXPECT_TRUE(found == before[c] || factory || ((found - first) & 0xff) <= span)
                << copies[c] << ": generation " << found << ", writer went " << first << ".."
                << last;
        }
    }
    RecordProperty("killed_mid_write", killed_mid_write);
    std::printf("crash test: %d kills, %d inside a write (temporary file left)\n", rounds,
                killed_mid_write);
    // A new process reads the section whole.
    EXPECT_EQ(in_new_process([] {
                  auto *t = reinterpret_cast<uint8_t *>(SC_Get_ApTemplateList_System_Config());
                  return t[kHead] == t[sizeof(ap_template_list_config) - 1] ? 0 : 1;
              }),
              0);
}

} // namespace
