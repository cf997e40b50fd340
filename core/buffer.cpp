// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstring>
#include <sys/socket.h>

static_assert(sizeof(buffer_state) == 6 * sizeof(void *));
static_assert(offsetof(buffer, state) == 0 && offsetof(buffer, alloc_zeroed) == 13 * sizeof(void *));
static_assert(offsetof(buffer, init) == sizeof(void *) && offsetof(buffer, send) == 12 * sizeof(void *));

namespace {

constexpr char log_tag[] = "buffer";
constexpr size_t default_capacity = 4096;
constexpr size_t growth_step = 4096;
constexpr size_t largest_start = size_t{4} << 20;
constexpr size_t largest = INT_MAX; // so that each count fits its result

struct free_state {
    void operator()(buffer_state *s) const noexcept
    {
        free(s->data);
        free(s);
    }
};
using unique_state = std::unique_ptr<buffer_state, free_state>;

bool resize(buffer_state &s, size_t capacity)
{
    void *data = realloc(s.data, std::max(capacity, size_t{1}));
    if (!data)
        return false;
    s.data = static_cast<uint8_t *>(data);
    s.capacity = capacity;
    return true;
}

unique_state new_state(size_t capacity, size_t initial_capacity)
{
    if (capacity > largest)
        return nullptr;
    unique_state s{static_cast<buffer_state *>(calloc(1, sizeof(buffer_state)))};
    if (!s || !resize(*s, capacity))
        return nullptr;
    s->initial_capacity = initial_capacity;
    return s;
}

// Appends n bytes whose values are still to be written; null when memory runs out.
uint8_t *reserve(buffer_state &s, size_t n)
{
    if (s.length == 0)
        s.read_pos = s.write_pos = 0;
    // a clone's unread bytes run ahead of its write position; the storage has to hold both
    const size_t end = std::max(s.write_pos, s.read_pos + s.length);
    if (n > largest - end)
        return nullptr;
    if (end + n > s.capacity && !resize(s, s.capacity + (n + growth_step - 1) / growth_step * growth_step))
        return nullptr;
    if (end > s.write_pos)
        memset(s.data + end, 0, n);
    uint8_t *at = s.data + s.write_pos;
    s.write_pos += n;
    s.length += n;
    return at;
}

bool append(buffer_state &s, const void *src, size_t count)
{
    const uintptr_t inside = reinterpret_cast<uintptr_t>(src) - reinterpret_cast<uintptr_t>(s.data);
    const bool own = inside < s.capacity;
    uint8_t *at = reserve(s, count);
    if (!at)
        return false;
    memmove(at, own ? s.data + inside : src, count); // growing may have moved the source, too
    return true;
}

void consume(buffer_state &s, size_t n)
{
    s.read_pos += n;
    s.length -= n;
}

buffer *new_buffer(unique_state state);

namespace operation {

int init(buffer *b, size_t capacity)
{
    unique_state fresh = new_state(capacity, capacity);
    if (!fresh)
        return -1;
    const unique_state old{std::exchange(b->state, fresh.release())};
    return 0;
}

uint32_t len(buffer *b)
{
    return uint32_t(b->state->length);
}

uint32_t cap(buffer *b)
{
    return uint32_t(b->state->capacity);
}

int write(buffer *b, const void *src, size_t count)
{
    return src && count > 0 && append(*b->state, src, count) ? int(count) : 0;
}

int printf(buffer *b, const char *fmt, ...) VEXA_PRINTF(2, 3);
int printf(buffer *b, const char *fmt, ...)
{
    char *formatted = nullptr;
    va_list args;
    va_start(args, fmt);
    const int length = vasprintf(&formatted, fmt, args);
    va_end(args);
    if (length < 0)
        return 0;
    const unique_text text{formatted};
    if (!append(*b->state, text.get(), size_t(length) + 1))
        return 0;
    buffer_pop(b, 1); // the zero stays, behind what counts
    return length;
}

int read(buffer *b, void *dst, size_t count)
{
    buffer_state &s = *b->state;
    const size_t n = std::min(count, s.length);
    if (dst)
        memcpy(dst, s.data + s.read_pos, n);
    consume(s, n);
    return int(n);
}

void *head(buffer *b)
{
    return b->state->data + b->state->read_pos;
}

buffer *clone(buffer *b)
{
    const buffer_state &s = *b->state;
    if (s.length == 0)
        return buffer_create();
    unique_state copy = new_state(s.capacity, s.initial_capacity);
    if (!copy)
        return nullptr;
    memcpy(copy->data, s.data, s.length);
    copy->length = s.length;
    return new_buffer(std::move(copy));
}

void reset(buffer *b)
{
    buffer_state &s = *b->state;
    s.read_pos = s.write_pos = s.length = 0;
    if (s.capacity > s.initial_capacity && !resize(s, s.initial_capacity))
        log_warn("Failed to reallocate buffer");
    memset(s.data, 0, s.capacity);
}

void rewind(buffer *b)
{
    b->state->read_pos = 0;
    b->state->length = b->state->write_pos;
}

void destroy(buffer *b)
{
    const unique_state state{b->state};
    free(b);
}

ssize_t send(buffer *b, int fd, int flags)
{
    if (fd < 0)
        return -1;
    buffer_state &s = *b->state;
    const ssize_t sent = ::send(fd, s.data + s.read_pos, s.length, flags | MSG_NOSIGNAL);
    if (sent > 0)
        consume(s, size_t(sent));
    return sent;
}

void *alloc_zeroed(buffer *b, size_t count)
{
    uint8_t *at = reserve(*b->state, count);
    return at ? memset(at, 0, count) : nullptr;
}

} // namespace operation

buffer *new_buffer(unique_state state)
{
    constexpr buffer operations = {
        nullptr,           operation::init,    operation::len,  operation::cap,          operation::write,
        operation::printf, operation::read,    operation::head, operation::clone,        operation::reset,
        operation::rewind, operation::destroy, operation::send, operation::alloc_zeroed,
    };
    auto *b = static_cast<buffer *>(malloc(sizeof(buffer)));
    if (b) {
        *b = operations;
        b->state = state.release();
    }
    return b;
}

} // namespace

extern "C" buffer *buffer_create2(size_t capacity)
{
    unique_state state{capacity > largest_start ? nullptr : new_state(capacity, capacity)};
    return state ? new_buffer(std::move(state)) : nullptr;
}

extern "C" buffer *buffer_create(void)
{
    return buffer_create2(default_capacity);
}

extern "C" void buffer_destroy(buffer *b)
{
    if (b)
        b->destroy(b);
}

extern "C" void buffer_pop(buffer *b, int n)
{
    buffer_state &s = *b->state;
    const auto count = size_t(std::max(n, 0));
    s.length -= std::min(count, s.length);
    s.write_pos -= std::min(count, s.write_pos);
}

extern "C" void buffer_fill(buffer *b, int lines)
{
    constexpr size_t half = 50;
    constexpr char digits[] = "12345678901234567890123456789012345678901234567890";
    constexpr char ending[half] = "123456789012345678901234567890123456789\n"; // zeros fill it up
    for (int i = 0; i < lines; i++) {
        if (b->printf(b, "%04d-%04d ", i * 100 + 1, i * 100 + 100) == 0)
            return; // full, long before the numbers are
        b->write(b, digits, half);
        b->write(b, ending, half);
    }
}
