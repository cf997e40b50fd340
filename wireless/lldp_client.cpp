// SPDX-License-Identifier: MIT
#include "wireless/lldp_client.h"

#include "core/shell_command.h"

#include <algorithm>
#include <ctime>
#include <poll.h>

namespace {

constexpr char command[] = "lldpcli -f json show neigh";
constexpr size_t capacity = 16384;
constexpr int64_t patience_ms = 2000;

int64_t now_ms()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

// As poll() answers; a signal does not start the time anew.
int wait_until(int fd, int64_t end_ms)
{
    for (;;) {
        pollfd waited{fd, POLLIN, 0}; // a hang-up is always reported
        const int ready = poll(&waited, 1, int(std::max(end_ms - now_ms(), int64_t{0})));
        if (ready >= 0 || errno != EINTR)
            return ready;
    }
}

// What does not fit is read and dropped, so that the client can end; but no more time is given for it.
int read_all(int fd, char *text)
{
    char dropped[1024];
    size_t length = 0;
    int64_t end_ms = now_ms() + patience_ms;
    for (;;) {
        const int ready = wait_until(fd, end_ms);
        if (ready < 0)
            return -1000 - errno;
        if (ready == 0)
            return lldp_silence;
        const size_t room = capacity - 1 - length;
        const ssize_t n = room > 0 ? read(fd, text + length, room) : read(fd, dropped, sizeof dropped);
        if (n <= 0) {
            text[length] = '\0';
            return 0;
        }
        if (room > 0) {
            length += size_t(n);
            end_ms = now_ms() + patience_ms;
        } else if (now_ms() >= end_ms) {
            return lldp_silence;
        }
    }
}

} // namespace

int ask_lldp(unique_text &answer)
{
    const shell_command client{command};
    if (!client)
        return -1;
    answer.reset(static_cast<char *>(malloc(capacity)));
    return answer ? read_all(client.output(), answer.get()) : -2;
}
