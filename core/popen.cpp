// SPDX-License-Identifier: MIT
#include "core/popen.h"

#include "core/log.h"
#include "core/owner.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <sys/wait.h>

namespace {

constexpr char log_tag[] = "libvexa_exec";
constexpr size_t piece = 1024;

// "e": a command that another thread starts meanwhile must not hold the pipe open.
FILE *open_command(const char *command)
{
    return popen(command, "re");
}

// Fills the room as far as the output goes; a signal in between does not end it.
size_t read_output(FILE *pipe, char *at, size_t room)
{
    size_t n = 0;
    while (n < room) {
        n += fread(at + n, 1, room - n, pipe);
        if (!ferror(pipe) || errno != EINTR)
            break;
        clearerr(pipe);
    }
    return n;
}

// Doubles the capacity, up to max.
bool grow(unique_text &text, size_t &capacity, size_t max)
{
    const size_t larger = capacity > max / 2 ? max : capacity * 2;
    void *moved = realloc(text.get(), larger);
    if (!moved)
        return false;
    (void)text.release();
    text.reset(static_cast<char *>(moved));
    capacity = larger;
    return true;
}

// The zero goes behind the data or, when that fills the room, over its last byte.
size_t terminate(char *text, size_t length, size_t room)
{
    const size_t end = std::min(length, room - 1);
    text[end] = '\0';
    return end;
}

} // namespace

int popen_status(const char *command)
{
    FILE *pipe = open_command(command);
    char dropped[piece];
    while (pipe && read_output(pipe, dropped, sizeof dropped) == sizeof dropped) {
    }
    return pipe ? pclose(pipe) : -1;
}

int popen_exit_status(const char *command)
{
    const int status = popen_status(command);
    if (status == -1)
        return -1;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

extern "C" int popen_get_output(const char *command, char *buf, size_t size)
{
    FILE *pipe = open_command(command);
    if (!pipe) {
        log_err("get_output: popen[%s] -> NULL", command);
        return -1;
    }
    const size_t room = std::min(size, size_t{INT_MAX});
    const size_t length = read_output(pipe, buf, room);
    const int status = pclose(pipe);
    if (status == -1)
        log_warn("error on pclose for[%s] errno[%s]", command, strerror(errno));
    else if (status != 0)
        log_warn("[%s] -> [%d]", command, status);
    return room > 0 ? int(terminate(buf, length, room)) : 0;
}

extern "C" char *popen_alloc_output(const char *command, size_t max)
{
    size_t capacity = std::min(max, piece);
    unique_text text{capacity > 0 ? static_cast<char *>(malloc(capacity)) : nullptr};
    if (!text) {
        log_err("Failed to allocate buffer");
        return nullptr;
    }
    FILE *pipe = open_command(command);
    if (!pipe) {
        log_err("open failed on '%s': %s", command, strerror(errno));
        return nullptr;
    }
    size_t length = 0;
    while (!feof(pipe)) {
        if (capacity < max && capacity - length < piece && !grow(text, capacity, max)) {
            log_err("Failed to reallocate buffer, output truncated");
            break;
        }
        const size_t room = std::min(capacity - length, piece);
        if (room == 0)
            break;
        length += read_output(pipe, text.get() + length, room);
        if (ferror(pipe)) {
            log_err("Failed to read from stream, command='%s'", command);
            break;
        }
    }
    const int status = pclose(pipe);
    if (status == -1)
        log_err("pclose failed on '%s': %s", command, strerror(errno));
    else if (status != 0)
        log_warn("'%s' returned rc=%d", command, status);
    terminate(text.get(), length, capacity);
    return text.release();
}
