// Uploads sent by curl through lighttpd (mod_cgi) to a CGI program built on the library:
// the streaming writer stores the file byte for byte and the in-memory split yields the
// same bytes.
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <netinet/in.h>
#include <random>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/harness.h"

namespace {

constexpr char kLighttpd[] = "/usr/sbin/lighttpd";
constexpr char kModCgi[] = "/usr/lib/lighttpd/mod_cgi.so";

std::string quoted(const std::string &s) {
    std::string q = "'";
    for (char c : s)
        q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

// Random bytes with things sprinkled in that look like curl's boundaries and part headers.
std::string upload_content(size_t n, unsigned seed) {
    std::mt19937 rng(seed);
    std::string s(n, '\0');
    for (char &c : s)
        c = char(rng());
    const std::string lookalikes[] = {"\r\n------------------------", "\r\n--",
                                      "--------------------------a0b1c2d3e4f5a6b7--\r\n",
                                      "\r\n\r\n", "Content-Type: application/octet-stream"};
    for (size_t at = 97, i = 0; n && at + 60 < n; at += 997, ++i) {
        const std::string &l = lookalikes[i % 5];
        s.replace(at, l.size(), l);
    }
    return s;
}

// lighttpd on an already listening socket (systemd socket activation) on a port the kernel
// picked, so that requests queue in the backlog and nothing has to wait for the server to
// come up, and no other program can take the port in between. The socket is the server's
// alone once it runs: should the server end, a request is refused at once rather than left
// waiting in a backlog that nobody accepts from.
class Server {
  public:
    explicit Server(const std::string &dir) {
        int listen_fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (listen_fd < 0) return;
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t len = sizeof addr;
        if (bind(listen_fd, reinterpret_cast<sockaddr *>(&addr), sizeof addr) != 0 ||
            listen(listen_fd, 16) != 0 ||
            getsockname(listen_fd, reinterpret_cast<sockaddr *>(&addr), &len) != 0) {
            close(listen_fd);
            return;
        }
        port_ = ntohs(addr.sin_port);
        std::string conf = dir + "/lighttpd.conf", text;
        for (const std::string &line :
             {"server.document-root = \"" + dir + "/www\"",
              std::string("server.bind = \"127.0.0.1\""), "server.port = " + std::to_string(port_),
              std::string("server.systemd-socket-activation = \"enable\""),
              std::string("server.modules = (\"mod_cgi\")"),
              "server.upload-dirs = (\"" + dir + "/spool\")",
              "server.errorlog = \"" + dir + "/error.log\"",
              std::string("server.max-request-size = 262144"),
              std::string("cgi.assign = (\".cgi\" => \"\")")})
            text += line + "\n";
        wmtest::write_file(conf, text);
        pid_ = fork();
        if (pid_ == 0) {
            // Descriptor 3, open across the exec (dup2 onto itself would keep close-on-exec).
            if (listen_fd == 3 ? fcntl(3, F_SETFD, 0) != 0 : dup2(listen_fd, 3) != 3) _exit(126);
            setenv("LISTEN_FDS", "1", 1);
            setenv("LISTEN_PID", std::to_string(getpid()).c_str(), 1);
            execl(kLighttpd, kLighttpd, "-D", "-f", conf.c_str(), static_cast<char *>(nullptr));
            _exit(127);
        }
        close(listen_fd);
    }
    ~Server() {
        if (pid_ > 0) {
            kill(pid_, SIGTERM);
            waitpid(pid_, nullptr, 0);
        }
    }
    int port() const { return port_; }
    bool running() const { return pid_ > 0; }

  private:
    int port_ = 0;
    pid_t pid_ = -1;
};

TEST(UploadServer, CurlUploadsThroughLighttpd) {
    if (access(kLighttpd, X_OK) != 0 || access(kModCgi, R_OK) != 0)
        GTEST_SKIP() << "lighttpd with mod_cgi is not installed (" << kLighttpd << ")";
    if (wmtest::run_shell("command -v curl").exit_code() != 0)
        GTEST_SKIP() << "curl is not installed";

    wmtest::TempRoot root;
    const std::string dir = root.dir();
    for (const char *sub : {"/www", "/spool", "/in", "/out"})
        mkdir((dir + sub).c_str(), 0755);
    // lighttpd hands the CGI a fresh environment: the wrapper sets what the program needs
    // and runs it through the emulator when the tests run under one.
    const char *emulator = getenv("WEBMGMT_TEST_EMULATOR");
    if (!emulator || !*emulator) emulator = WEBMGMT_UPLOAD_EMULATOR;
    const char *path = getenv("PATH");
    std::string wrapper = "#!/bin/sh\nexport UPLOAD_DIR=" + quoted(dir + "/out") +
                          "\nexport PATH=" + quoted(path ? path : "/usr/bin:/bin") + "\n";
    for (const char *var : {"QEMU_LD_PREFIX", "LD_LIBRARY_PATH"})
        if (const char *v = getenv(var))
            wrapper += std::string("export ") + var + "=" + quoted(v) + "\n";
    wrapper +=
        "exec " + std::string(emulator ? emulator : "") + " " + quoted(WEBMGMT_UPLOAD_CGI) + "\n";
    std::string cgi = dir + "/www/upload.cgi";
    wmtest::write_file(cgi, wrapper);
    chmod(cgi.c_str(), 0755);

    Server server(dir);
    ASSERT_TRUE(server.running());
    const std::string url = "http://127.0.0.1:" + std::to_string(server.port()) + "/upload.cgi";

    const size_t sizes[] = {0, 1, 1023, 1024, 1025, 2047, 2048, 2049, 1 << 20, 16 << 20};
    for (size_t n : sizes) {
        SCOPED_TRACE("file of " + std::to_string(n) + " bytes");
        std::string data = upload_content(n, unsigned(n) + 1);
        std::string in = dir + "/in/" + std::to_string(n) + ".bin";
        wmtest::write_file(in, data);
        std::string form = quoted("fw=@" + in + ";type=application/octet-stream");

        auto stream = wmtest::run_shell("curl -sS --fail -F " + form + " " + url + "?stream");
        ASSERT_EQ(stream.exit_code(), 0) << stream.err << wmtest::read_file(dir + "/error.log");
        EXPECT_EQ(stream.out, "stream 0\n");
        EXPECT_TRUE(wmtest::read_file(dir + "/out/stream.bin") == data);
        EXPECT_FALSE(wmtest::file_exists(dir + "/out/stream.bin.cgi"));

        auto memory = wmtest::run_shell("curl -sS --fail -F " + form + " " + url + "?memory");
        ASSERT_EQ(memory.exit_code(), 0) << memory.err;
        EXPECT_EQ(memory.out, "memory 1\npart 0 fw; filename=" + std::to_string(n) +
                                  ".bin| application/octet-stream|" + std::to_string(n) + "\n");
        EXPECT_TRUE(wmtest::read_file(dir + "/out/part0.bin") == data);
        unlink((dir + "/out/part0.bin").c_str());
        unlink((dir + "/out/stream.bin").c_str());
        unlink(in.c_str());
    }
}

} // namespace
