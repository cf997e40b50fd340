// SPDX-License-Identifier: MIT
#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdlib>
extern "C" {
#include <libubox/blob.h>
}

namespace {

void set_length(blob_attr *attr, size_t length)
{
    blob_put_be32(attr, (blob_get_be32(attr) & ~uint32_t{BLOB_MAX}) | uint32_t(length));
}

blob_attr *at_offset(blob_buf *buf, size_t offset)
{
    return reinterpret_cast<blob_attr *>(reinterpret_cast<char *>(buf->head) + offset);
}

bool make_room(blob_buf *buf, size_t size)
{
    if (size > BLOB_MAX)
        return false;
    if (size <= buf->room)
        return true;
    const size_t room = std::min(std::max(size, buf->room * 2), blob_padded(BLOB_MAX));
    void *grown = realloc(buf->head, room);
    if (!grown)
        return false;
    buf->head = static_cast<blob_attr *>(grown);
    buf->room = room;
    return true;
}

} // namespace

extern "C" int blob_buf_init(blob_buf *buf, int id)
{
    constexpr size_t first_room = 256;
    if (!make_room(buf, first_room))
        return -ENOMEM;
    blob_put_be32(buf->head, uint32_t(id & 0x7f) << 24 | BLOB_WORD);
    return 0;
}

extern "C" void blob_buf_free(blob_buf *buf)
{
    free(buf->head);
    *buf = {};
}

extern "C" blob_attr *blob_put(blob_buf *buf, int id, const void *data, size_t length)
{
    if (!buf->head || length > BLOB_MAX)
        return nullptr;
    const size_t start = blob_pad_len(buf->head);
    const size_t end = start + blob_padded(BLOB_WORD + length);
    if (!make_room(buf, end))
        return nullptr;
    blob_attr *attr = at_offset(buf, start);
    memset(attr, 0, end - start);
    blob_put_be32(attr, uint32_t(id & 0x7f) << 24 | uint32_t(BLOB_WORD + length));
    if (data)
        memcpy(attr->data, data, length);
    set_length(buf->head, end);
    return attr;
}

// The cookie is where the opened attribute stands, counted from one: addresses move, and no cookie may be NULL.
extern "C" void *blob_nest_start(blob_buf *buf, int id)
{
    if (!blob_put(buf, id, nullptr, 0))
        return nullptr;
    return std::bit_cast<void *>(uintptr_t(blob_raw_len(buf->head) - BLOB_WORD + 1));
}

extern "C" void blob_nest_end(blob_buf *buf, void *cookie)
{
    if (!cookie)
        return;
    const size_t start = reinterpret_cast<uintptr_t>(cookie) - 1;
    set_length(at_offset(buf, start), blob_raw_len(buf->head) - start);
}

extern "C" blob_attr *blob_memdup(const blob_attr *attr)
{
    const size_t size = blob_pad_len(attr);
    auto *copy = static_cast<blob_attr *>(malloc(std::max<size_t>(size, BLOB_WORD)));
    if (copy)
        memcpy(copy, attr, size);
    return copy;
}
