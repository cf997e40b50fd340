// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "tests/messaging/entries.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"
#include "tests/support/service.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/time.h>
#include <thread>

namespace {

// Both ends of a connection.
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

TEST(sk_msg, frames_the_payload_in_pieces_and_takes_it_from_a_slow_peer)
{
    const ends apart{SOCK_DGRAM}, stream;
    message sent{std::string(40000, 'x')}, large{std::string((1 << 21) + 3, 'y')}, got{"before "};
    EXPECT_EQ(sk_msg_send(apart.near.get(), &sent, 1), 40000);
    std::string piece(20000, '\0');
    for (const ssize_t size : {8, 16384, 16384, 7232}) {
        EXPECT_EQ(recv(apart.far.get(), piece.data(), piece.size(), 0), size);
        EXPECT_EQ(piece.substr(0, 8), size == 8 ? header(7, 40000) : "xxxxxxxx");
    }
    {
        const std::jthread peer{[&] { EXPECT_EQ(sk_msg_recv(stream.far.get(), &got, 5), large.len); }};
        EXPECT_EQ(sk_msg_send(stream.near.get(), &large, 5), large.len);
    }
    EXPECT_TRUE(got.text() == "before " + large.text());
}

TEST(sk_msg, waits_its_time_whatever_signals_come)
{
    sockaddr_un full{AF_UNIX, "/var/run/full"};
    const auto *address = reinterpret_cast<const sockaddr *>(&full);
    socklen_t length = sizeof full;
    const unique_fd unread{socket(AF_UNIX, SOCK_DGRAM, 0)}, datagrams{socket(AF_UNIX, SOCK_DGRAM, 0)};
    ASSERT_EQ(bind(unread.get(), address, length), 0);
    const ends stream;
    message sent{std::string(1 << 20, 'x')}, got;
    const captured_log log{4};
    struct sigaction interrupting = {};
    interrupting.sa_handler = [](int) {};
    sigaction(SIGALRM, &interrupting, nullptr);
    const itimerval storm{{0, 20000}, {0, 20000}}, calm{};
    setitimer(ITIMER_REAL, &storm, nullptr);
    EXPECT_EQ(sk_msg_recv(stream.near.get(), &got, 5), -1) << "the first signal ends it";
    EXPECT_EQ(errno, EINTR);
    EXPECT_EQ(sk_msg_send(stream.near.get(), &sent, 1), -1);
    EXPECT_EQ(errno, ETIMEDOUT);
    EXPECT_EQ(sk_msg_sendto(datagrams.get(), &sent, address, length), -1) << "the queue is full";
    EXPECT_EQ(errno, ETIMEDOUT);
    EXPECT_EQ(sk_msg_recvfrom(datagrams.get(), &got, reinterpret_cast<sockaddr *>(&full), &length), -1);
    setitimer(ITIMER_REAL, &calm, nullptr);
    EXPECT_EQ(log.text(), "[warn ] sk_msg.send_nonblocking(): Connection Timeout!\n"
                          "[warn ] sk_msg.sendto_nonblocking(): Connection Timeout!\n"
                          "[warn ] sk_msg.req_recv(): Select() timeout fd " +
                              std::to_string(datagrams.get()) + "\n");
}

TEST(sk_msg, refuses_what_cannot_be_carried)
{
    ends pair;
    const rlimit many{2000, 2000};
    setrlimit(RLIMIT_NOFILE, &many);
    const unique_fd high{dup2(pair.near.get(), 1024)};
    message longer{"abc"}, negative, fine{"abc"};
    longer.len = 4;
    negative.len = -1;
    sockaddr from;
    socklen_t length = sizeof from;
    const captured_log log{4};
    EXPECT_EQ(sk_msg_send(pair.near.get(), &longer, 1), -1);
    EXPECT_EQ(sk_msg_sendto(pair.near.get(), &negative, &from, length), -1);
    EXPECT_EQ(sk_msg_send(1024, &fine, 1), -1);
    char byte;
    EXPECT_EQ(recv(pair.far.get(), &byte, 1, MSG_DONTWAIT), -1) << "nothing went out";
    EXPECT_EQ(sk_msg_recv(1024, &fine, 1), -1);
    EXPECT_EQ(sk_msg_recvfrom(1024, &fine, &from, &length), -1);
    pair.far.reset();
    fine.len = 3;
    EXPECT_EQ(sk_msg_send(pair.near.get(), &fine, -1), -1);
    EXPECT_EQ(sk_msg_send(pair.near.get(), &fine, INT_MAX), -1);
    EXPECT_EQ(log.text(), "[error] sk_msg.sk_msg_send(): Invalid parameter\n"
                          "[error] sk_msg.sk_msg_sendto(): Invalid parameter\n"
                          "[error] sk_msg.send_nonblocking(): Invalid socketfd:1024\n"
                          "[error] sk_msg.sk_msg_recv(): Invalid socketfd:1024\n"
                          "[error] sk_msg.req_recv(): Invalid socketfd:1024\n"
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

TEST(sk_msg, leaves_no_descriptor_after_10000_mixed_exchanges)
{
    const std::string path = "/var/run/" + std::string(99, 'x'); // without room for a zero
    the_device.put(path, "left behind");
    const service listener{{VEXA_WEBRTC}};
    const ptrdiff_t files = entries("/var/run"), descriptors = entries();
    char list[548];
    uds_sock server;
    ASSERT_GE(uds_sock_open_server(path.c_str(), &server), 0);
    for (int i = 0; i < 2500; i++) {
        uds_sock client;
        sockaddr_un from;
        socklen_t length = sizeof from;
        auto *sender = reinterpret_cast<sockaddr *>(&from);
        ASSERT_GE(uds_sock_open_client(path.c_str(), &client), 0);
        message question{"question " + std::to_string(i)}, got, answer;
        ASSERT_EQ(sk_msg_send(client.fd, &question, 1), question.len);
        ASSERT_EQ(sk_msg_recvfrom(server.fd, &got, sender, &length), question.len);
        ASSERT_EQ(got.text(), question.text());
        ASSERT_EQ(sk_msg_sendto(server.fd, &got, sender, length), got.len);
        ASSERT_EQ(sk_msg_recv(client.fd, &answer, 1), got.len);
        uds_sock_close(&client);
        ASSERT_EQ(sk_msg_sendto(server.fd, &got, sender, length), -1) << "gone";
        ASSERT_EQ(get_all_sdp_sessions(list), 0);
    }
    uds_sock_close(&server);
    EXPECT_EQ(entries("/var/run"), files - 1);
    EXPECT_EQ(entries(), descriptors);
}
