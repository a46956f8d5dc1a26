// Looking up, changing, freeing and printing loaded property pairs (and request pairs,
// which share their layout).
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>

#include "conf/number_text.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace {

// get_prop_max works on values of at most this many characters.
constexpr size_t kMaxStripped = 4096;

const prop_pair *find_pair(const char *name, const void *pairs, int count) {
    if (!name || !pairs || count < 1) return nullptr;
    const auto *list = static_cast<const prop_pair *>(pairs);
    for (int i = 0; i < count; ++i)
        if (list[i].name && std::strcmp(list[i].name, name) == 0) return &list[i];
    return nullptr;
}

const char *value_of(const prop_pair *pair) {
    return pair->value ? pair->value : "";
}

// Stores `text` in the pair, growing its heap copy when needed; when growing fails the
// text is cut to the room there is rather than written past it.
void replace_value(prop_pair *pair, const char *text) {
    size_t need = std::strlen(text);
    size_t room = pair->value ? std::strlen(pair->value) : 0;
    if (!pair->value || need > room) {
        if (auto *grown = static_cast<char *>(std::realloc(pair->value, need + 1))) {
            pair->value = grown;
            room = need;
        } else if (!pair->value) {
            return;
        }
    }
    size_t n = need < room ? need : room;
    std::memmove(pair->value, text, n); // the text may be part of the old value
    pair->value[n] = '\0';
}

} // namespace

extern "C" {

char *get_prop_n(const char *name, char *out, const void *pairs, int count, int out_size) {
    const prop_pair *pair = find_pair(name, pairs, count);
    if (!pair || !out || out_size < 1) return nullptr;
    size_t room =
        size_t(out_size) < WEBMGMT_GET_PROP_MAX + 1 ? size_t(out_size) : WEBMGMT_GET_PROP_MAX + 1;
    wm::copy_bounded(std::span<char>(out, room), value_of(pair));
    return out;
}

char *get_prop(const char *name, char *out, const void *pairs, int count) {
    return get_prop_n(name, out, pairs, count, WEBMGMT_GET_PROP_MAX + 1);
}

char *get_prop_max(const char *name, char *out, const void *pairs, int count, int out_size) {
    const prop_pair *pair = find_pair(name, pairs, count);
    if (!pair || !out) return nullptr;
    const char *value = value_of(pair);
    if (strnlen(value, kMaxStripped + 1) > kMaxStripped) return nullptr;
    char work[kMaxStripped + 1];
    wm::copy_bounded(work, value);
    const char *stripped = strip(work, '"');
    size_t length = std::strlen(stripped);
    // Too long for `out`: the name was found, but `out` stays as it was.
    if (out_size > 0 && length < size_t(out_size)) std::memcpy(out, stripped, length + 1);
    return out;
}

char *get_prop_char(const char *name, char *out, const void *pairs, int count) {
    const prop_pair *pair = find_pair(name, pairs, count);
    if (!pair || !out) return nullptr;
    *out = static_cast<char>(static_cast<unsigned char>(wm::text_to_int32(value_of(pair))));
    return out;
}

const char *put_prop(const char *name, const char *new_value, prop_pair *pairs, int count) {
    const prop_pair *found = find_pair(name, pairs, count);
    if (!found || !new_value) return nullptr;
    replace_value(&pairs[found - pairs], new_value);
    return new_value;
}

int free_prop(prop_pair *pairs, int count) {
    for (int i = 0; pairs && i < count; ++i) {
        std::free(pairs[i].name);
        std::free(pairs[i].value);
        pairs[i].name = pairs[i].value = nullptr;
    }
    return 1;
}

void dump_prop(const prop_pair *pairs, int count) {
    for (int i = 0; pairs && i < count; ++i) {
        const char *name = pairs[i].name ? pairs[i].name : "";
        DFPrintf(stderr, "<br> %s=%s</br>\n", name, value_of(&pairs[i]));
        std::printf("<br> %s=%s</br>\n", name, value_of(&pairs[i]));
    }
}

void generate_hidder_from_prop(const prop_pair *pairs, int count) {
    if (!pairs || count < 1) return;
    for (int i = 0; i < count; ++i) {
        const char *name = pairs[i].name ? pairs[i].name : "";
        std::printf("<input type=\"hidden\" name=\"%s\" value=\"${%s}\">\n", name, name);
    }
    for (int i = 0; i < count; ++i)
        std::printf("\"%s\",\n", pairs[i].name ? pairs[i].name : "");
}

} // extern "C"
