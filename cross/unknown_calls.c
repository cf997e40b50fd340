/* SPDX-License-Identifier: MIT */
/* In emulated programs syscall() hands the calls for mounts that the emulator does not know to a program of the machine
 * (mount_calls.c), and makes all others itself. */
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

enum { most_arguments = 6, text_size = 24 };

struct text {
    char text[text_size];
};

static struct text in_decimals(long number)
{
    struct text t;
    snprintf(t.text, sizeof t.text, "%d", (int)number);
    return t;
}

static int receive_descriptor(int from)
{
    char byte;
    int fd = -1;
    char room[CMSG_SPACE(sizeof fd)] __attribute__((aligned(sizeof(size_t))));
    struct iovec piece = {&byte, 1};
    struct msghdr message = {.msg_iov = &piece, .msg_iovlen = 1, .msg_control = room, .msg_controllen = sizeof room};
    if (recvmsg(from, &message, MSG_CMSG_CLOEXEC) == 1 && CMSG_FIRSTHDR(&message))
        memcpy(&fd, CMSG_DATA(CMSG_FIRSTHDR(&message)), sizeof fd);
    return fd;
}

/* the status, and the descriptor if one came along; @passed is open in the program, too */
static int run(const char *const *arguments, int passed, int *descriptor)
{
    int ends[2], status = -1;
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return errno;
    const pid_t child = fork();
    if (child == 0) {
        if (passed >= 0)
            fcntl(passed, F_SETFD, 0);
        if (dup2(ends[1], STDIN_FILENO) == STDIN_FILENO)
            execv(MOUNT_CALLS, (char *const *)arguments);
        _exit(ENOSYS);
    }
    close(ends[1]);
    *descriptor = child > 0 ? receive_descriptor(ends[0]) : -1;
    close(ends[0]);
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : ECHILD;
}

static long answer(const char *const *arguments, int passed)
{
    int descriptor = -1;
    const int error = run(arguments, passed, &descriptor);
    if (error) {
        errno = error;
        return -1;
    }
    return descriptor >= 0 ? descriptor : 0;
}

static long call(long number, const long *a)
{
    register long x8 __asm__("x8") = number;
    register long x0 __asm__("x0") = a[0];
    register long x1 __asm__("x1") = a[1];
    register long x2 __asm__("x2") = a[2];
    register long x3 __asm__("x3") = a[3];
    register long x4 __asm__("x4") = a[4];
    register long x5 __asm__("x5") = a[5];
    __asm__ volatile("svc 0" : "+r"(x0) : "r"(x8), "r"(x1), "r"(x2), "r"(x3), "r"(x4), "r"(x5) : "memory", "cc");
    if (x0 >= 0 || x0 < -4095)
        return x0;
    errno = (int)-x0;
    return -1;
}

long syscall(long number, ...)
{
    long a[most_arguments];
    va_list list;
    va_start(list, number);
    for (int i = 0; i < most_arguments; i++)
        a[i] = va_arg(list, long);
    va_end(list);
    switch (number) {
    case SYS_open_tree:
        return answer((const char *[]){"mount_calls", "open_tree", in_decimals(a[0]).text, (const char *)a[1],
                                       in_decimals(a[2]).text, NULL},
                      (int)a[0]);
    case SYS_move_mount: /* of a descriptor itself */
        return answer((const char *[]){"mount_calls", "move_mount", in_decimals(a[0]).text, (const char *)a[3],
                                       in_decimals(a[4]).text, NULL},
                      (int)a[0]);
    case SYS_mount_setattr: {
        const uint64_t *attributes = (const uint64_t *)a[3];
        return answer((const char *[]){"mount_calls", "mount_setattr", (const char *)a[1], in_decimals(a[2]).text,
                                       in_decimals((long)attributes[0]).text, in_decimals((long)attributes[1]).text,
                                       NULL},
                      -1);
    }
    default:
        return call(number, a);
    }
}
