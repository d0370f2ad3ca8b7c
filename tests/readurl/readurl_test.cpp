// The internet file reader against a small HTTP server on the loopback
// address, started by the test.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::ReadHostFile;
using test::RunBinary;
using test::TempFolder;
using test::WriteHostFile;

// Serves fixed bodies by path over HTTP/1.0, one request per connection; a
// path of the form /redirect/X answers with a redirection to /X; any other
// path is 404. It records the paths it was asked for.
class LoopbackServer {
public:
    explicit LoopbackServer(std::map<std::string, std::string> bodies) : bodies_(std::move(bodies)) {
        listener_ = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = 0;
        bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address);
        listen(listener_, 8);
        socklen_t length = sizeof address;
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
        port_ = ntohs(address.sin_port);
        thread_ = std::thread([this] { Serve(); });
    }
    ~LoopbackServer() {
        stopping_ = true;
        shutdown(listener_, SHUT_RDWR);
        close(listener_);
        thread_.join();
    }
    std::string Base() const { return "http://127.0.0.1:" + std::to_string(port_); }
    std::vector<std::string> Requested() {
        std::lock_guard<std::mutex> lock(mutex_);
        return requested_;
    }

private:
    void Serve() {
        while (!stopping_) {
            const int client = accept(listener_, nullptr, nullptr);
            if (client < 0) return;
            std::string request;
            char buffer[4096];
            while (request.find("\r\n\r\n") == std::string::npos) {
                const ssize_t got = read(client, buffer, sizeof buffer);
                if (got <= 0) break;
                request.append(buffer, static_cast<std::size_t>(got));
            }
            const std::size_t start = request.find(' ') + 1;
            const std::string path = request.substr(start, request.find(' ', start) - start);
            {
                std::lock_guard<std::mutex> lock(mutex_);
                requested_.push_back(path);
            }
            std::string reply = "HTTP/1.0 404 Not Found\r\nContent-Length: 9\r\n\r\nnot found";
            if (path.rfind("/redirect/", 0) == 0)
                reply = "HTTP/1.0 302 Found\r\nLocation: /" + path.substr(10) + "\r\nContent-Length: 0\r\n\r\n";
            else if (auto body = bodies_.find(path); body != bodies_.end())
                reply = "HTTP/1.0 200 OK\r\nContent-Length: " + std::to_string(body->second.size()) + "\r\n\r\n" +
                        body->second;
            for (std::size_t sent = 0; sent < reply.size();) {
                const ssize_t n = write(client, reply.data() + sent, reply.size() - sent);
                if (n <= 0) break;
                sent += static_cast<std::size_t>(n);
            }
            close(client);
        }
    }

    std::map<std::string, std::string> bodies_;
    int listener_ = -1;
    int port_ = 0;
    std::atomic<bool> stopping_{false};
    std::thread thread_;
    std::mutex mutex_;
    std::vector<std::string> requested_;
};

const std::string kMolecule = "0,0,.1173,\"O\",1\r\n0,.7572,-.4692,\"H\",2\r\n0,0,0,\"water\",3\r\n";

class ReadUrl : public testing::Test {
protected:
    void SetUp() override {
        WriteHostFile(root.Path() / "c/programdata/ravelo/ravelodrive.dat", "\"Kalmodyn\",\"2026\",\"C:\"\r\n");
        WriteHostFile(root.Path() / "c/ravelo/Kalmodyn.Exe", "stand-in for the modeller executable\r\n");
        std::filesystem::create_directories(root.Path() / "temp");
        std::filesystem::create_directories(root.Path() / "c/downloads");
        env = {{"RAVELO_DRIVE_C", (root.Path() / "c").string()},
               {"TEMP", (root.Path() / "temp").string()},
               {"RAVELO_WAIT_SCALE", "0"},
               {"RAVELO_UI", "headless"}};
    }
    std::filesystem::path Downloads() const { return root.Path() / "c/downloads"; }
    int Read(const std::vector<std::string>& args) { return RunBinary(args, env).status; }

    TempFolder root;
    std::map<std::string, std::string> env;
    LoopbackServer server{{{"/files/water.sxs", kMolecule}}};
};

TEST_F(ReadUrl, DownloadsTheFileToTheTarget) {
    std::filesystem::create_directories(Downloads() / "my files");
    WriteHostFile(Downloads() / "again.sxs", "old contents");
    // A redirection is followed; an existing target is replaced; blanks in
    // the target stay; the request is taken in lower case as a whole.
    const std::pair<std::string, const char*> reads[] = {
        {"/files/water.sxs", "C:\\downloads\\water.sxs"}, {"/redirect/files/water.sxs", "C:\\downloads\\again.sxs"},
        {"/files/water.sxs", "C:\\downloads\\my files\\new water.sxs"},
        {"/FILES/Water.SXS", "C:\\DOWNLOADS\\Lower.SXS"},
    };
    for (const auto& [path, target] : reads) EXPECT_EQ(Read({"readurl", server.Base() + path, target}), 0) << path;
    for (const char* file : {"water.sxs", "again.sxs", "my files/new water.sxs", "lower.sxs"})
        EXPECT_EQ(ReadHostFile(Downloads() / file), kMolecule) << file;
    EXPECT_FALSE(std::filesystem::exists(Downloads() / "Lower.SXS"));
    EXPECT_EQ(server.Requested(), (std::vector<std::string>{"/files/water.sxs", "/redirect/files/water.sxs",
                                                            "/files/water.sxs", "/files/water.sxs",
                                                            "/files/water.sxs"}));
}

TEST_F(ReadUrl, FailuresLeaveNothingBehindAndEndNormally) {
    WriteHostFile(Downloads() / "kept.sxs", "the user's own file");
    const std::vector<std::vector<std::string>> failures = {
        {"readurl", server.Base() + "/files/missing.sxs", "C:\\downloads\\kept.sxs"},   // 404
        {"readurl", "http://127.0.0.1:1/files/water.sxs", "C:\\downloads\\kept.sxs"},   // refused
        {"readurl", "http://no-such-host.invalid/water.sxs", "C:\\downloads\\kept.sxs"},
        {"readurl", server.Base() + "/files/water.sxs", "C:\\no\\such\\folder\\x.sxs"},   // unwritable
        {"readurl", server.Base() + "/files/water.sxs"},                                  // no target
    };
    for (const auto& args : failures) EXPECT_EQ(Read(args), 0) << args[1];
    EXPECT_EQ(ReadHostFile(Downloads() / "kept.sxs"), "the user's own file");
    // Nothing else appeared, not even a temporary file.
    std::vector<std::string> left;
    for (const auto& entry : std::filesystem::directory_iterator(Downloads()))
        left.push_back(entry.path().filename().string());
    EXPECT_EQ(left, std::vector<std::string>{"kept.sxs"});
}

TEST_F(ReadUrl, EmptyTailEndsAtOnce) {
    const auto run = RunBinary({"readurl"}, env);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(server.Requested().empty());
}

}  // namespace
}  // namespace ravelo
