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

// The same for 64 bits: the high digits by 64-bit division only while the value needs it
// (a 32-bit host divides 64-bit numbers in a library call).
char *decimal64(uint64_t value, char *end) {
    char *p = end;
    while (value > UINT32_MAX) {
        *--p = char('0' + value % 10);
        value /= 10;
    }
    return decimal(uint32_t(value), p);
}

// The dotted form of an address kept in network order at the end of `out` (at most 15
// bytes); returns where it starts.
char *dotted(uint32_t network_order, char *end) {
    // Its bytes in memory are the four parts.
    unsigned char parts[4];
    static_assert(sizeof network_order == sizeof parts);
    std::memcpy(parts, &network_order, sizeof parts);
    char *p = end;
    for (int i = 3; i >= 0; --i) {
        p = decimal(parts[i], p);
        if (i) *--p = '.';
    }
    return p;
}

constexpr size_t kDigits = 12; // "-2147483648" and room to spare

// Room for `n` more bytes in stdout's own buffer, or null. With the GNU C library a fully
// buffered stream (a CGI's pipe to the web server) exposes its buffer the way its putc
// macro uses it; a line-buffered or unbuffered stream never shows room there, so its
// writes go through the library and flush as they should. Other C libraries take fwrite.
char *stdout_room(size_t n) {
#if defined(__GLIBC__)
    FILE *f = stdout;
    if (f->_IO_write_ptr && size_t(f->_IO_write_end - f->_IO_write_ptr) >= n)
        return f->_IO_write_ptr;
#else
    (void)n;
#endif
    return nullptr;
}

// Marks the bytes up to `end` of the room as written.
void stdout_wrote([[maybe_unused]] char *end) {
#if defined(__GLIBC__)
    stdout->_IO_write_ptr = end;
#endif
}

// Keys and most values are a few bytes long: those are copied here in at most two
// overlapping moves of 8, 4 or 1 bytes rather than by a call per piece.
char *put_text(char *p, std::string_view s) {
    const char *src = s.data();
    size_t n = s.size();
    if (n >= 8 && n <= 16) {
        uint64_t head, tail;
        std::memcpy(&head, src, 8);
        std::memcpy(&tail, src + n - 8, 8);
        std::memcpy(p, &head, 8);
        std::memcpy(p + n - 8, &tail, 8);
    } else if (n >= 4 && n < 8) {
        uint32_t head, tail;
        std::memcpy(&head, src, 4);
        std::memcpy(&tail, src + n - 4, 4);
        std::memcpy(p, &head, 4);
        std::memcpy(p + n - 4, &tail, 4);
    } else if (n < 4) {
        for (size_t i = 0; i < n; ++i)
            p[i] = src[i];
    } else {
        std::memcpy(p, src, n);
    }
    return p + n;
}

// `"key":"value"` and what follows it: the separator of a member line, or whatever a compact
// document puts after a member.
template <typename Tail> void member(std::string_view key, std::string_view value, Tail tail) {
    if (char *p = stdout_room(key.size() + value.size() + 5 + tail.size())) {
        *p++ = '"';
        p = put_text(p, key);
        *p++ = '"';
        *p++ = ':';
        *p++ = '"';
        p = put_text(p, value);
        *p++ = '"';
        stdout_wrote(tail.put(p));
        return;
    }
    Line line;
    line.put('"');
    line.put(key);
    line.put(std::string_view{"\":\""});
    line.put(value);
    line.put('"');
    line.put(tail.text());
}

// The end of a member line: a comma or not, and the newline.
struct LineEnd {
    Sep sep;
    size_t size() const { return 2; } // room for the longer end is enough
    char *put(char *p) const {
        if (sep == Sep::Comma) *p++ = ',';
        *p++ = '\n';
        return p;
    }
    std::string_view text() const {
        return sep == Sep::Comma ? std::string_view{",\n"} : std::string_view{"\n"};
    }
};

// Any text after a member of a compact document.
struct TextTail {
    std::string_view tail;
    size_t size() const { return tail.size(); }
    char *put(char *p) const { return put_text(p, tail); }
    std::string_view text() const { return tail; }
};

void member(std::string_view key, std::string_view value, Sep sep) {
    member(key, value, LineEnd{sep});
}

constexpr char kHexDigits[] = "0123456789ABCDEF";

} // namespace

void open_document() {
    putc_unlocked('{', stdout);
}

void close_document() {
    putc_unlocked('}', stdout);
}

void open_object(std::string_view name) {
    if (char *p = stdout_room(name.size() + 5)) {
        *p++ = '"';
        p = put_text(p, name);
        p = put_text(p, "\":{\n");
        stdout_wrote(p);
        return;
    }
    Line line;
    line.put('"');
    line.put(name);
    line.put(std::string_view{"\":{\n"});
}

void close_object() {
    raw(std::string_view{"},"});
}

void number(std::string_view key, int value, Sep sep) {
    char digits[kDigits];
    char *end = digits + sizeof digits;
    // The magnitude as unsigned, so that INT_MIN needs no special case.
    unsigned magnitude = value < 0 ? 0u - unsigned(value) : unsigned(value);
    char *p = decimal(magnitude, end);
    if (value < 0) *--p = '-';
    member(key, {p, size_t(end - p)}, sep);
}

void unsigned_number(std::string_view key, unsigned value, Sep sep) {
    char digits[kDigits];
    char *end = digits + sizeof digits;
    char *p = decimal(value, end);
    member(key, {p, size_t(end - p)}, sep);
}

void u64(std::string_view key, uint64_t value, Sep sep) {
    member(key, unsigned_digits(value).view(), sep);
}

void text_view(std::string_view key, std::string_view value, Sep sep) {
    member(key, value, sep);
}

void pair(std::string_view key, std::string_view value, std::string_view tail) {
    member(key, value, TextTail{tail});
}

Digits signed_digits(int64_t value) {
    Digits d;
    char *end = d.room + sizeof d.room;
    // The magnitude as unsigned, so that the most negative value needs no special case.
    uint64_t magnitude = value < 0 ? 0u - uint64_t(value) : uint64_t(value);
    char *p = decimal64(magnitude, end);
    if (value < 0) *--p = '-';
    d.start = uint8_t(p - d.room);
    return d;
}

Digits unsigned_digits(uint64_t value) {
    Digits d;
    d.start = uint8_t(decimal64(value, d.room + sizeof d.room) - d.room);
    return d;
}

MacText mac_text(const uint8_t *mac) {
    MacText m;
    char *p = m.text;
    for (int i = 0; i < 6; ++i) {
        *p++ = kHexDigits[mac[i] >> 4];
        *p++ = kHexDigits[mac[i] & 0xf];
        *p++ = i < 5 ? ':' : '\0';
    }
    return m;
}

DottedText dotted_text(uint32_t network_order) {
    DottedText d;
    char *end = d.text + sizeof d.text;
    *--end = '\0';
    char *p = dotted(network_order, end);
    // Moved to the front: the text is read as a terminated string.
    std::memmove(d.text, p, size_t(end + 1 - p));
    return d;
}

// The text inet_ntop gives an IPv6 address: lower-case hex groups without leading zeros,
// the first longest run of two or more zero groups written "::", and an address whose first
// six groups are zero (but not the whole of it), or five zeros and ffff, ending in its IPv4
// part in dotted form.
std::string_view ipv6_text(const uint8_t (&bytes)[16], char (&out)[46]) {
    uint16_t words[8];
    for (int i = 0; i < 8; ++i)
        words[i] = uint16_t(bytes[2 * i] << 8 | bytes[2 * i + 1]);
    int best = -1, best_length = 0;
    for (int i = 0; i < 8;) {
        if (words[i]) {
            ++i;
            continue;
        }
        int j = i;
        while (j < 8 && words[j] == 0)
            ++j;
        if (j - i > best_length) best = i, best_length = j - i;
        i = j;
    }
    if (best_length < 2) best = -1;
    char *p = out;
    for (int i = 0; i < 8; ++i) {
        if (best >= 0 && i >= best && i < best + best_length) {
            if (i == best) *p++ = ':';
            continue;
        }
        if (i) *p++ = ':';
        if (i == 6 && best == 0 && (best_length == 6 || (best_length == 5 && words[5] == 0xffff))) {
            uint32_t v4;
            std::memcpy(&v4, bytes + 12, sizeof v4);
            char dotted_room[15];
            char *end = dotted_room + sizeof dotted_room;
            char *start = dotted(v4, end);
            std::memcpy(p, start, size_t(end - start));
            return {out, size_t(p + (end - start) - out)};
        }
        bool leading = true;
        for (int shift = 12; shift >= 0; shift -= 4) {
            unsigned digit = (words[i] >> shift) & 0xf;
            if (leading && digit == 0 && shift) continue;
            leading = false;
            *p++ = "0123456789abcdef"[digit];
        }
    }
    if (best >= 0 && best + best_length == 8) *p++ = ':';
    return {out, size_t(p - out)};
}

void ipv6(std::string_view key, const ip6addr_field &address, Sep sep) {
    char text[46];
    member(key, ipv6_text(address.v6, text), sep);
}

void ipv4(std::string_view key, const ipaddr_field &address, Sep sep) {
    char text[15];
    char *end = text + sizeof text;
    char *p = dotted(address.v4, end);
    member(key, {p, size_t(end - p)}, sep);
}

void raw(std::string_view text) {
    if (char *p = stdout_room(text.size())) return stdout_wrote(put_text(p, text));
    fwrite_unlocked(text.data(), 1, text.size(), stdout);
}

} // namespace wm::json
