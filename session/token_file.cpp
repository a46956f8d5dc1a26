// The session table and its file: one "client_ip token last_used" line per live session.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "session/scan.h"
#include "sys/support/ascii.h"
#include "session/token_store.h"
#include "sys/support/files.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace {

// The loader reads one line more than the table has slots; the sixth goes to the spare.
constexpr int kLinesRead = WEBMGMT_TOKEN_SLOTS + 1;
constexpr int kLineSize = 100;

token_record &line_slot(token_list &list, int line) {
    return line < WEBMGMT_TOKEN_SLOTS ? list.slot[line] : list.spare;
}

// One line as "%s %s %ld" scans it: fields that are missing stay as they were; words too
// long for a field are cut to its size.
void scan_line(const char *line, token_record &slot) {
    std::string_view rest{line};
    std::string_view ip = wm::next_word(rest);
    if (ip.empty()) return;
    wm::copy_bounded(slot.client_ip, ip);
    std::string_view token = wm::next_word(rest);
    if (token.empty()) return;
    wm::copy_bounded(slot.token, token);
    // A last line without time or line feed leaves nothing (not even a pointer) to scan.
    if (!rest.empty()) wm::scan_int32(rest.data(), slot.last_used);
}

void fill_slot(token_record &slot, const char *client_ip, const char *token, int32_t now) {
    wm::copy_bounded(slot.client_ip, client_ip);
    wm::copy_bounded(slot.token, token);
    slot.in_use = 1;
    slot.last_used = now;
}

// Full table: every session moves one slot down, the one in the last slot is dropped
// whatever its age, and slot 0 is left for the newcomer.
void shift_down(token_list &list) {
    for (int i = WEBMGMT_TOKEN_SLOTS - 2; i >= 0; --i)
        list.slot[i + 1] = list.slot[i];
}

int first_free_slot(const token_list &list) {
    for (int i = 0; i < WEBMGMT_TOKEN_SLOTS; ++i)
        if (list.slot[i].in_use == 0) return i;
    return -1;
}

} // namespace

namespace wm {

void read_token_text(const char *path, TokenText &text) {
    long size = read_regular_file_text(path, text.bytes);
    text.present = size >= 0;
    text.size = text.present ? size_t(size) : 0;
}

// Cut into lines as fgets() with a 100-byte buffer cuts them: a longer line counts as
// several. Only the first six lines are looked at.
void parse_token_text(std::string_view text, token_list &list) {
    int lines = 0;
    while (lines < kLinesRead && !text.empty()) {
        size_t end = std::min(text.size(), size_t(kLineSize - 1));
        size_t feed = head(text, end).find('\n');
        if (feed != std::string_view::npos) end = feed + 1;
        char line[kLineSize];
        std::memcpy(line, text.data(), end);
        line[end] = '\0';
        text.remove_prefix(end);
        token_record &slot = line_slot(list, lines);
        scan_line(line, slot);
        slot.in_use = 1;
        ++lines;
    }
    list.count = lines;
}

size_t format_token_text(const token_list &list, std::span<char, kTokenTextMax> out) {
    char *p = out.data();
    for (const token_record &slot : list.slot) {
        if (slot.in_use != 1) continue;
        std::string_view ip = member_text(slot.client_ip, sizeof slot.client_ip);
        std::string_view token = member_text(slot.token, sizeof slot.token);
        p = std::copy(ip.begin(), ip.end(), p);
        *p++ = ' ';
        p = std::copy(token.begin(), token.end(), p);
        *p++ = ' ';
        p = put_decimal(p, slot.last_used);
        *p++ = '\n';
    }
    return size_t(p - out.data());
}

bool write_token_file(const char *path, const token_list *list) {
    if (!path || !list) return false;
    char text[kTokenTextMax];
    size_t size = format_token_text(*list, text);
    // The tokens are the sessions' keys: readable by the web server's user alone. Runtime
    // state, rewritten on every check: replaced in one step, not flushed to disk.
    return replace_file(path, {text, size}, 0600, false);
}

} // namespace wm

extern "C" {

void initial_tokenlist(const char *path, token_list *list) {
    if (!path || !list) return;
    wm::TokenText text;
    wm::read_token_text(path, text);
    if (text.present) wm::parse_token_text(text.view(), *list);
}

int find_tokenbyclientip(const char *client_ip, const token_list *list) {
    if (!client_ip || !list) return -1;
    for (int i = 0; i < WEBMGMT_TOKEN_SLOTS; ++i) {
        const token_record &slot = list->slot[i];
        if (slot.in_use == 1 && wm::member_text(slot.client_ip, sizeof slot.client_ip) == client_ip)
            return i;
    }
    return -1;
}

void insert_token(const char *client_ip, const char *token, token_list *list) {
    if (!client_ip || !token || !list) return;
    int32_t now = get_curr_time();
    int index = find_tokenbyclientip(client_ip, list);
    if (index < 0) index = first_free_slot(*list);
    if (index < 0) {
        shift_down(*list);
        index = 0;
    }
    fill_slot(list->slot[index], client_ip, token, now);
}

void save_token(const char *path, const token_list *list) {
    wm::write_token_file(path, list);
}

} // extern "C"
