// Property files of NAME=value lines: parsing, loading and crash-safe rewriting.
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "sys/support/files.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace {

// The separator codes: '=' and ' ' stand for themselves, anything else for a tab.
char separator_char(int separator) {
    return separator == '=' ? '=' : separator == ' ' ? ' ' : '\t';
}
const char *separator_text(int separator) {
    return separator == '=' ? "=" : separator == ' ' ? " " : "\t";
}

bool is_scan_space(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

// The first blank-delimited word, as the "%s" scan conversion reads it.
std::string_view first_word(std::string_view text) {
    size_t start = 0;
    while (start < text.size() && is_scan_space(text[start]))
        ++start;
    size_t end = start;
    while (end < text.size() && !is_scan_space(text[end]))
        ++end;
    return {text.data() + start, end - start};
}

// The text before the first separator, or the whole text when it has none.
std::string_view key_of(std::string_view line, char separator) {
    return wm::head(line, line.find(separator));
}

// Whole lines of any length: a line longer than the 1,023-character read limit is still
// one line, so a rewrite never splits it or matches a key inside it.
class LineReader {
  public:
    explicit LineReader(FILE *f) : f_(f) {}
    LineReader(const LineReader &) = delete;
    LineReader &operator=(const LineReader &) = delete;
    ~LineReader() { std::free(buf_); }
    // The next line with its newline (none on a final unterminated line); false at the end.
    bool next(std::string_view &line) {
        ssize_t n = ::getline(&buf_, &cap_, f_);
        if (n <= 0) return false;
        line = {buf_, size_t(n)};
        return true;
    }
    // True when reading stopped on an error (a short read must not replace the file).
    bool failed() const { return std::ferror(f_) != 0; }

  private:
    FILE *f_;
    char *buf_ = nullptr;
    size_t cap_ = 0;
};

bool ends_line(std::string_view line) {
    return !line.empty() && line.back() == '\n';
}

const char *text_or_empty(const char *s) {
    return s ? s : "";
}

// The last pair named `key`: with several, the last one wins.
const prop_pair *last_pair_named(std::string_view key, const prop_pair *pairs, int count) {
    const prop_pair *found = nullptr;
    for (int i = 0; pairs && i < count; ++i)
        if (pairs[i].name && key == pairs[i].name) found = &pairs[i];
    return found;
}

// Renames the finished temporary file onto the target, unless reading or writing failed.
int finish_rewrite(wm::AtomicFile &out, const LineReader &in) {
    if (in.failed() || std::ferror(out.get())) return 0;
    return out.commit() ? 1 : 0;
}

} // namespace

extern "C" {

int get_pr(int separator, const char *line, prop_pair *pair) {
    if (!line || !pair || line[0] == '#') return 0;
    std::string_view text = line;
    constexpr std::string_view kSetenv = "setenv ";
    if (size_t at = text.find(kSetenv); at != std::string_view::npos)
        text = wm::tail(text, at + kSetenv.size());
    size_t cut = text.find(separator_char(separator));
    if (cut == std::string_view::npos) return 0;
    char *name = wm::heap_copy(first_word(wm::head(text, cut)));
    char *value = wm::heap_copy(wm::tail(text, cut + 1));
    if (!name || !value) {
        std::free(name);
        std::free(value);
        return 0;
    }
    pair->name = name;
    pair->value = value;
    return 1;
}

int load_prop_n(int separator, const char *path, prop_pair *pairs, int capacity) {
    if (!path || !pairs) return 0;
    wm::UniqueFile file(std::fopen(path, "r"));
    if (!file) return 0;
    char line[WEBMGMT_PROP_LINE];
    int stored = 0;
    while (stored < capacity && std::fgets(line, sizeof line, file.get())) {
        line[std::strcspn(line, "\n")] = '\0';
        stored += get_pr(separator, line, &pairs[stored]);
    }
    return stored;
}

int load_prop(int separator, const char *path, prop_pair *pairs) {
    return load_prop_n(separator, path, pairs, WEBMGMT_PROP_PAIRS);
}

int save_prop(int separator, const char *path, const prop_pair *pairs, int count) {
    if (!path) return 0;
    wm::UniqueFile in_file(std::fopen(path, "r"));
    if (!in_file) return 0;
    wm::AtomicFile out(path);
    if (!out) return 0;
    LineReader in(in_file.get());
    std::string_view line;
    while (in.next(line)) {
        // A final line without a newline is not written back (the device always did so).
        if (!ends_line(line)) break;
        line = wm::head(line, line.size() - 1);
        const prop_pair *pair =
            last_pair_named(key_of(line, separator_char(separator)), pairs, count);
        if (pair)
            std::fprintf(out.get(), "%s%s%c%s%c\n", pair->name, separator_text(separator), '"',
                         text_or_empty(pair->value), '"');
        else {
            std::fwrite(line.data(), 1, line.size(), out.get());
            std::fputc('\n', out.get());
        }
    }
    return finish_rewrite(out, in);
}

int save_global_conf(int separator, const char *path, const char *prefix, const char *key,
                     const char *value) {
    if (!path || !key) return 0;
    wm::UniqueFile in_file(std::fopen(path, "r"));
    if (!in_file) return 0;
    wm::AtomicFile out(path);
    if (!out) return 0;
    const char sep = separator_char(separator);
    prefix = text_or_empty(prefix);
    value = text_or_empty(value);
    LineReader in(in_file.get());
    std::string_view line;
    bool found = false;
    while (in.next(line)) {
        bool whole = ends_line(line);
        size_t cut = line.find(sep);
        bool same_key = cut != std::string_view::npos && wm::head(line, cut) == key;
        found = found || same_key;
        // A final line without a newline is dropped, whether it holds the key or not.
        if (!whole) continue;
        if (same_key)
            std::fprintf(out.get(), "%s%s%c%c%s%c\n", prefix, key, sep, '"', value, '"');
        else
            std::fwrite(line.data(), 1, line.size(), out.get());
    }
    // Appended values are not quoted, replaced ones are: scripts depend on both forms.
    if (!found) std::fprintf(out.get(), "%s%s%c%s\n", prefix, key, sep, value);
    return finish_rewrite(out, in);
}

} // extern "C"
