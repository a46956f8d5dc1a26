// Many processes adding to one list at once, as parallel CGI programs do.
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "store_test_util.h"

using namespace storetest;
using wmtest::TempRoot;

namespace {

struct Outcome {
    int32_t process, index, result, id;
};

// Forks `processes` children that each add `adds` client accounts named "p<P>-<I>"; half
// of them save the section after every add, as the forms do. Returns what every add
// answered, collected through a pipe.
std::vector<Outcome> add_in_parallel(int processes, int adds) {
    int pipefd[2];
    if (pipe(pipefd) != 0) return {};
    std::vector<pid_t> children;
    for (int p = 0; p < processes; ++p) {
        pid_t pid = fork();
        if (pid == 0) {
            close(pipefd[0]);
            clients_config *clients = SC_Get_Clients_System_Config();
            for (int i = 0; i < adds; ++i) {
                client_account a{};
                std::snprintf(a.m_name, sizeof a.m_name, "p%d-%d", p % 100, i % 100);
                Outcome o{p, i, AddClientsItem(clients, &a), a.m_id};
                if (o.result == CONFIG_OK && p % 2 == 1) SC_Save_System_Clients_Config(clients);
                if (write(pipefd[1], &o, sizeof o) != sizeof o) _exit(3);
            }
            _exit(0);
        }
        children.push_back(pid);
    }
    close(pipefd[1]);
    std::vector<Outcome> outcomes;
    Outcome o;
    while (read(pipefd[0], &o, sizeof o) == sizeof o)
        outcomes.push_back(o);
    close(pipefd[0]);
    for (pid_t pid : children) {
        int status = 0;
        waitpid(pid, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    return outcomes;
}

// Reads the stored section in a new process and checks it against the answers.
void expect_stored(const TempRoot &root, const std::vector<Outcome> &outcomes, int capacity) {
    EXPECT_EQ(file_size(memory_copy(root, "clients")), long(sizeof(clients_config)));
    EXPECT_EQ(file_size(flash_copy(root, "clients")), long(sizeof(clients_config)));
    std::map<std::string, int32_t> added; // name -> id the store answered
    for (const Outcome &o : outcomes) {
        ASSERT_TRUE(o.result == CONFIG_OK || o.result == CONFIG_ERR_FULL) << o.result;
        if (o.result == CONFIG_OK)
            added["p" + std::to_string(o.process) + "-" + std::to_string(o.index)] = o.id;
    }
    EXPECT_LE(int(added.size()), capacity);
    auto stored = wmtest::run_in_child([&] {
        clients_config *c = SC_Get_Clients_System_Config();
        for (int i = 0; i < WEBMGMT_CLIENTS; ++i)
            if (c->m_client[i].m_id > 0)
                std::printf("%s %d\n", c->m_client[i].m_name, c->m_client[i].m_id);
        std::printf("count %d\n", c->count);
        return 0;
    });
    std::map<std::string, int32_t> found;
    std::set<int32_t> ids;
    int count = -1;
    char name[64];
    int id;
    for (const char *p = stored.out.c_str(); std::sscanf(p, "%63s %d", name, &id) == 2;) {
        if (std::strcmp(name, "count") == 0)
            count = id;
        else {
            EXPECT_TRUE(ids.insert(id).second) << "id " << id << " twice";
            found[name] = id;
        }
        p = std::strchr(p, '\n');
        if (!p) break;
        ++p;
    }
    EXPECT_EQ(found, added); // every add that answered 0 is there, with the id it was given
    EXPECT_EQ(count, int(found.size()));
}

TEST(Concurrency, TwentyFourProcessesAddingAtOnceLoseNothing) {
    TempRoot root;
    auto outcomes = add_in_parallel(24, 12); // 288 adds into 300 slots
    ASSERT_EQ(outcomes.size(), 288u);
    expect_stored(root, outcomes, WEBMGMT_CLIENTS);
    for (const Outcome &o : outcomes)
        EXPECT_EQ(o.result, CONFIG_OK);
}

TEST(Concurrency, SixteenProcessesOverfillingAListGetFullAndNoMore) {
    TempRoot root;
    auto outcomes = add_in_parallel(16, 25); // 400 adds into 300 slots
    ASSERT_EQ(outcomes.size(), 400u);
    int ok = 0;
    for (const Outcome &o : outcomes)
        ok += o.result == CONFIG_OK;
    EXPECT_EQ(ok, WEBMGMT_CLIENTS);
    expect_stored(root, outcomes, WEBMGMT_CLIENTS);
}

} // namespace
