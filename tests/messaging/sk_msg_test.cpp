// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <chrono>
#include <csignal>
#include <sys/resource.h>
#include <sys/time.h>
#include <thread>

namespace {

struct ends {
    explicit ends(int type = SOCK_STREAM)
    {
        int fds[2];
        EXPECT_EQ(socketpair(AF_UNIX, type, 0, fds), 0);
        near.reset(fds[0]);
        far.reset(fds[1]);
    }
    unique_fd near, far;
};

struct message : sk_msg {
    explicit message(const std::string &text = "") : sk_msg{7, int(text.size()), buffer_create()}
    {
        data->write(data, text.data(), text.size());
    }
    message(const message &) = delete;
    ~message() { buffer_destroy(data); }
    std::string text() const { return {static_cast<char *>(data->head(data)), data->len(data)}; }
};

std::string header(int32_t type, int32_t len)
{
    const int32_t words[] = {type, len};
    return {reinterpret_cast<const char *>(words), sizeof words};
}

} // namespace

TEST(sk_msg_send, frames_the_payload_in_pieces)
{
    const ends pair{SOCK_DGRAM}; // keeps the pieces apart
    message sent{std::string(40000, 'x')};
    EXPECT_EQ(sk_msg_send(pair.near.get(), &sent, 1), 40000);
    std::string piece(20000, '\0');
    for (const ssize_t size : {8, 16384, 16384, 7232}) {
        EXPECT_EQ(recv(pair.far.get(), piece.data(), piece.size(), 0), size);
        EXPECT_EQ(piece.substr(0, 8), size == 8 ? header(7, 40000) : "xxxxxxxx");
    }
}

TEST(sk_msg_send, arrives_whole_at_a_slow_peer)
{
    const ends pair;
    message sent{std::string(1 << 21, 'x').append("end")}, got{"before "};
    std::jthread peer{[&] { EXPECT_EQ(sk_msg_recv(pair.far.get(), &got, 5), sent.len); }};
    EXPECT_EQ(sk_msg_send(pair.near.get(), &sent, 5), sent.len);
    peer.join();
    EXPECT_TRUE(got.text() == "before " + sent.text());
}

TEST(sk_msg_send, ends_after_its_time_whatever_signals_come)
{
    const ends pair;
    message sent{std::string(1 << 20, 'x')};
    struct sigaction interrupting = {};
    interrupting.sa_handler = [](int) {};
    sigaction(SIGALRM, &interrupting, nullptr);
    const itimerval storm{{0, 20000}, {0, 20000}}, calm{};
    const captured_log log{4};
    setitimer(ITIMER_REAL, &storm, nullptr);
    EXPECT_EQ(sk_msg_send(pair.near.get(), &sent, 1), -1);
    EXPECT_EQ(errno, ETIMEDOUT);
    setitimer(ITIMER_REAL, &calm, nullptr);
    EXPECT_EQ(log.text(), "[warn ] sk_msg.send_nonblocking(): Connection Timeout!\n");
}

TEST(sk_msg_send, refuses_what_cannot_be_sent)
{
    ends pair;
    const rlimit many{2000, 2000};
    setrlimit(RLIMIT_NOFILE, &many);
    const unique_fd high{dup2(pair.near.get(), 1024)};
    message longer{"abc"}, negative, fine{"abc"};
    longer.len = 4;
    negative.len = -1;
    const captured_log log{4};
    EXPECT_EQ(sk_msg_send(pair.near.get(), &longer, 1), -1);
    EXPECT_EQ(sk_msg_send(pair.near.get(), &negative, 1), -1);
    EXPECT_EQ(sk_msg_send(1024, &fine, 1), -1);
    char byte;
    EXPECT_EQ(recv(pair.far.get(), &byte, 1, MSG_DONTWAIT), -1) << "nothing went out";
    pair.far.reset();
    EXPECT_EQ(sk_msg_send(pair.near.get(), &fine, -1), -1);
    EXPECT_EQ(sk_msg_send(pair.near.get(), &fine, INT_MAX), -1);
    EXPECT_EQ(log.text(), "[error] sk_msg.sk_msg_send(): Invalid parameter\n"
                          "[error] sk_msg.sk_msg_send(): Invalid parameter\n"
                          "[error] sk_msg.send_nonblocking(): Invalid socketfd:1024\n"
                          "[error] sk_msg.send_nonblocking(): Select return -1! errno:22/Invalid argument\n"
                          "[error] sk_msg.send_nonblocking(): errno:32/Broken pipe\n");
}

TEST(sk_msg_recv, takes_hostile_frames)
{
    const struct {
        const char *why;
        std::string bytes;
        bool closes;
        int result;
        std::string data;
    } rows[] = {
        {"half a header", header(3, 9).substr(0, 4), true, 0, ""},
        {"negative length", header(3, -1), false, -1, ""},
        {"a short piece counts as whole", header(3, 20000) + "abc", true, 20000, "abc" + std::string(19997, '\0')},
        {"two gigabytes", header(3, INT_MAX) + "abc", false, -1, "abc" + std::string(16381, '\0')},
        {"silence", "", false, -1, ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        ends pair;
        ASSERT_EQ(write(pair.far.get(), row.bytes.data(), row.bytes.size()), ssize_t(row.bytes.size()));
        if (row.closes)
            pair.far.reset();
        message got;
        const captured_log log{4};
        EXPECT_EQ(sk_msg_recv(pair.near.get(), &got, 0), row.result);
        EXPECT_TRUE(got.text() == row.data) << got.text().size();
        EXPECT_EQ(log.text(), "");
    }
}
