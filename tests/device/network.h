// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/device.h"
#include "tests/support/program.h"

#include <arpa/inet.h>
#include <cstring>
#include <net/if.h>
#include <netpacket/packet.h>
#include <poll.h>
#include <sys/socket.h>

// `ip` on the device's own network, its words separated by blanks.
inline void ip(const std::string &words)
{
    const finished done = run_program({"sh", "-c", "ip " + words});
    ASSERT_EQ(done.status, 0) << words << ": " << done.err;
}

// A broadcast frame from a hardware address, `count` times, of `size` bytes.
inline void send_frames(const char *ifname, const uint8_t (&from)[6], int count = 1, size_t size = 60)
{
    const int sock = socket(AF_PACKET, SOCK_RAW | SOCK_CLOEXEC, 0);
    sockaddr_ll way{};
    way.sll_family = AF_PACKET;
    way.sll_ifindex = int(if_nametoindex(ifname));
    std::string frame(size, '\0');
    memset(frame.data(), 0xff, 6);
    memcpy(frame.data() + 6, from, 6);
    frame[12] = char(0x88), frame[13] = char(0xb5); // the type for experiments
    for (int i = 0; i < count; i++)
        EXPECT_EQ(sendto(sock, frame.data(), size, 0, reinterpret_cast<sockaddr *>(&way), sizeof way), ssize_t(size));
    close(sock);
}

// The kernel delivers frames when it likes.
template <typename Condition>
bool eventually(Condition condition)
{
    for (int milliseconds = 0; milliseconds < 5000; milliseconds++) {
        if (condition())
            return true;
        poll(nullptr, 0, 1);
    }
    return false;
}
