// The member writer under json_print.h: each member line is assembled in a small buffer
// and handed to stdout's buffer in one piece, numbers and addresses formatted here. A CGI
// program prints from one thread: the stream is written without taking its lock.
#include <climits>

#include "views/json_print.h"

namespace wm::json {
namespace {

// One member line, `"key":"value",` and its newline, assembled before it is written. A line
// longer than the buffer is written in pieces.
class Line {
  public:
    Line() = default;
    Line(const Line &) = delete;
    Line &operator=(const Line &) = delete;
    ~Line() { flush(); }

    void put(std::string_view s) {
        if (s.size() > sizeof buf_ - used_) {
            flush();
            if (s.size() > sizeof buf_) {
                fwrite_unlocked(s.data(), 1, s.size(), stdout);
                return;
            }
        }
        std::memcpy(buf_ + used_, s.data(), s.size());
        used_ += s.size();
    }
    void put(char c) {
        if (used_ == sizeof buf_) flush();
        buf_[used_++] = c;
    }

  private:
    void flush() {
        if (used_) fwrite_unlocked(buf_, 1, used_, stdout);
        used_ = 0;
    }
    char buf_[256];
    size_t used_ = 0;
};

// The decimal digits of `value` at the end of `out`; returns where they start.
char *decimal(unsigned value, char *end) {
    char *p = end;
    do {
        *--p = char('0' + value % 10);
        value /= 10;
    } while (value);
    return p;
}

constexpr size_t kDigits = 12; // "-2147483648" and room to spare

void member(const char *key, std::string_view value, Sep sep) {
    Line line;
    line.put('"');
    line.put(std::string_view{key});
    line.put(std::string_view{"\":\""});
    line.put(value);
    line.put(sep == Sep::Comma ? std::string_view{"\",\n"} : std::string_view{"\"\n"});
}

} // namespace

void open_document() {
    putc_unlocked('{', stdout);
}

void close_document() {
    putc_unlocked('}', stdout);
}

void open_object(const char *name) {
    Line line;
    line.put('"');
    line.put(std::string_view{name});
    line.put(std::string_view{"\":{\n"});
}

void close_object() {
    raw(std::string_view{"},"});
}

void number(const char *key, int value, Sep sep) {
    char digits[kDigits];
    char *end = digits + sizeof digits;
    // The magnitude as unsigned, so that INT_MIN needs no special case.
    unsigned magnitude = value < 0 ? 0u - unsigned(value) : unsigned(value);
    char *p = decimal(magnitude, end);
    if (value < 0) *--p = '-';
    member(key, {p, size_t(end - p)}, sep);
}

void unsigned_number(const char *key, unsigned value, Sep sep) {
    char digits[kDigits];
    char *end = digits + sizeof digits;
    char *p = decimal(value, end);
    member(key, {p, size_t(end - p)}, sep);
}

void text_view(const char *key, std::string_view value, Sep sep) {
    member(key, value, sep);
}

void ipv4(const char *key, const ipaddr_field &address, Sep sep) {
    // The address is kept in network order: its bytes in memory are the four parts.
    unsigned char parts[4];
    static_assert(sizeof address.v4 == sizeof parts);
    std::memcpy(parts, &address.v4, sizeof parts);
    char dotted[16];
    char *end = dotted + sizeof dotted;
    char *p = end;
    for (int i = 3; i >= 0; --i) {
        p = decimal(parts[i], p);
        if (i) *--p = '.';
    }
    member(key, {p, size_t(end - p)}, sep);
}

void raw(std::string_view text) {
    fwrite_unlocked(text.data(), 1, text.size(), stdout);
}

} // namespace wm::json
