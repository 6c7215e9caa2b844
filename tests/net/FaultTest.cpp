// SPDX-License-Identifier: MIT
//
// What a request makes of servers that do not behave.
#include <atomic>
#include <chrono>
#include <poll.h>
#include <random>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>
#include <zlib.h>

#include <gtest/gtest.h>

#include "LargeInput.h"
#include "files/TemporaryFolder.h"
#include "net/FaultServer.h"
#include "net/Getting.h"

namespace yg::testing {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using net::HttpGetOptions;

constexpr std::string_view headers = "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n";
constexpr std::string_view chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";

std::string gzip(const std::string& text) {
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    std::string packed(deflateBound(&stream, static_cast<uLong>(text.size())), '\0');
    std::string copy = text;
    stream.next_in = reinterpret_cast<Bytef*>(copy.data());
    stream.avail_in = static_cast<uInt>(copy.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

Body bodyFrom(const Treatment& treatment, const HttpGetOptions& options = {}) {
    FaultServer server(treatment);
    return bodyOf(server.url(), options);
}

TEST(Fault, GivesTheBodyOfEveryWholeAnswer) {
    struct Case {
        std::string answer;
        Body body;
    };
    const std::string packed = gzip("hello hello hello");
    for (const Case& one : std::vector<Case>{
             {"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello", "hello"},
             {"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello, and more", "hello"},
             {"HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\n" + std::string("a\0b", 3),
              std::string("a\0b", 3)},
             {"HTTP/1.1 200 OK\r\n\r\nto the end", "to the end"},
             {"HTTP/1.0 200 OK\r\n\r\nold", "old"},
             {"HTTP/1.1 200 OK\r\nTransfer-Encoding: "
              "chunked\r\n\r\n2\r\nhe\r\n3\r\nllo\r\n0\r\n\r\n",
              "hello"},
             {"HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx", "x"},
             {"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n", ""},
             {"HTTP/1.1 204 No Content\r\n\r\n", ""},
             {"HTTP/1.1 304 Not Modified\r\n\r\n", ""},
             {"HTTP/1.1 404 Not Found\r\nContent-Length: 16\r\n\r\n{\"md5Value\":\"9\"}",
              "{\"md5Value\":\"9\"}"},
             {"HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n", ""},
             {"HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic\r\nContent-Length: 2\r\n\r\nno",
              "no"},
             {"HTTP/1.1 500 Server Error\r\nContent-Length: 4\r\n\r\noops", "oops"},
             {"HTTP/1.1 302 Found\r\nContent-Length: 7\r\n\r\nnowhere", "nowhere"},
             {"HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n" + packed, "hello hello hello"},
             {"HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: " +
                  std::to_string(packed.size()) + "\r\n\r\n" + packed,
              "hello hello hello"},
             {"HTTP/1.1 200 OK\r\nCONTENT-ENCODING:X-GZip \r\n\r\n" + packed + packed,
              "hello hello hellohello hello hello"},
             {"HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 0\r\n\r\n", ""},
             {"HTTP/1.1 200 OK\r\nContent-Encoding: identity\r\n\r\nhello", "hello"},
             {"HTTP/1.1 100 Continue\r\nContent-Encoding: gzip\r\n\r\nHTTP/1.1 200 OK\r\n\r\nhello",
              "hello"},
             {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nhe\r\n0\r\n"
              "Content-Encoding: gzip\r\n\r\n",
              "he"},
         }) {
        EXPECT_EQ(bodyFrom([&](Connection& client) { client.send(one.answer); }), one.body)
            << one.answer;
    }
}

TEST(Fault, SaysWhatTheServerAnsweredAndWhyThereIsNoBody) {
    FaultServer server([](Connection& client) {
        if (client.path() == "/moved")
            client.answer("302 Found\r\nLocation: /here", "");
        else if (client.path() == "/here")
            client.answer("404 Not Found\r\nContent-Type: application/json", "{}");
        else if (client.path() == "/half")
            client.send(std::string(headers) + "half");
        else if (client.path() == "/large")
            client.answer("200 OK", std::string(200, 'x'));
        else if (client.path() == "/silent")
            client.hang();
    });
    HttpGetOptions options;
    options.idleTime = 300ms;
    options.largestBody = 100;
    net::HttpGetService service(options);

    const Outcome moved = outcomeOf(service, server.url("/moved"));
    EXPECT_EQ(moved.body, "{}");
    EXPECT_EQ(moved.error, std::nullopt);
    ASSERT_TRUE(moved.response);
    EXPECT_EQ(moved.response->statusCode, 404);
    EXPECT_EQ(moved.response->url, server.url("/here"));
    EXPECT_EQ(moved.response->contentType, "application/json");

    const Outcome half = outcomeOf(service, server.url("/half"));
    EXPECT_EQ(half.body, std::nullopt);
    ASSERT_TRUE(half.response);
    EXPECT_EQ(half.response->statusCode, 200);
    EXPECT_EQ(half.response->contentType, std::nullopt);
    EXPECT_NE(half.error.value_or(""), "");

    EXPECT_EQ(outcomeOf(service, server.url("/silent")).error, "the request timed out");
    EXPECT_NE(outcomeOf(service, server.url("/large")).error.value_or(""), "");
    const Outcome none = outcomeOf(service, "ftp://127.0.0.1/");
    EXPECT_FALSE(none.response);
    EXPECT_NE(none.error.value_or(""), "");
}

TEST(Fault, GivesNoBodyWithoutAWholeAnswer) {
    const std::string packed = gzip(std::string(5000, 'x') + "hello");
    std::string damaged = packed;
    damaged[damaged.size() / 2] = static_cast<char>(~damaged[damaged.size() / 2]);
    std::string wrongSum = packed;
    wrongSum[wrongSum.size() - 6] = static_cast<char>(~wrongSum[wrongSum.size() - 6]);
    std::mt19937 random(7);
    std::string garbage(20'000, '\0');
    for (char& byte : garbage) {
        byte = static_cast<char>(random());
    }
    const std::string packedHeaders = "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n";
    const std::string counted = "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: ";
    const std::string half = packed.substr(0, packed.size() / 2);
    for (const std::string& answer : std::vector<std::string>{
             "",
             "\r\n",
             "HTTP/1.1 200",
             "HTTP/1.1 200 OK\r\nContent-Le",
             std::string(headers),
             std::string(headers) + "half",
             std::string(chunked) + "5\r\nhello\r\n",
             std::string(chunked) + "5\r\nhel",
             std::string(chunked) + "5\r\nhello\r\n0\r\n",
             std::string(chunked) + "zz\r\nhello\r\n0\r\n\r\n",
             "HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\nhello",
             "HTTP/0.9 or older",
             "<html>no header at all</html>",
             garbage,
             "HTTP/1.1 200 OK\r\n" + garbage,
             packedHeaders + "not packed at all",
             packedHeaders + damaged,
             packedHeaders + wrongSum,
             packedHeaders + half,
             packedHeaders + packed + "more",
             "HTTP/1.1 200 OK\r\nContent-Encoding: gzip, gzip\r\n\r\n" + packed,
             "HTTP/1.1 200 OK\r\nContent-Encoding: br\r\n\r\n" + packed,
             "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n" + packedHeaders.substr(17) + packed,
             "HTTP/1.1 302 Found\r\nLocation: /",
             "HTTP/1.1 100 Continue\r\n\r\n",
             "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\n",
             counted + std::to_string(half.size()) + "\r\n\r\n" + half,
             counted + std::to_string(packed.size() - 3) + "\r\n\r\n" +
                 packed.substr(0, packed.size() - 3),
         }) {
        EXPECT_EQ(bodyFrom([&](Connection& client) { client.send(answer); }), std::nullopt)
            << answer.substr(0, 200);
    }
    EXPECT_EQ(bodyFrom([](Connection& client) { client.reset(); }), std::nullopt);
    EXPECT_EQ(bodyFrom([](Connection& client) {
                  client.send(headers);
                  client.send("half");
                  client.pause(50ms);
                  client.reset();
              }),
              std::nullopt);
}

TEST(Fault, GivesNoBodyWhereThereIsNoServer) {
    const HeldPort held = holdPort();
    EXPECT_EQ(bodyOf("http://127.0.0.1:" + std::to_string(held.port) + "/"), std::nullopt);
    ::close(held.socket);
    // Whatever the machine's name service does with it, and for however long.
    EXPECT_EQ(bodyOf("http://no-such-host.invalid/", {.idleTime = 1s}), std::nullopt);
    EXPECT_EQ(bodyOf("http://" + std::string(70, 'x') + ".invalid/", {.idleTime = 1s}),
              std::nullopt);
}

TEST(Fault, GivesNoBodyOfABadAddress) {
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); });
    const files::TemporaryFolder folder;
    files::put(folder / "secret", "secret");
    const std::string port = std::to_string(server.port());
    for (const std::string& url : std::vector<std::string>{
             "",
             " ",
             "not an address",
             "http",
             "http:",
             "http://",
             "://",
             "127.0.0.1:" + port + "/",
             "//127.0.0.1:" + port + "/",
             "/path",
             "http://127.0.0.1:99999/",
             "http://127.0.0.1:x/",
             "http://[::1/",
             "http://127.0.0.1:" + port + "/a b",
             " " + server.url(),
             server.url() + "\r\nHost: b",
             server.url() + std::string("\0x", 2),
             "\xff\xfe",
             "file://" + folder / "secret",
             "FILE://" + folder / "secret",
             "ftp://127.0.0.1:" + port + "/",
             "gopher://127.0.0.1:" + port + "/",
             "dict://127.0.0.1:" + port + "/",
             "ws://127.0.0.1:" + port + "/",
             "javascript:alert(1)",
             "data:text/plain,hello",
             "http://" + std::string(9'000'000, 'x'),
         }) {
        EXPECT_EQ(bodyOf(url, {.idleTime = 2s}), std::nullopt) << url.substr(0, 100);
    }
    EXPECT_EQ(server.connections(), 0);
    EXPECT_EQ(bodyOf("HTTP://127.0.0.1:" + port), "hello");
}

TEST(Fault, EndsWhenNothingArrivesForTheIdleTime) {
    for (const std::string_view beginning :
         {std::string_view(), std::string_view("HTTP/1.1 200 OK\r\nContent-"), headers,
          std::string_view("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf"), chunked}) {
        const auto begin = Clock::now();
        EXPECT_EQ(bodyFrom(
                      [&](Connection& client) {
                          client.send(beginning);
                          client.hang();
                      },
                      {.idleTime = 300ms}),
                  std::nullopt);
        EXPECT_GE(Clock::now() - begin, 300ms);
    }
    // Connections that are never accepted are silent as well.
    const HeldPort held = holdPort();
    ::listen(held.socket, 1);
    EXPECT_EQ(bodyOf("http://127.0.0.1:" + std::to_string(held.port) + "/", {.idleTime = 300ms}),
              std::nullopt);
    ::close(held.socket);
}

TEST(Fault, WaitsTenSecondsUnlessToldOtherwise) {
    EXPECT_EQ(HttpGetOptions().idleTime, 10s);
}

TEST(Fault, WaitsForASlowAnswerForAsLongAsItMoves) {
    const std::string packed = gzip("hello hello");
    for (const std::string& answer :
         {std::string("HTTP/1.1 200 OK\r\nA: b\r\nContent-Length: 11\r\n\r\nhello hello"),
          "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: " +
              std::to_string(packed.size()) + "\r\n\r\n" + packed}) {
        const auto begin = Clock::now();
        EXPECT_EQ(bodyFrom(
                      [&](Connection& client) {
                          const std::size_t body = answer.find("\r\n\r\n") + 4;
                          std::size_t lineEnd = 0;
                          for (std::size_t at = 0; at < body; at = lineEnd) {
                              lineEnd = answer.find("\r\n", at) + 2;
                              client.send(answer.substr(at, lineEnd - at));
                              client.pause(90ms);
                          }
                          for (std::size_t at = body; at < answer.size(); ++at) {
                              client.send(answer.substr(at, 1));
                              client.pause(90ms);
                          }
                      },
                      {.idleTime = 800ms}),
                  "hello hello");
        EXPECT_GE(Clock::now() - begin, 1s);
    }
}

TEST(Fault, FollowsTwentyRedirects) {
    FaultServer server([](Connection& client) {
        const int left = std::stoi(client.path().substr(1));
        if (left > 0) {
            client.answer("302 Found\r\nLocation: /" + std::to_string(left - 1), "not this");
        } else {
            client.answer("200 OK", "hello");
        }
    });
    EXPECT_EQ(bodyOf(server.url("/1")), "hello");
    EXPECT_EQ(bodyOf(server.url("/20")), "hello");
    const int before = server.connections();
    EXPECT_EQ(bodyOf(server.url("/21")), std::nullopt);
    EXPECT_EQ(server.connections() - before, 21);
}

TEST(Fault, FollowsRedirectsToOtherServersAndOutOfNoLoop) {
    FaultServer second([](Connection& client) { client.answer("404 Not Found", "there"); });
    FaultServer first([&](Connection& client) {
        const bool isLoop = client.path() == "/loop";
        client.answer("301 Moved\r\nLocation: " + (isLoop ? "/loop" : second.url("/x")), "");
    });
    EXPECT_EQ(bodyOf(first.url()), "there");
    EXPECT_EQ(bodyOf(first.url("/loop")), std::nullopt);
}

TEST(Fault, FollowsNoRedirectToAnotherScheme) {
    const files::TemporaryFolder folder;
    files::put(folder / "secret", "secret");
    const HeldPort held = holdPort();
    const std::string authority = "127.0.0.1:" + std::to_string(held.port) + "/";
    ::listen(held.socket, 1);
    for (const std::string& other :
         {"file://" + folder / "secret", "ftp://" + authority, "gopher://" + authority,
          std::string("dict://127.0.0.1/"), std::string("x-own://a"), std::string("http://")}) {
        FaultServer server([&](Connection& client) {
            client.answer("302 Found\r\nLocation: " + other, "not this");
        });
        EXPECT_EQ(bodyOf(server.url()), std::nullopt) << other;
        EXPECT_EQ(server.connections(), 1) << other;
    }
    // Nobody has knocked at the other port.
    pollfd knocking{held.socket, POLLIN, 0};
    EXPECT_EQ(::poll(&knocking, 1, 0), 0);
    ::close(held.socket);
}

TEST(Fault, TakesBodiesUpToTheLimit) {
    const std::string body(1000, 'x');
    const auto answers = [&](std::string_view encoding, const std::string& bytes) {
        return [=](Connection& client) {
            client.answer("200 OK\r\nA: b" + std::string(encoding), bytes);
        };
    };
    const auto streams = [&](Connection& client) { client.send("HTTP/1.1 200 OK\r\n\r\n" + body); };
    const std::string packing = "\r\nContent-Encoding: gzip";
    const HttpGetOptions fits{.largestBody = 1000};
    const HttpGetOptions fitsNot{.largestBody = 999};
    EXPECT_EQ(bodyFrom(answers("", body), fits), body);
    EXPECT_EQ(bodyFrom(answers("", body), fitsNot), std::nullopt);
    EXPECT_EQ(bodyFrom(streams, fits), body);
    EXPECT_EQ(bodyFrom(streams, fitsNot), std::nullopt);
    EXPECT_EQ(bodyFrom(answers(packing, gzip(body)), fits), body);
    EXPECT_EQ(bodyFrom(answers(packing, gzip(body)), fitsNot), std::nullopt);
    EXPECT_EQ(HttpGetOptions().largestBody, 64U * 1024 * 1024);
}

/// Sends pieces until the client goes, and counts how many it took.
Treatment endless(const std::string& beginning, const std::string& piece,
                  std::atomic<std::size_t>& bytes) {
    return [=, &bytes](Connection& client) {
        client.send(beginning);
        while (bytes < std::size_t{1024} * 1024 * 1024 && client.send(piece)) {
            bytes += piece.size();
        }
    };
}

TEST(Fault, GivesUpOnAnswersWithoutEnd) {
    const std::string piece(64 * 1024, 'x');
    const HttpGetOptions options{.largestBody = isSanitized ? 4U << 20 : 64U << 20};
    const std::size_t plenty = options.largestBody + (16U << 20);
    for (const std::string& beginning : {
             std::string("HTTP/1.1 200 OK\r\n\r\n"),
             std::string("HTTP/1.1 200 OK\r\nContent-Length: 1073741824\r\n\r\n"),
         }) {
        std::atomic<std::size_t> bytes = 0;
        EXPECT_EQ(bodyFrom(endless(beginning, piece, bytes), options), std::nullopt) << beginning;
        EXPECT_LT(bytes, plenty) << beginning;
    }
    std::atomic<std::size_t> bytes = 0;
    EXPECT_EQ(bodyFrom(endless(std::string(chunked), "10000\r\n" + piece + "\r\n", bytes), options),
              std::nullopt);
    EXPECT_LT(bytes, plenty);
    // Compressed parts of nothing, so that the body itself never grows.
    std::string nothing;
    for (int i = 0; i < 10'000; ++i) {
        nothing += std::string("\0\0\0\xff\xff", 5);
    }
    bytes = 0;
    EXPECT_EQ(bodyFrom(endless("HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n" +
                                   gzip("hello").substr(0, 10),
                               nothing, bytes),
                       options),
              std::nullopt);
    EXPECT_LT(bytes, plenty);
    EXPECT_EQ(bodyFrom(endless("HTTP/1.1 302 Found\r\nLocation: /\r\n\r\n", piece, bytes), options),
              std::nullopt);
}

TEST(Fault, GivesUpOnHeadersWithoutEnd) {
    std::string lines;
    for (int i = 0; i < 1000; ++i) {
        lines += "X-Header-" + std::to_string(i) + ": value\r\n";
    }
    const std::string status = "HTTP/1.1 200 OK\r\n";
    struct Case {
        std::string beginning;
        std::string piece;
    };
    for (const Case& one : std::vector<Case>{{status, std::string(64 * 1024, 'x')},
                                             {status, lines},
                                             {"", "HTTP/1.1 100 Continue\r\n\r\n"}}) {
        std::atomic<std::size_t> bytes = 0;
        EXPECT_EQ(bodyFrom(endless(one.beginning, one.piece, bytes)), std::nullopt);
        EXPECT_LT(bytes, 20U << 20);
    }
}

TEST(Fault, IsNotFilledByABomb) {
    const std::string bomb = gzip(std::string(isSanitized ? 20U << 20 : 100U << 20, '\0'));
    const HttpGetOptions options{.largestBody = isSanitized ? 4U << 20 : 64U << 20};
    EXPECT_EQ(
        bodyFrom(
            [&](Connection& client) { client.answer("200 OK\r\nContent-Encoding: gzip", bomb); },
            options),
        std::nullopt);
}

TEST(Fault, TrustsNoCertificateButThoseOfTheSystem) {
    const files::TemporaryFolder folder;
    writeIdentity(folder / "identity.pem");
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); },
                       folder / "identity.pem");
    EXPECT_EQ(bodyOf(server.url()), std::nullopt);
    EXPECT_EQ(bodyOf(server.url(), {.trustedCertificates = folder / "identity.pem"}), "hello");
}

}  // namespace
}  // namespace yg::testing
