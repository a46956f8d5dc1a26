// Password hashing through the device's tq_versign tool, and random six-character values.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/time.h>

#include "sys/support/exec.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "config_data_api.h"
#include "webmgmt.h"

namespace {

// The device built "tq_versign sha256 <text>" in a 128-byte command buffer, so only as
// much of the text as fits beside the command word reached the tool.
constexpr std::string_view kHashCommand = "tq_versign sha256 ";
constexpr size_t kCommandLimit = 127;
constexpr size_t kHashTextLimit = kCommandLimit - kHashCommand.size();

constexpr int kRandomLength = 6;

// Milliseconds of the wall clock, cut to 32 bits, as the generator's seed.
unsigned int millisecond_seed() {
    struct timeval now {};
    ::gettimeofday(&now, nullptr);
    int64_t ms = int64_t(now.tv_sec) * 1000 + now.tv_usec / 1000;
    return static_cast<unsigned int>(static_cast<uint64_t>(ms));
}

// Digits, capitals and the small letters a to y: codes 48 to 121 drawn, the punctuation
// between the groups drawn again. 'z' (122) is out of reach of the modulus, as on the
// device.
char draw_character() {
    for (;;) {
        int c = std::rand() % 74 + 48;
        if ((c >= 58 && c <= 64) || (c >= 91 && c <= 96)) continue;
        return static_cast<char>(c);
    }
}

void draw_value(char (&value)[kRandomLength + 1]) {
    for (int i = 0; i < kRandomLength; ++i)
        value[i] = draw_character();
    value[kRandomLength] = '\0';
}

} // namespace

extern "C" {

int to_sha256(const char *text, char *out, int size) {
    if (!text || !out || size <= 0) return 0;
    // The text goes to the tool as one argument, never through a shell, and after "--" so
    // that a password such as "--help" or "-x" is hashed, not read as an option.
    char argument[kHashTextLimit + 1];
    wm::copy_bounded(argument, text);
    const char *argv[] = {"tq_versign", "sha256", "--", argument, nullptr};
    wm::HeapPtr<char> line(static_cast<char *>(std::malloc(size_t(size))));
    if (!line) return 0;
    wm::run_argv_line(argv, {line.get(), size_t(size)}, true);
    // Nothing read leaves the caller's buffer as it was.
    if (line.get()[0] != '\0') std::memcpy(out, line.get(), std::strlen(line.get()) + 1);
    return 0;
}

void passwd_to_sha256(misc_config *record) {
    if (!record) return;
    char digest[65] = {};
    char *password = record->sys_user.rootpwd;
    char clear[sizeof record->sys_user.rootpwd + 1];
    wm::copy_bounded(clear, wm::member_text(password, sizeof record->sys_user.rootpwd));
    to_sha256(clear, digest, sizeof digest);
    // No digest (the tool is missing or printed nothing): the password stays as it was.
    if (!digest[0] && !digest[1] && !digest[2] && !digest[3]) return;
    static_assert(sizeof record->sys_user.rootpwd >= 64, "the digest fills the password");
    std::memcpy(password, digest, 64);
    SC_Save_System_Misc_Config2Flash(record);
}

void create_passwd_random(char *field) {
    if (!field) return;
    std::srand(millisecond_seed());
    char value[kRandomLength + 1];
    do
        draw_value(value);
    while (std::strncmp(value, field, kRandomLength) == 0);
    std::memcpy(field, value, sizeof value);
}

} // extern "C"
