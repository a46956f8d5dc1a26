// Multipart uploads: the in-memory split and the streaming writer fed with bodies in a
// child process with a CGI environment, bodies that break the rules included.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <string>
#include <vector>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

using wmtest::ChildResult;
using wmtest::run_in_child;

const std::string kBoundary = "----XyZ123";
const std::string kContentType = "multipart/form-data; boundary=" + kBoundary;
const std::string kClosing = "--" + kBoundary + "--\r\n";

std::string part(const std::string &disposition, const std::string &headers,
                 const std::string &data) {
    return "--" + kBoundary + "\r\nContent-Disposition: " + disposition + "\r\n" + headers +
           "\r\n" + data + "\r\n";
}

std::string file_part(const std::string &name, const std::string &data,
                      const std::string &type = "application/octet-stream") {
    return part("form-data; name=\"" + name + "\"; filename=\"" + name + ".bin\"",
                "Content-Type: " + type + "\r\n", data);
}

std::string bytes_pattern(size_t n, unsigned seed) {
    std::string s(n, '\0');
    for (char &c : s) {
        seed = seed * 1103515245u + 12345u;
        c = char(seed >> 16);
    }
    return s;
}

// The CGI environment of an upload; an empty content type or a null method is left out.
void cgi_env(const std::string &content_type, size_t length, const char *method = "POST") {
    method ? setenv("REQUEST_METHOD", method, 1) : unsetenv("REQUEST_METHOD");
    content_type.empty() ? unsetenv("CONTENT_TYPE")
                         : setenv("CONTENT_TYPE", content_type.c_str(), 1);
    setenv("CONTENT_LENGTH", std::to_string(length).c_str(), 1);
}

struct Split {
    bool null = true;
    int count = 0;
    std::vector<upload_part> parts; // data points into the child's memory: use `data`
    std::vector<std::string> data;
    std::string printed; // the parser's diagnostics on standard output
};

// Runs read_queue_for_upload1 + process_file in a child; the parts travel back on stderr.
Split split_in_memory(const std::string &body, const std::string &content_type = kContentType,
                      long content_length = -1, const char *method = "POST") {
    size_t length = content_length < 0 ? body.size() : size_t(content_length);
    ChildResult r = run_in_child(
        [&] {
            cgi_env(content_type, length, method);
            int total = 0, blen = 0;
            char *boundary = nullptr;
            char *buffer = read_queue_for_upload1(&total, &boundary, &blen);
            if (!buffer) return 1;
            upload_part parts[WEBMGMT_UPLOAD_PARTS];
            std::memset(parts, 0, sizeof parts);
            int n = process_file(buffer, total, boundary, parts);
            for (int i = 0; i < n; ++i) {
                fwrite(&parts[i], sizeof parts[i], 1, stderr);
                fwrite(parts[i].data, 1, parts[i].length, stderr);
            }
            free_prop_file(parts, n);
            std::free(buffer);
            std::free(boundary);
            return 10 + n;
        },
        body);
    Split s;
    s.printed = r.out;
    if (r.exit_code() < 10) return s;
    s.null = false;
    s.count = r.exit_code() - 10;
    for (size_t i = 0, at = 0; i < size_t(s.count); ++i) {
        upload_part &p = s.parts.emplace_back();
        std::memcpy(&p, r.err.data() + at, sizeof p);
        s.data.push_back(r.err.substr(at + sizeof p, p.length));
        at += sizeof p + p.length;
    }
    return s;
}

TEST(UploadSplit, HeadersOfOnePartAfterASkippedFormField) {
    std::string n300(300, 'n'), type = "application/" + std::string(288, 't');
    struct Case {
        std::string disposition, headers, name, type, encoding;
    } cases[] = {
        {"form-data; name=\"fw\"; filename=\"fw.bin\"",
         "Content-Type: application/octet-stream\r\n", "fw; filename=fw.bin",
         " application/octet-stream", ""},
        {"form-data; name=\"cfgfile\"", "Content-Type: x\r\n", "cfgfile", " x", ""},
        {"form-data; name=cfgfile", "Content-Type: x\r\n", "cfgfile", " x", ""}, // unquoted
        {"form-data; name=cfg", "Content-Type: text/plain\r\nContent-Transfer-Encoding: binary\r\n",
         "cfg", " text/plain", " binary"}, // the blank is kept
        // Header values are cut at 254 characters.
        {"form-data; name=\"" + n300 + "\"", "Content-Type: " + type + "\r\n", n300.substr(0, 254),
         (" " + type).substr(0, 254), ""},
    };
    // The skipped field is shown: 32 bytes after its boundary, 16 a line.
    std::string field = "\r\nContent-Disposition: form-data; name=\"action\"";
    for (const auto &c : cases) {
        SCOPED_TRACE(c.disposition.substr(0, 40));
        std::string data = bytes_pattern(3000, unsigned(c.name.size()));
        Split s = split_in_memory(part("form-data; name=\"action\"", "", "upgrade") +
                                  part(c.disposition, c.headers, data) + kClosing);
        ASSERT_EQ(s.count, 1);
        EXPECT_EQ(s.parts[0].name, c.name);
        EXPECT_EQ(s.parts[0].content_type, c.type);
        EXPECT_EQ(s.parts[0].transfer_encoding, c.encoding);
        EXPECT_TRUE(s.data[0] == data);
        EXPECT_EQ(s.printed, field.substr(0, 16) + "\n" + field.substr(16, 16) + "\n\n");
    }
}

TEST(UploadSplit, ShortFormFieldShowsThirtyTwoBytesIntoTheNextPart) {
    std::string field = "--" + kBoundary + "\r\nname=a\r\n\r\n1\r\n";
    std::string body = field + file_part("fw", "x") + kClosing;
    Split s = split_in_memory(body);
    ASSERT_EQ(s.count, 1);
    std::string shown = body.substr(kBoundary.size() + 2, 32);
    EXPECT_EQ(s.printed, shown.substr(0, 16) + "\n" + shown.substr(16) + "\n\n");
}

TEST(UploadSplit, AtMostFourFileParts) {
    std::string body;
    for (int i = 0; i < 5; ++i)
        body += file_part("f" + std::to_string(i), bytes_pattern(100 + i, i));
    Split s = split_in_memory(body + file_part("cfg", "x", "text/plain") + kClosing);
    ASSERT_EQ(s.count, 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(std::string(s.parts[i].name),
                  "f" + std::to_string(i) + "; filename=f" + std::to_string(i) + ".bin");
        EXPECT_EQ(s.data[i], bytes_pattern(100 + i, i));
    }
}

TEST(UploadSplit, BodiesThatBreakTheRules) {
    std::string good = file_part("fw", bytes_pattern(500, 7)) + kClosing;
    struct Case {
        const char *what;
        std::string body;
        std::string content_type;
        long length;
        const char *method;
        int count; // -1: no body returned
    } cases[] = {
        {"no boundary in CONTENT_TYPE", good, "multipart/form-data", -1, "POST", -1},
        {"empty boundary", good, "multipart/form-data; boundary=", -1, "POST", -1},
        {"no CONTENT_TYPE", good, "", -1, "POST", -1},
        {"GET", good, kContentType, -1, "GET", -1},
        {"no method", good, kContentType, -1, nullptr, -1},
        {"CONTENT_LENGTH larger than the body", good, kContentType, long(good.size()) + 10, "POST",
         -1},
        {"truncated before the closing boundary", good.substr(0, 300), kContentType, -1, "POST", 0},
        {"CONTENT_LENGTH smaller than the body", good, kContentType, 400, "POST", 0},
        {"empty body", "", kContentType, 0, "POST", 0},
        {"no Content-Disposition name",
         "--" + kBoundary + "\r\nContent-Type: x\r\n\r\nA\r\n" + kClosing, kContentType, -1, "POST",
         0},
        {"headers run into the boundary",
         "--" + kBoundary + "\r\nContent-Disposition: form-data; name=a\r\nContent-Type: x" +
             kClosing,
         kContentType, -1, "POST", 1},
        {"boundary only", kClosing, kContentType, -1, "POST", 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        Split s = split_in_memory(c.body, c.content_type, c.length, c.method);
        EXPECT_EQ(s.null, c.count < 0);
        EXPECT_EQ(s.count, c.count < 0 ? 0 : c.count);
    }
}

struct Stream {
    int rc = -2;
    bool temp_left = false;
    std::string file = "-"; // "-": no file at the path
};

Stream stream_upload(const std::string &body, long content_length = -1,
                     const std::string &content_type = kContentType) {
    wmtest::TempRoot root;
    std::string path = root.path("/tmp/upload.bin");
    wmtest::write_file(path, "old firmware");
    size_t length = content_length < 0 ? body.size() : size_t(content_length);
    ChildResult r = run_in_child(
        [&] {
            cgi_env(content_type, length);
            return save_queue_for_upload(path.c_str()) + 1;
        },
        body);
    Stream s;
    s.rc = r.exit_code() - 1;
    s.temp_left = wmtest::file_exists(path + ".cgi");
    if (wmtest::file_exists(path)) s.file = wmtest::read_file(path);
    return s;
}

TEST(UploadStream, StoresTheFileAcrossEveryChunkEdge) {
    // The closing boundary crosses each of the first three chunk edges at every offset;
    // sizes 0 and 1 are single-chunk bodies, those near 1024 two-chunk bodies.
    std::string head = file_part("fw", "").substr(0, file_part("fw", "").size() - 2);
    std::string tail = "\r\n" + kClosing;
    std::vector<size_t> sizes = {0, 1, 5000};
    for (size_t edge : {size_t(1024), size_t(2048), size_t(3072)})
        for (size_t at = edge - tail.size() - 1; at <= edge + 1; ++at)
            sizes.push_back(at - head.size());
    for (size_t n : sizes) {
        SCOPED_TRACE("file of " + std::to_string(n) + " bytes");
        std::string data = bytes_pattern(n, unsigned(n));
        Stream s = stream_upload(head + data + tail);
        EXPECT_EQ(s.rc, 0);
        EXPECT_TRUE(s.file == data) << "stored " << s.file.size() << " bytes";
        EXPECT_FALSE(s.temp_left);
    }
}

TEST(UploadStream, FailuresLeaveNoFileAndShortBodiesTheirPrefix) {
    std::string data = bytes_pattern(5000, 9), good = file_part("fw", data) + kClosing;
    size_t head = file_part("fw", "").size() - 2;
    std::string text = file_part("cfg", data, "text/plain") + kClosing;
    struct Case {
        const char *what;
        std::string body;
        long length;
        std::string content_type;
        int rc;
        std::string file;
    } cases[] = {
        // Before the body is read the old file is untouched; a failed write removes it.
        {"CONTENT_LENGTH larger than the body", good, long(good.size()) + 1, kContentType, -1, "-"},
        {"body cut in the middle", good.substr(0, 2500), long(good.size()), kContentType, -1, "-"},
        {"no boundary in CONTENT_TYPE", good, -1, "multipart/form-data", -1, "old firmware"},
        {"no CONTENT_TYPE", good, -1, "", -1, "old firmware"},
        {"CONTENT_LENGTH shorter than the body", good, 4000, kContentType, 0,
         data.substr(0, 4000 - head)},
        // A first chunk without the octet-stream line is not written.
        {"text part", text, -1, kContentType, 0,
         text.substr(1024, text.size() - kClosing.size() - 2 - 1024)},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        Stream s = stream_upload(c.body, c.length, c.content_type);
        EXPECT_EQ(s.rc, c.rc);
        EXPECT_FALSE(s.temp_left);
        EXPECT_TRUE(s.file == c.file) << s.file.size() << " bytes";
    }
}

TEST(UploadHelpers, BoundaryString) {
    char *allocated = nullptr;
    EXPECT_EQ(get_vhash("multipart/form-data; boundary=abc", &allocated), 5);
    ASSERT_NE(allocated, nullptr);
    EXPECT_STREQ(allocated, "--abc");
    std::free(allocated);
    char given[64];
    char *into = given;
    EXPECT_EQ(get_vhash("multipart/form-data; boundary=----zz", &into), 8);
    EXPECT_EQ(into, given);
    EXPECT_STREQ(given, "------zz");
    char *none = nullptr;
    EXPECT_EQ(get_vhash("multipart/form-data", &none), -1);
    EXPECT_EQ(none, nullptr);
}

TEST(UploadHelpers, SearchAndTrim) {
    const char hay[] = "ab\0cd\0cd--x";
    const char *end = hay + sizeof hay - 1;
    EXPECT_EQ(hex_search(hay, end, "\0cd", 3), hay + 2);
    EXPECT_EQ(hex_search(hay + 3, end, "\0cd", 3), hay + 5);
    EXPECT_EQ(hex_search(hay, end, "--x", 3), hay + 8);
    EXPECT_EQ(hex_search(hay, end - 1, "--x", 3), nullptr); // must fit inside [from, to)
    EXPECT_EQ(hex_search(hay, end, "zz", 2), nullptr);
    EXPECT_EQ(hex_search(hay, end, "a", 0), nullptr);

    struct Case {
        std::string text;
        int length;
        char c1, c2;
        std::string want;
    } cases[] = {
        {"\"value\"", 7, '"', '"', "value"}, {"\r\n\r\nx\r\n", 7, '\r', '\n', "x"},
        {"\"\"\"", 3, '"', '"', ""},         {"keep", 4, '"', '"', "keep"},
        {"\"ab\"", 2, '"', '"', "a"}, // only the counted bytes are looked at
        {"\"x", 0, '"', '"', "\"x"},  // length 0: returned unchanged
        {"\"x", -5, '"', '"', "\"x"},
    };
    for (const Case &c : cases) {
        std::string text = c.text;
        int length = c.length;
        char *start = strip_r(text.data(), &length, c.c1, c.c2);
        if (c.length <= 0) {
            EXPECT_EQ(start, text.data());
            EXPECT_EQ(length, c.length);
        } else {
            EXPECT_EQ(std::string(start, size_t(length)), c.want) << c.text;
        }
    }
}

// The script runs through the shell, as the device runs it: its output is dropped, the
// caller's buffered output comes first, and the status is the shell's.
TEST(UploadHelpers, KillDaemonRunsTheScriptThroughTheShell) {
    wmtest::TempRoot root;
    std::string script = root.path("/usr/sbin/killforuploadfile.sh");
    const struct {
        const char *text; // null: no script
        mode_t mode;
        int status;
    } cases[] = {
        {nullptr, 0, 127 << 8},
        {"#!/bin/sh\necho stopped; echo ran > \"$WEBMGMT_ROOT/tmp/ran\"\nexit 3\n", 0755, 3 << 8},
        // No "#!" line: the shell runs it as a script all the same.
        {"echo stopped; echo ran > \"$WEBMGMT_ROOT/tmp/ran\"; exit 4\n", 0755, 4 << 8},
        {"#!/bin/sh\nexit 0\n", 0644, 126 << 8},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text ? c.text : "no script");
        unlink(script.c_str());
        unlink(root.path("/tmp/ran").c_str());
        if (c.text) {
            wmtest::write_file(script, c.text);
            chmod(script.c_str(), c.mode);
        }
        EXPECT_EQ(wmtest::output_of([] {
                      printf("before ");
                      int status = killDaemon();
                      printf("after %d", status);
                  }),
                  "before after " + std::to_string(c.status));
        bool ran = c.status == (3 << 8) || c.status == (4 << 8);
        EXPECT_EQ(wmtest::read_file(root.path("/tmp/ran")), ran ? "ran\n" : "");
    }
}

TEST(UploadHelpers, PrintStringArraySixteenBytesALine) {
    ChildResult r = run_in_child([] {
        print_string_array("lbl", "0123456789abcdefXY", 18);
        print_string_array(nullptr, "0123456789abcdef", 16);
        print_hex_array("h", "\x01\xff\x10", 3);
        print_hex_array(nullptr, "", 0);
        return 0;
    });
    EXPECT_EQ(r.out, "lbl(18):\n0123456789abcdef\nXY\n"
                     "0123456789abcdef\n\n"
                     "h(3):\n01 ff 10 \n"
                     "\n");
}

} // namespace
