// Template variables and the HTML template renderer: `$name` markers in a template file are
// replaced by the values of a list of variables.
#include "cgi/template.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "sys/support/raii.h"
#include "sys/support/text.h"

namespace wm {
namespace {

size_t name_length(const var_node &node) {
    return strnlen(node.name, sizeof node.name);
}

// Takes `node` out of the list and frees it.
void unlink_node(var_node **head, var_node *node) {
    for (var_node **link = head; *link; link = &(*link)->next) {
        if (*link == node) {
            *link = node->next;
            std::free(node);
            return;
        }
    }
}

// Expands the markers of one line in place, consuming each variable it uses.
void expand_line(char *line, size_t size, var_node **head) {
    char *dollar = std::strchr(line, '$');
    while (dollar) {
        var_node *node = find_keyword(dollar + 1, *head);
        if (node) {
            replace_marker(dollar, size_t(line + size - dollar), *node);
            unlink_node(head, node);
            // An empty value at the line's end leaves the '$' position on the terminator.
            if (*dollar == '\0') break;
        }
        // Go on behind the '$': inside the inserted value from its second character.
        dollar = std::strchr(dollar + 1, '$');
    }
}

} // namespace

void replace_marker(char *at, size_t room, const var_node &node) {
    if (room == 0) return;
    size_t text_len = std::strlen(at);
    size_t marker_len = 1 + name_length(node);
    if (marker_len > text_len) marker_len = text_len;
    const char *rest = at + marker_len;
    size_t rest_len = text_len - marker_len;
    size_t value_len = strnlen(node.value, sizeof node.value);
    // Whatever does not fit in the buffer is cut: first from the rest, then the value.
    size_t avail = room - 1;
    size_t keep_value = value_len < avail ? value_len : avail;
    size_t keep_rest = rest_len < avail - keep_value ? rest_len : avail - keep_value;
    std::memmove(at + keep_value, rest, keep_rest);
    std::memcpy(at, node.value, keep_value);
    at[keep_value + keep_rest] = '\0';
}

} // namespace wm

extern "C" {

char *add_str(var_node **head, const char *name, const char *value) {
    if (!head) return nullptr;
    auto *node = static_cast<var_node *>(std::calloc(1, sizeof(var_node)));
    if (!node) return nullptr;
    // Names and values are cut to the node's fields.
    wm::copy_bounded(node->name, name ? name : "");
    wm::copy_bounded(node->value, value ? value : "");
    var_node **link = head;
    while (*link)
        link = &(*link)->next;
    *link = node;
    return node->value;
}

void free_list(var_node **head) {
    if (!head) return;
    var_node *node = *head;
    while (node) {
        var_node *next = node->next;
        std::free(node);
        node = next;
    }
    *head = nullptr;
}

void delete_string(var_node **head, const char *name) {
    if (!head || !name) return;
    for (var_node *node = *head; node; node = node->next) {
        if (std::strcmp(node->name, name) == 0) {
            wm::unlink_node(head, node);
            return;
        }
    }
}

var_node *find_keyword(const char *text, var_node *head) {
    if (!text) return nullptr;
    for (var_node *node = head; node; node = node->next)
        if (std::strncmp(text, node->name, wm::name_length(*node)) == 0) return node;
    return nullptr;
}

void change_keyword(char *at, const var_node *node) {
    if (at && node) wm::replace_marker(at, SIZE_MAX, *node);
}

int print_html(const char *path, var_node **head) {
    if (!path) return 0;
    wm::UniqueFile file(std::fopen(path, "r"));
    if (!file) return 0;
    var_node *empty = nullptr;
    var_node **list = head ? head : &empty;
    char line[wm::kTemplateLineBuffer];
    while (std::fgets(line, wm::kTemplateReadLimit, file.get())) {
        wm::expand_line(line, sizeof line, list);
        std::printf("%s", line);
    }
    return file.close();
}

int generate_hidder_from_list(var_node *head) {
    for (var_node *node = head; node; node = node->next)
        std::printf("<input type=\"hidden\" name=\"%s\" value=\"$%s\">\n", node->name, node->name);
    return 0;
}

int print_list(var_node *head) {
    for (var_node *node = head; node; node = node->next)
        std::printf("<br>%s=%s</br>\n", node->name, node->value);
    return 0;
}

} // extern "C"
