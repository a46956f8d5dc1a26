// The template renderer on a fuzzed template and a fuzzed variable list: the input up to
// its first NUL is the template file, the rest holds the variables as name=value lines.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

#include "webmgmt.h"

namespace {

var_node *variables_from(const std::string &text) {
    var_node *head = nullptr;
    size_t pos = 0;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(pos, end - pos);
        size_t eq = line.find('=');
        std::string name = line.substr(0, eq);
        std::string value = eq == std::string::npos ? "" : line.substr(eq + 1);
        add_str(&head, name.c_str(), value.c_str());
        pos = end + 1;
    }
    return head;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    if (!freopen("/dev/null", "w", stdout)) abort();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string input(reinterpret_cast<const char *>(data), size);
    size_t nul = input.find('\0');
    std::string page = input.substr(0, nul);
    std::string vars = nul == std::string::npos ? "" : input.substr(nul + 1);

    int fd = memfd_create("template", 0);
    if (fd < 0 || write(fd, page.data(), page.size()) != ssize_t(page.size())) abort();
    std::string path = "/proc/self/fd/" + std::to_string(fd);

    var_node *head = variables_from(vars);
    generate_hidder_from_list(head);
    print_list(head);
    print_html(path.c_str(), &head);
    if (head) delete_string(&head, head->name);
    free_list(&head);
    close(fd);
    return 0;
}
