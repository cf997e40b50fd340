// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <filesystem>

static ptrdiff_t entries(const char *folder)
{
    const std::filesystem::directory_iterator all{folder};
    return std::distance(begin(all), end(all));
}

static const std::string longest = "/var/run/" + std::string(99, 'x'); // without room for a zero

TEST(uds_socket_create, leaves_nothing_behind_when_it_fails)
{
    the_device.put(longest + "x", "not ours");
    const struct {
        std::string path;
        int server;
        const char *line;
    } rows[] = {
        {longest + "x", 1, "bind error, path:%, errno:36/File name too long"},
        {"/var/run/none/x", 1, "bind error, path:%, errno:2/No such file or directory"},
        {"/proc", 1, "bind error, path:%, errno:98/Address already in use"},
        {"/var/run/none", 0, "connect error, path:%, errno:2/No such file or directory"},
        {longest + "x", 0, "connect error, path:%, errno:36/File name too long"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.path);
        const captured_log log;
        const ptrdiff_t files = entries("/var/run"), descriptors = entries("/proc/self/fd");
        uds_sock s;
        EXPECT_EQ(uds_socket_create(row.path.c_str(), &s, row.server), -1);
        std::string line = row.line;
        EXPECT_EQ(log.text(), "[error] uds.uds_socket_create(): " + line.replace(line.find('%'), 1, row.path) + "\n");
        uds_sock_close(&s);
        EXPECT_EQ(entries("/var/run"), files);
        EXPECT_EQ(entries("/proc/self/fd"), descriptors);
    }
}

TEST(uds_sock, carries_messages_both_ways_and_leaves_no_descriptor)
{
    the_device.put(longest, "left behind");
    const ptrdiff_t files = entries("/var/run"), descriptors = entries("/proc/self/fd");
    buffer *data = buffer_create();
    sk_msg msg{};
    uds_sock server;
    sockaddr_un from;
    socklen_t length = sizeof from;
    ASSERT_GE(uds_sock_open_server(longest.c_str(), &server), 0);
    for (int i = 0; i < 5000; i++) {
        uds_sock client;
        ASSERT_GE(uds_sock_open_client(longest.c_str(), &client), 0);
        data->reset(data);
        msg = {i, data->printf(data, "question %d", i), data};
        ASSERT_EQ(sk_msg_send(client.fd, &msg, 1), msg.len);
        data->reset(data);
        length = sizeof from;
        ASSERT_GT(sk_msg_recvfrom(server.fd, &msg, reinterpret_cast<sockaddr *>(&from), &length), 0);
        ASSERT_EQ(static_cast<char *>(data->head(data)), "question " + std::to_string(i));
        ASSERT_EQ(sk_msg_sendto(server.fd, &msg, reinterpret_cast<sockaddr *>(&from), length), msg.len);
        ASSERT_EQ(sk_msg_recv(client.fd, &msg, 1), msg.len);
        uds_sock_close(&client);
        ASSERT_EQ(sk_msg_sendto(server.fd, &msg, reinterpret_cast<sockaddr *>(&from), length), -1) << "gone";
    }
    const captured_log log{2};
    EXPECT_EQ(sk_msg_recvfrom(server.fd, &msg, reinterpret_cast<sockaddr *>(&from), &length), -1);
    EXPECT_EQ(log.text(), "[warn ] sk_msg.req_recv(): Select() timeout fd " + std::to_string(server.fd) + "\n");
    uds_sock_close(&server);
    buffer_destroy(data);
    EXPECT_EQ(entries("/var/run"), files - 1);
    EXPECT_EQ(entries("/proc/self/fd"), descriptors + 2) << "those of the captured log";
}
