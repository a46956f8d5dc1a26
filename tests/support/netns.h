// Tests against the real kernel in namespaces a child makes for itself (an unprivileged
// user namespace with a network and a mount namespace): the child prints its checks, the
// parent compares them.
#pragma once

#include <string>

#include "support/harness.h"

namespace wmtest {

// The exit status of a child whose system refuses the namespaces.
constexpr int kNoNamespace = 77;

// The real `ip`, never a stand-in that a PATH of fakes may hold; empty when there is none.
std::string ip_tool();

// Writes `text` to a file such as /proc/self/uid_map in one write.
bool write_text(const char *path, const std::string &text);

// In the child: a new user namespace (root mapped to us) with a new network namespace, and
// a mount namespace in which /sys shows that network namespace's interfaces. False when
// the system refuses any of it.
bool enter_namespaces();

// In the child: one line "name<TAB>library<TAB>reference" for the parent to compare (line
// feeds and tabs inside the values written as \n and \t).
void check(const std::string &name, const std::string &library, const std::string &reference);

// In the parent: skips when the child found no namespaces; else the child ended well, made
// at least one check, and every check's two values agree.
void expect_checks_agree(const ChildResult &r);

} // namespace wmtest
