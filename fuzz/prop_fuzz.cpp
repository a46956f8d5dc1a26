// Property lines and files from arbitrary bytes: parsing, lookups, in-place changes and
// rewrites must stay inside their buffers.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz_files.h"
#include "webmgmt.h"

namespace {

int separator_from(uint8_t b) {
    return b % 3 == 0 ? '=' : b % 3 == 1 ? ' ' : '\t';
}

void parse_each_line(int separator, const std::string &text) {
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        prop_pair pair{nullptr, nullptr};
        if (get_pr(separator, line.c_str(), &pair)) free_prop(&pair, 1);
        start = end + 1;
    }
}

void look_up_and_change(prop_pair *pairs, int count, const std::string &text) {
    char out[64], small[5], byte;
    for (int i = 0; i < count; ++i) {
        const char *name = pairs[i].name;
        get_prop_max(name, out, pairs, count, sizeof out);
        get_prop_n(name, small, pairs, count, sizeof small);
        get_prop_char(name, &byte, pairs, count);
    }
    if (count > 0) {
        std::string value = text.substr(0, text.size() % 200);
        put_prop(pairs[0].name, value.c_str(), pairs, count);
        put_prop(pairs[count - 1].name, "", pairs, count);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 1) return 0;
    int separator = separator_from(data[0]);
    std::string text(reinterpret_cast<const char *>(data + 1), size - 1);
    parse_each_line(separator, text);

    static const std::string path = fuzzsupport::scratch_path("prop.conf");
    fuzzsupport::write_bytes(path, data + 1, size - 1);
    prop_pair pairs[16];
    int count = load_prop_n(separator, path.c_str(), pairs, 16);
    look_up_and_change(pairs, count, text);
    save_prop(separator, path.c_str(), pairs, count);
    if (count > 0) save_global_conf(separator, path.c_str(), "", pairs[0].name, pairs[0].value);
    free_prop(pairs, count);
    return 0;
}
