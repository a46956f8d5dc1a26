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

struct Part {
    std::string disposition; // the Content-Disposition value
    std::string type;        // empty: no Content-Type line (a form field)
    std::string data;
};

std::string file_part(const std::string &name, const std::string &data,
                      const std::string &type = "application/octet-stream") {
    return "--" + kBoundary + "\r\nContent-Disposition: form-data; name=\"" + name +
           "\"; filename=\"" + name + ".bin\"\r\nContent-Type: " + type + "\r\n\r\n" + data +
           "\r\n";
}

std::string field_part(const std::string &disposition, const std::string &value) {
    return "--" + kBoundary + "\r\nContent-Disposition: " + disposition + "\r\n\r\n" + value +
           "\r\n";
}

std::string closing() {
    return "--" + kBoundary + "--\r\n";
}

std::string bytes_pattern(size_t n, unsigned seed) {
    std::string s(n, '\0');
    for (size_t i = 0; i < n; ++i) {
        seed = seed * 1103515245u + 12345u;
        s[i] = char(seed >> 16);
    }
    return s;
}

void cgi_env(const std::string &content_type, size_t length, const char *method = "POST") {
    if (method)
        setenv("REQUEST_METHOD", method, 1);
    else
        unsetenv("REQUEST_METHOD");
    if (content_type.empty())
        unsetenv("CONTENT_TYPE");
    else
        setenv("CONTENT_TYPE", content_type.c_str(), 1);
    setenv("CONTENT_LENGTH", std::to_string(length).c_str(), 1);
}

struct Split {
    bool null = true;
    int count = 0;
    std::vector<upload_part> parts; // data points into `data`
    std::vector<std::string> data;
    std::string printed; // the parser's diagnostics on standard output
};

// Runs read_queue_for_upload1 + process_file in a child; the parts travel back on stderr.
Split split_in_memory(const std::string &body, const std::string &content_type,
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
            std::string out;
            for (int i = 0; i < n; ++i) {
                out.append(reinterpret_cast<const char *>(&parts[i]), sizeof parts[i]);
                out.append(parts[i].data, parts[i].length);
            }
            fwrite(out.data(), 1, out.size(), stderr);
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
    size_t at = 0;
    for (int i = 0; i < s.count; ++i) {
        upload_part p;
        std::memcpy(&p, r.err.data() + at, sizeof p);
        at += sizeof p;
        s.data.push_back(r.err.substr(at, p.length));
        at += p.length;
        s.parts.push_back(p);
    }
    return s;
}

struct Stream {
    int rc = -2;
    bool exists = false;
    bool temp_left = false;
    std::string file;
};

Stream stream_upload(const std::string &body, const std::string &content_type,
                     long content_length = -1, bool preexisting = false) {
    wmtest::TempRoot root;
    std::string path = root.path("/tmp/upload.bin");
    if (preexisting) wmtest::write_file(path, "old firmware");
    size_t length = content_length < 0 ? body.size() : size_t(content_length);
    ChildResult r = run_in_child(
        [&] {
            cgi_env(content_type, length);
            return save_queue_for_upload(path.c_str()) + 1;
        },
        body);
    Stream s;
    s.rc = r.exit_code() - 1;
    s.exists = wmtest::file_exists(path);
    s.temp_left = wmtest::file_exists(path + ".cgi");
    if (s.exists) s.file = wmtest::read_file(path);
    return s;
}

TEST(UploadSplit, FormFieldIsSkippedAndFileKept) {
    std::string data = bytes_pattern(3000, 1);
    std::string body =
        field_part("form-data; name=\"action\"", "upgrade") + file_part("fw", data) + closing();
    Split s = split_in_memory(body, kContentType);
    ASSERT_FALSE(s.null);
    ASSERT_EQ(s.count, 1);
    EXPECT_STREQ(s.parts[0].name, "fw; filename=fw.bin");
    EXPECT_STREQ(s.parts[0].content_type, " application/octet-stream");
    EXPECT_STREQ(s.parts[0].transfer_encoding, "");
    EXPECT_EQ(s.data[0], data);
    // The skipped field is shown: 32 bytes after its boundary, 16 a line.
    std::string shown =
        std::string("\r\nContent-Disposition: form-data; name=\"action\"").substr(0, 32);
    EXPECT_EQ(s.printed, shown.substr(0, 16) + "\n" + shown.substr(16) + "\n\n");
}

TEST(UploadSplit, AtMostFourFilePartsAndTheirHeaders) {
    std::string body;
    for (int i = 0; i < 5; ++i)
        body += file_part("f" + std::to_string(i), bytes_pattern(100 + i, i));
    body += "--" + kBoundary +
            "\r\nContent-Disposition: form-data; name=cfg\r\nContent-Type: text/plain\r\n"
            "Content-Transfer-Encoding: binary\r\n\r\nx\r\n";
    body += closing();
    Split s = split_in_memory(body, kContentType);
    ASSERT_EQ(s.count, 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(std::string(s.parts[i].name),
                  "f" + std::to_string(i) + "; filename=f" + std::to_string(i) + ".bin");
        EXPECT_EQ(s.data[i], bytes_pattern(100 + i, i));
    }
    // Transfer encoding, when present, is kept with its blank.
    std::string enc_body = "--" + kBoundary +
                           "\r\nContent-Disposition: form-data; name=cfg\r\nContent-Type: "
                           "text/plain\r\nContent-Transfer-Encoding: binary\r\n\r\nabc\r\n" +
                           closing();
    Split e = split_in_memory(enc_body, kContentType);
    ASSERT_EQ(e.count, 1);
    EXPECT_STREQ(e.parts[0].name, "cfg");
    EXPECT_STREQ(e.parts[0].content_type, " text/plain");
    EXPECT_STREQ(e.parts[0].transfer_encoding, " binary");
    EXPECT_EQ(e.data[0], "abc");
}

TEST(UploadSplit, UnquotedNameEqualsQuoted) {
    auto body_with = [](const std::string &disposition) {
        return "--" + kBoundary + "\r\nContent-Disposition: " + disposition +
               "\r\nContent-Type: application/octet-stream\r\n\r\nDATA\r\n" + closing();
    };
    Split quoted = split_in_memory(body_with("form-data; name=\"cfgfile\""), kContentType);
    Split bare = split_in_memory(body_with("form-data; name=cfgfile"), kContentType);
    ASSERT_EQ(quoted.count, 1);
    ASSERT_EQ(bare.count, 1);
    EXPECT_STREQ(quoted.parts[0].name, "cfgfile");
    EXPECT_STREQ(bare.parts[0].name, quoted.parts[0].name);
    EXPECT_EQ(bare.data[0], "DATA");
}

TEST(UploadSplit, LongHeaderValuesAreCutAt254) {
    std::string name(300, 'n');
    std::string type = "application/" + std::string(288, 't');
    std::string body = "--" + kBoundary + "\r\nContent-Disposition: form-data; name=\"" + name +
                       "\"\r\nContent-Type: " + type + "\r\n\r\nPAYLOAD\r\n" + closing();
    Split s = split_in_memory(body, kContentType);
    ASSERT_EQ(s.count, 1);
    EXPECT_EQ(std::string(s.parts[0].name), name.substr(0, 254));
    EXPECT_EQ(std::string(s.parts[0].content_type), (" " + type).substr(0, 254));
    EXPECT_EQ(s.data[0], "PAYLOAD");
}

TEST(UploadSplit, BodiesThatBreakTheRules) {
    std::string data = bytes_pattern(500, 7);
    std::string good = file_part("fw", data) + closing();
    struct Case {
        const char *what;
        std::string body;
        std::string content_type;
        long length;
        const char *method;
        bool null;
        int count;
    } cases[] = {
        {"no boundary in CONTENT_TYPE", good, "multipart/form-data", -1, "POST", true, 0},
        {"empty boundary", good, "multipart/form-data; boundary=", -1, "POST", true, 0},
        {"no CONTENT_TYPE", good, "", -1, "POST", true, 0},
        {"GET", good, kContentType, -1, "GET", true, 0},
        {"no method", good, kContentType, -1, nullptr, true, 0},
        {"CONTENT_LENGTH larger than the body", good, kContentType, long(good.size()) + 10, "POST",
         true, 0},
        {"truncated before the closing boundary", good.substr(0, 300), kContentType, -1, "POST",
         false, 0},
        {"CONTENT_LENGTH smaller than the body", good, kContentType, 400, "POST", false, 0},
        {"empty body", "", kContentType, 0, "POST", false, 0},
        {"no Content-Disposition name",
         "--" + kBoundary + "\r\nContent-Type: x\r\n\r\nA\r\n" + closing(), kContentType, -1,
         "POST", false, 0},
        {"headers run into the boundary",
         "--" + kBoundary + "\r\nContent-Disposition: form-data; name=a\r\nContent-Type: x--" +
             kBoundary + "--\r\n",
         kContentType, -1, "POST", false, 1},
        {"boundary only", "--" + kBoundary + "--\r\n", kContentType, -1, "POST", false, 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        Split s = split_in_memory(c.body, c.content_type, c.length, c.method);
        EXPECT_EQ(s.null, c.null);
        EXPECT_EQ(s.count, c.count);
    }
}

TEST(UploadStream, StoresTheFileAcrossEveryChunkEdge) {
    // The closing boundary crosses each of the first three chunk edges at every offset;
    // sizes 0 and 1 are single-chunk bodies, those near 1024 two-chunk bodies.
    std::string head = file_part("fw", "").substr(0, file_part("fw", "").size() - 2);
    std::string tail = "\r\n" + closing();
    std::vector<size_t> sizes = {0, 1, 5000};
    for (size_t edge : {size_t(1024), size_t(2048), size_t(3072)})
        for (size_t at = edge - tail.size() - 1; at <= edge + 1; ++at)
            sizes.push_back(at - head.size());
    for (size_t n : sizes) {
        SCOPED_TRACE("file of " + std::to_string(n) + " bytes");
        std::string data = bytes_pattern(n, unsigned(n));
        Stream s = stream_upload(head + data + tail, kContentType);
        EXPECT_EQ(s.rc, 0);
        EXPECT_TRUE(s.file == data) << "stored " << s.file.size() << " bytes";
        EXPECT_FALSE(s.temp_left);
    }
}

TEST(UploadStream, FirstChunkWithoutOctetStreamLineIsNotWritten) {
    std::string data = bytes_pattern(3000, 3);
    std::string body = file_part("cfg", data, "text/plain") + closing();
    Stream s = stream_upload(body, kContentType);
    EXPECT_EQ(s.rc, 0);
    size_t file_end = body.size() - closing().size() - 2;
    EXPECT_TRUE(s.file == body.substr(1024, file_end - 1024));
}

TEST(UploadStream, FailuresLeaveNoFileAtThePath) {
    std::string good = file_part("fw", bytes_pattern(5000, 9)) + closing();
    struct Case {
        const char *what;
        std::string body;
        std::string content_type;
        long length;
    } cases[] = {
        {"CONTENT_LENGTH larger than the body", good, kContentType, long(good.size()) + 1},
        {"body cut in the middle", good.substr(0, 2500), kContentType, long(good.size())},
        {"no boundary in CONTENT_TYPE", good, "multipart/form-data", -1},
        {"no CONTENT_TYPE", good, "", -1},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        Stream s = stream_upload(c.body, c.content_type, c.length, true);
        EXPECT_EQ(s.rc, -1);
        EXPECT_FALSE(s.temp_left);
        // Before the body is read the old file is untouched; a failed write removes it.
        if (c.content_type == kContentType)
            EXPECT_FALSE(s.exists);
        else
            EXPECT_EQ(s.file, "old firmware");
    }
}

TEST(UploadStream, ShorterContentLengthStoresThePrefix) {
    std::string data = bytes_pattern(5000, 4);
    std::string body = file_part("fw", data) + closing();
    std::string head = file_part("fw", "").substr(0, file_part("fw", "").size() - 2);
    Stream s = stream_upload(body, kContentType, 4000);
    EXPECT_EQ(s.rc, 0);
    EXPECT_TRUE(s.file == data.substr(0, 4000 - head.size()));
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

TEST(UploadHelpers, KillDaemonRunsTheScriptQuietly) {
    wmtest::TempRoot root;
    ChildResult missing = run_in_child([] { return killDaemon() == (127 << 8) ? 0 : 1; });
    EXPECT_EQ(missing.exit_code(), 0);
    std::string script = root.path("/usr/sbin/killforuploadfile.sh");
    wmtest::write_file(script, "#!/bin/sh\necho stopped; echo ran > \"$WEBMGMT_ROOT/tmp/ran\"\n"
                               "exit 3\n");
    chmod(script.c_str(), 0755);
    ChildResult r = run_in_child([] {
        printf("before ");
        int status = killDaemon();
        printf("after %d", status);
        return 0;
    });
    EXPECT_EQ(r.out, "before after " + std::to_string(3 << 8));
    EXPECT_EQ(wmtest::read_file(root.path("/tmp/ran")), "ran\n");
}

TEST(ByteDumps, SixteenBytesALine) {
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
