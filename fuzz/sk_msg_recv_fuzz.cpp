// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "fuzz/check.h"

// What a peer writes into a stream, frame after frame, until no whole one is left.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    libvexa_log_level = 0;
    int fds[2];
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, fds) != 0)
        return -1;
    const unique_fd near{fds[0]};
    const unique_fd far{fds[1]}; // stays open: what is missing never comes
    (void)send(far.get(), data, size, MSG_DONTWAIT);
    sk_msg msg{0, 0, buffer_create()};
    uint32_t held = 0;
    while (sk_msg_recv(near.get(), &msg, 0) >= 0) {
        held += uint32_t(msg.len);
        check(msg.data->len(msg.data) == held);
    }
    buffer_destroy(msg.data);
    return 0;
}
