// SPDX-License-Identifier: MIT
#include <bit>
#include <cerrno>
extern "C" {
#include <libubox/blobmsg.h>
}

namespace {

constexpr uint32_t extended_bit = 0x80000000u;
constexpr size_t longest_name = 0xffff;

bool value_is_whole(int type, const char *value, size_t length)
{
    switch (type) {
    case BLOBMSG_TYPE_STRING:
        return length > 0 && value[length - 1] == '\0';
    case BLOBMSG_TYPE_INT64:
        return length == 8;
    case BLOBMSG_TYPE_INT32:
        return length == 4;
    case BLOBMSG_TYPE_INT16:
        return length == 2;
    case BLOBMSG_TYPE_INT8:
        return length == 1;
    case BLOBMSG_TYPE_DOUBLE:
        return length >= 8;
    default:
        return type <= BLOBMSG_TYPE_LAST;
    }
}

bool name_is_whole(const blob_attr *attr)
{
    const size_t length = blob_len(attr);
    if (length < 2)
        return false;
    const size_t name = blob_get_u16(attr);
    return blobmsg_hdrlen(name) <= length && attr->data[2 + name] == '\0';
}

bool takes(const blobmsg_policy &policy, const blob_attr *attr)
{
    const int type = blobmsg_type(attr);
    const bool right = policy.type == BLOBMSG_CAST_INT64 ? type >= BLOBMSG_TYPE_INT64 && type <= BLOBMSG_TYPE_INT8
                                                         : policy.type == BLOBMSG_TYPE_UNSPEC || policy.type == type;
    return right && strcmp(policy.name, blobmsg_name(attr)) == 0;
}

// A field's place in the buffer with its name written and the value still zero.
blob_attr *add_named(blob_buf *buf, int type, const char *name, size_t length)
{
    const size_t name_length = name ? strlen(name) : 0;
    if (name_length > longest_name)
        return nullptr;
    blob_attr *attr = blob_put(buf, type, nullptr, blobmsg_hdrlen(name_length) + length);
    if (!attr)
        return nullptr;
    blob_put_be32(attr, blob_get_be32(attr) | extended_bit);
    attr->data[0] = char(name_length >> 8);
    attr->data[1] = char(name_length);
    if (name)
        memcpy(attr->data + 2, name, name_length);
    return attr;
}

} // namespace

extern "C" bool blobmsg_check_attr(const blob_attr *attr, bool name)
{
    if (blob_raw_len(attr) < BLOB_WORD)
        return false;
    if (blob_is_extended(attr) && !name_is_whole(attr))
        return false;
    if (name && *blobmsg_name(attr) == '\0')
        return false;
    return value_is_whole(blobmsg_type(attr), static_cast<const char *>(blobmsg_data(attr)), blobmsg_data_len(attr));
}

extern "C" bool blobmsg_check_attr_list(const blob_attr *attr, int type)
{
    const bool named = blobmsg_type(attr) == BLOBMSG_TYPE_TABLE;
    blob_attr *field;
    size_t left;
    blobmsg_for_each_attr(field, attr, left)
    {
        if (!blobmsg_check_attr(field, named) || (type != BLOBMSG_TYPE_UNSPEC && blobmsg_type(field) != type))
            return false;
    }
    return left == 0;
}

extern "C" int blobmsg_parse(const blobmsg_policy *policy, int count, blob_attr **found, void *data, unsigned length)
{
    for (int i = 0; i < count; i++)
        found[i] = nullptr;
    if (!data || length == 0)
        return -EINVAL;
    const auto *field = static_cast<blob_attr *>(data);
    for (size_t left = length; blob_fits(field, left); left -= blob_pad_len(field), field = blob_next(field)) {
        if (!blobmsg_check_attr(field, false))
            return -1;
        if (!blob_is_extended(field))
            continue;
        for (int i = 0; i < count; i++)
            if (!found[i] && takes(policy[i], field))
                found[i] = const_cast<blob_attr *>(field);
    }
    return 0;
}

extern "C" int blobmsg_add_field(blob_buf *buf, int type, const char *name, const void *data, unsigned length)
{
    blob_attr *attr = add_named(buf, type, name, length);
    if (!attr)
        return -1;
    if (length > 0)
        memcpy(blobmsg_data(attr), data, length);
    return 0;
}

extern "C" void *blobmsg_open_nested(blob_buf *buf, const char *name, bool array)
{
    if (!buf->head)
        return nullptr;
    const size_t start = blob_pad_len(buf->head);
    if (!add_named(buf, array ? BLOBMSG_TYPE_ARRAY : BLOBMSG_TYPE_TABLE, name, 0))
        return nullptr;
    return std::bit_cast<void *>(uintptr_t(start + 1));
}
