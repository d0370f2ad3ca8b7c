// The internet file reader against a small HTTP server on the loopback
// address, started by the test.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <thread>

#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

const std::string kMolecule = "0,0,.1173,\"O\",1\r\n0,.7572,-.4692,\"H\",2\r\n0,0,0,\"water\",3\r\n";

// Serves kMolecule at /files/water.sxs over HTTP/1.0, one request per
// connection; /redirect/X redirects to /X, any other path is 404.
class LoopbackServer {
public:
    LoopbackServer() {
        sockaddr_in address{AF_INET, 0, {htonl(INADDR_LOOPBACK)}, {}};
        socklen_t length = sizeof address;
        bind(listener_, reinterpret_cast<sockaddr*>(&address), length);
        listen(listener_, 8);
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
        base = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port));
        thread_ = std::thread([this] {
            for (int client; (client = accept(listener_, nullptr, nullptr)) >= 0; close(client)) Answer(client);
        });
    }
    ~LoopbackServer() {
        shutdown(listener_, SHUT_RDWR);
        close(listener_);
        thread_.join();
    }
    std::string base;

private:
    static void Answer(int client) {
        std::string request;
        char buffer[4096];
        for (ssize_t got; request.find("\r\n\r\n") == std::string::npos &&
                          (got = read(client, buffer, sizeof buffer)) > 0;)
            request.append(buffer, static_cast<std::size_t>(got));
        const std::string path = request.substr(4, request.find(' ', 4) - 4);   // after "GET "
        std::string reply = "HTTP/1.0 404 Not Found\r\nContent-Length: 9\r\n\r\nnot found";
        if (path.rfind("/redirect/", 0) == 0)
            reply = "HTTP/1.0 302 Found\r\nLocation: /" + path.substr(10) + "\r\nContent-Length: 0\r\n\r\n";
        else if (path == "/files/water.sxs")
            reply = "HTTP/1.0 200 OK\r\nContent-Length: " + std::to_string(kMolecule.size()) + "\r\n\r\n" + kMolecule;
        send(client, reply.data(), reply.size(), MSG_NOSIGNAL);
    }
    int listener_ = socket(AF_INET, SOCK_STREAM, 0);
    std::thread thread_;
};

TEST(ReadUrl, DownloadsTheFileToTheTargetAndFailuresLeaveNothingBehind) {
    LoopbackServer server;
    TestProgram t({}, 0);
    t.Install();
    t.Write("C:\\downloads\\again.sxs", "old contents");
    std::filesystem::create_directories(t.Host("C:\\downloads\\my files"));
    // A redirection is followed; an existing target is replaced; blanks in
    // the target stay; the request is taken in lower case as a whole.
    for (const char* tail : {"/files/water.sxs C:\\downloads\\water.sxs",
                             "/redirect/files/water.sxs C:\\downloads\\again.sxs",
                             "/files/water.sxs C:\\downloads\\my files\\new water.sxs",
                             "/FILES/Water.SXS C:\\DOWNLOADS\\Lower.SXS"})
        EXPECT_EQ(t.Run("readurl " + server.base + tail), 0) << tail;
    for (const char* file : {"water.sxs", "again.sxs", "my files\\new water.sxs", "lower.sxs"})
        EXPECT_EQ(t.Read(std::string("C:\\downloads\\") + file), kMolecule) << file;
    EXPECT_FALSE(t.Exists("C:\\downloads\\Lower.SXS"));

    // Failures, and an empty tail, end normally.
    t.Write("C:\\kept\\kept.sxs", "the user's own file");
    const std::string tails[] = {
        server.base + "/files/missing.sxs C:\\kept\\kept.sxs",            // 404
        "http://127.0.0.1:1/files/water.sxs C:\\kept\\kept.sxs",          // refused
        "http://no-such-host.invalid/water.sxs C:\\kept\\kept.sxs",
        server.base + "/files/water.sxs C:\\no\\such\\folder\\x.sxs",      // unwritable
        server.base + "/files/water.sxs",                                  // no target
        "",
    };
    for (const std::string& tail : tails) EXPECT_EQ(t.Run("readurl " + tail), 0) << tail;
    EXPECT_EQ(t.Read("C:\\kept\\kept.sxs"), "the user's own file");
    const std::filesystem::directory_iterator kept(t.Host("C:\\kept"));
    EXPECT_EQ(std::distance(kept, std::filesystem::directory_iterator()), 1);   // not even a temporary file
}

}  // namespace
}  // namespace ravelo
