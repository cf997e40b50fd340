// SPDX-License-Identifier: MIT
#include "sim/driver/driver.h"

#include "sim/descriptor.h"
#include "sim/driver/kernel.h"
#include "sim/driver/places.h"
#include "sim/driver/reply.h"
#include "sim/error.h"

#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <mutex>
#include <net/if.h>
#include <sys/stat.h>

namespace sim::driver {

namespace {

constexpr size_t length_at = 24; // in the block of a request

std::string text_of(const char *path)
{
    std::string text;
    const descriptor file{kernel::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    char piece[4096];
    for (ssize_t count = 0; (count = read(file.get(), piece, sizeof piece)) > 0;)
        text.append(piece, size_t(count));
    return text;
}

uint64_t nanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return uint64_t(now.tv_sec) * 1000000000 + uint64_t(now.tv_nsec);
}

bool is_same(const struct stat &a, const struct stat &b)
{
    return a.st_ino == b.st_ino && a.st_dev == b.st_dev && a.st_size == b.st_size &&
           a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

// What stands on the device.
class state {
public:
    // nullptr where there is no description. One that cannot be read leaves things as they are.
    const description *air()
    {
        struct stat now {};
        if (stat(places::description, &now) != 0) {
            known_ = false;
            seen_ = {};
        } else if (!is_same(now, seen_)) {
            seen_ = now;
            read();
        }
        return known_ ? &air_ : nullptr;
    }

    double seconds() const { return air_.stopped_at ? *air_.stopped_at : double(nanoseconds() - entered_) / 1e9; }

    std::mutex lock;
    reply out;

private:
    void read()
    {
        try {
            air_ = read_description(text_of(places::description));
            entered_ = strtoull(text_of(places::entered).c_str(), nullptr, 10);
            known_ = true;
        } catch (const std::exception &wrong) {
            fprintf(stderr, "%s: %s\n", places::description, wrong.what());
        }
    }

    struct stat seen_ {};
    bool known_ = false;
    description air_;
    uint64_t entered_ = 0;
};

state &the_state()
{
    static state *const forever = new state; // programs ask until their very end
    return *forever;
}

__attribute__((format(printf, 2, 3))) void write_log(const char *request, const char *format, ...)
{
    char text[256], line[320];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    for (char *c = text; *c; c++)
        *c = *c >= ' ' && *c <= '~' ? *c : '.';
    const int length = snprintf(line, sizeof line, "%s %s\n", request, text);
    const descriptor file{kernel::open(places::log, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644)};
    (void)!write(file.get(), line, size_t(length));
}

bool is_tracker(int fd)
{
    struct stat opened {
    }, node{};
    return fstat(fd, &opened) == 0 && stat(places::tracker, &node) == 0 && opened.st_ino == node.st_ino &&
           opened.st_dev == node.st_dev;
}

bool is_socket(int fd)
{
    struct stat opened {};
    return fstat(fd, &opened) == 0 && S_ISSOCK(opened.st_mode);
}

bool is_for_tracker(request what)
{
    return uint32_t(what) >> 16 != 0;
}

std::optional<int> answer_socket(const context &c, uint8_t *block)
{
    char interface[IFNAMSIZ] = {};
    std::copy_n(block, sizeof interface - 1, interface);
    const vap *v = c.air.find_vap(interface);
    if (!v)
        return {};
    const size_t room = size_t(take(block + length_at, 2));
    const int result = answer_wireless(c, *v, block);
    if (c.air.logs_all)
        write_log(name_of(c.what), "%s %zu = %d", interface, room, result);
    return result;
}

int answer_device(const context &c, const char *interface, uint8_t *record)
{
    const int result = answer_tracker(c, interface, record);
    if (c.air.logs_all)
        write_log(name_of(c.what), "%s = %d", interface, result);
    return result;
}

} // namespace

std::optional<int> answer(int fd, uint32_t number, void *argument)
{
    const request what{number};
    if (!name_of(what) || !argument || !(is_for_tracker(what) ? is_tracker(fd) : is_socket(fd)))
        return {};
    auto *record = static_cast<uint8_t *>(argument);
    char interface[IFNAMSIZ] = {};
    if (what == request::track_stations)
        (void)if_indextoname(unsigned(take(record, 4)), interface);
    state &s = the_state();
    const std::lock_guard guard{s.lock};
    const description *air = s.air();
    if (!air)
        return {};
    s.out.clear();
    const context c{*air, s.seconds(), what, s.out, write_log};
    return is_for_tracker(what) ? answer_device(c, interface, record) : answer_socket(c, record);
}

int failure_of(request what)
{
    state &s = the_state();
    const std::lock_guard guard{s.lock};
    const description *air = s.air();
    const fault *f = air ? air->find_fault(what, "", 0) : nullptr;
    return f ? f->number : 0;
}

void change(const std::string &lines)
{
    std::ofstream file(places::description, std::ios::app);
    file << '\n' << lines << '\n';
    if (!file.flush())
        fail<error>(std::string("cannot write ") + places::description);
}

std::string log()
{
    return text_of(places::log);
}

} // namespace sim::driver
