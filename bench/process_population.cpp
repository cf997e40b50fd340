// SPDX-License-Identifier: MIT
#include "bench/process_population.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void check(bool good, const char *what)
{
    if (good)
        return;
    perror(what);
    _exit(1);
}

void listening(int family, int type)
{
    const int sock = socket(family, type, 0);
    sockaddr_storage any{};
    any.ss_family = sa_family_t(family);
    const socklen_t size = family == AF_INET ? sizeof(sockaddr_in) : family == AF_INET6 ? sizeof(sockaddr_in6) : 2;
    check(bind(sock, reinterpret_cast<sockaddr *>(&any), size) == 0, "bind"); // to a name of the kernel's choice
    check(type != SOCK_STREAM || listen(sock, 1) == 0, "listen");
}

// 8 sockets, 4 ends of pipes, 2 without a name of their own, and 6 files.
void open_descriptors()
{
    int ends[2];
    check(close_range(0, ~0U, 0) == 0, "close_range");
    for (const char *file : {"/dev/null", "/dev/null", "/dev/null", "/dev/zero", "/proc/self/exe", "/etc/passwd"})
        check(open(file, O_RDONLY) >= 0, file);
    check(pipe(ends) == 0 && pipe(ends) == 0, "pipe");
    check(eventfd(0, 0) >= 0 && epoll_create1(0) >= 0, "eventfd");
    for (const int family : {AF_INET, AF_INET6})
        for (const int type : {SOCK_STREAM, SOCK_DGRAM})
            listening(family, type);
    listening(AF_UNIX, SOCK_STREAM);
    check(socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0, "socketpair");
    check(socket(AF_UNIX, SOCK_DGRAM, 0) == process_population::descriptors - 1, "the number of descriptors");
}

} // namespace

process_population::process_population()
{
    int ready[2];
    check(pipe2(ready, O_CLOEXEC) == 0, "pipe2");
    for (int i = 0; i < processes; i++) {
        const pid_t child = fork();
        check(child >= 0, "fork");
        if (child == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            open_descriptors(); // closes the pipe
            for (;;)
                pause();
        }
        children_.push_back(child);
    }
    close(ready[1]);
    char none;
    (void)!read(ready[0], &none, 1); // ends once each child has closed its end
    close(ready[0]);
}

process_population::~process_population()
{
    for (const pid_t child : children_)
        kill(child, SIGKILL);
    for (const pid_t child : children_)
        waitpid(child, nullptr, 0);
}
