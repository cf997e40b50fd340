/* SPDX-License-Identifier: MIT */
/* Makes the system calls for mounts that the emulator does not know, for the emulated program that starts this
 * (unknown_calls.c). It belongs to the machine that builds, and runs in its starter's namespaces, with its descriptors.
 * The status tells the error, 0 for none; a new descriptor is sent through standard input. */
#include <errno.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

static int number(const char *text)
{
    return (int)strtol(text, NULL, 10);
}

static int send_descriptor(int fd)
{
    char byte = 0;
    char room[CMSG_SPACE(sizeof fd)] __attribute__((aligned(sizeof(size_t)))) = {0};
    struct iovec piece = {&byte, 1};
    struct msghdr message = {.msg_iov = &piece, .msg_iovlen = 1, .msg_control = room, .msg_controllen = sizeof room};
    struct cmsghdr *control = CMSG_FIRSTHDR(&message);
    control->cmsg_level = SOL_SOCKET;
    control->cmsg_type = SCM_RIGHTS;
    control->cmsg_len = CMSG_LEN(sizeof fd);
    memcpy(CMSG_DATA(control), &fd, sizeof fd);
    return sendmsg(STDIN_FILENO, &message, 0) == 1 ? 0 : errno;
}

int main(int argc, char **argument)
{
    const char *call = argc > 1 ? argument[1] : "";
    if (argc == 5 && strcmp(call, "open_tree") == 0) {
        const long tree = syscall(SYS_open_tree, number(argument[2]), argument[3], number(argument[4]));
        return tree < 0 ? errno : send_descriptor((int)tree);
    }
    if (argc == 5 && strcmp(call, "move_mount") == 0)
        return syscall(SYS_move_mount, number(argument[2]), "", -1, argument[3], number(argument[4])) == 0 ? 0 : errno;
    if (argc == 6 && strcmp(call, "mount_setattr") == 0) {
        const uint64_t attributes[4] = {(uint64_t)number(argument[4]), (uint64_t)number(argument[5]), 0, 0};
        return syscall(SYS_mount_setattr, -1, argument[2], number(argument[3]), attributes, sizeof attributes) == 0
                   ? 0
                   : errno;
    }
    return EINVAL;
}
