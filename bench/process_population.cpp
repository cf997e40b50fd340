// SPDX-License-Identifier: MIT
#include "bench/process_population.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <sched.h>
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

void set(const char *path, const char *value)
{
    const int fd = open(path, O_WRONLY | O_CLOEXEC);
    if (fd < 0 || write(fd, value, strlen(value)) < 0)
        perror(path);
    close(fd);
}

// Who lists sockets passes the kernel's tables of them whole, and those are as large as the machine has memory. Here
// they are those of an access point with 1 GiB; a network inherits what is set in the one before it. Who may not make
// one stays where he is.
void enter_small_network()
{
    if (unshare(CLONE_NEWNET) != 0) {
        perror("in the machine's own network");
        return;
    }
    set("/proc/sys/net/ipv4/tcp_child_ehash_entries", "8192");
    set("/proc/sys/net/ipv4/udp_child_hash_entries", "512");
    check(unshare(CLONE_NEWNET) == 0, "a network namespace");
}

} // namespace

process_population::process_population()
{
    enter_small_network();
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
