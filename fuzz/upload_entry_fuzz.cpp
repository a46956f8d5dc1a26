// Fuzzes the upload entry points as a CGI runs them: fields (split at 0xFF) are the
// Content-Type header, the CONTENT_LENGTH text (which may lie about the body) and the body
// on standard input. Runs get_vhash, read_queue_for_upload, read_queue_for_upload1 and the
// streaming writer save_queue_for_upload, each on a fresh standard input.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "fuzz_fields.h"
#include "fuzz_files.h"
#include "webmgmt.h"

namespace {

std::string root, body_file;

// Standard input from the start of the body file.
void fresh_stdin() {
    int fd = open(body_file.c_str(), O_RDONLY);
    if (fd < 0 || dup2(fd, STDIN_FILENO) < 0) std::abort();
    close(fd);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    root = fuzzsupport::scratch_path("root");
    for (const char *dir : {"", "/tmp", "/var", "/usr", "/usr/sbin"})
        mkdir((root + dir).c_str(), 0700);
    body_file = fuzzsupport::scratch_path("body");
    setenv("WEBMGMT_ROOT", root.c_str(), 1);
    setenv("REQUEST_METHOD", "POST", 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    auto f = fuzzsupport::split_fields(data, size, 3);
    std::string type = fuzzsupport::c_text(f[0]), length = fuzzsupport::c_text(f[1]);
    // A lie in either direction, but no allocation beyond what a device could make.
    long claimed = std::atol(length.c_str());
    if (claimed > long(f[2].size()) + 8192) length = std::to_string(f[2].size() + 8192);
    fuzzsupport::write_bytes(body_file, reinterpret_cast<const uint8_t *>(f[2].data()),
                             f[2].size());
    setenv("CONTENT_TYPE", type.c_str(), 1);
    setenv("CONTENT_LENGTH", length.c_str(), 1);

    char *boundary = nullptr;
    int mark = get_vhash(type.c_str(), &boundary);
    if (mark >= 0 && (!boundary || int(std::strlen(boundary)) != mark)) std::abort();
    std::free(boundary);

    fresh_stdin();
    int got = -1;
    std::free(read_queue_for_upload(&got));

    fresh_stdin();
    int total = 0, mark_length = 0;
    boundary = nullptr;
    char *buffer = read_queue_for_upload1(&total, &boundary, &mark_length);
    if (buffer && (buffer[total] != '\0' || std::strncmp(buffer, boundary, size_t(mark_length))))
        std::abort();
    std::free(buffer);
    std::free(boundary);

    fresh_stdin();
    std::string target = root + "/tmp/upload.bin";
    if (save_queue_for_upload(target.c_str()) == 0) {
        struct stat st {};
        if (stat(target.c_str(), &st) != 0 || st.st_size > off_t(f[2].size())) std::abort();
    }
    unlink(target.c_str());
    return 0;
}
