// SPDX-License-Identifier: MIT
#include "tests/device/forged_answers.h"

#include <cstring>
#include <deque>
#include <linux/netlink.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

forged_answers::forge current;
std::deque<datagram> arriving;

} // namespace

forged_answers::forged_answers(forge f)
{
    current = std::move(f);
    arriving.clear();
}

forged_answers::~forged_answers()
{
    current = nullptr;
}

// In the place of the C library's, for the library under test, too.
extern "C" ssize_t recvmsg(int fd, msghdr *message, int flags)
{
    ssize_t size = 0;
    if (!current || arriving.empty())
        size = syscall(SYS_recvmsg, fd, message, flags);
    if (!current || size < 0)
        return size;
    const iovec &room = *message->msg_iov;
    if (size > 0)
        for (datagram &made : current(std::string(static_cast<char *>(room.iov_base), size_t(size))))
            arriving.push_back(std::move(made));
    const datagram next = arriving.front();
    arriving.pop_front();
    memcpy(room.iov_base, next.bytes.data(), next.bytes.size());
    static_cast<sockaddr_nl *>(message->msg_name)->nl_pid = next.sender;
    message->msg_flags = next.flags;
    return ssize_t(next.bytes.size());
}
