/* SPDX-License-Identifier: MIT */
/*
 * Named, typed fields: an extended blob attribute whose id is the type and whose payload is a 16-bit name length, the
 * name with its terminator, padding, and the value.
 */
#ifndef VEXA_COMPAT_BLOBMSG_H
#define VEXA_COMPAT_BLOBMSG_H

#include "blob.h"

enum blobmsg_type {
    BLOBMSG_TYPE_UNSPEC,
    BLOBMSG_TYPE_ARRAY,
    BLOBMSG_TYPE_TABLE,
    BLOBMSG_TYPE_STRING,
    BLOBMSG_TYPE_INT64,
    BLOBMSG_TYPE_INT32,
    BLOBMSG_TYPE_INT16,
    BLOBMSG_TYPE_INT8,
    BLOBMSG_TYPE_DOUBLE,
    BLOBMSG_TYPE_LAST = BLOBMSG_TYPE_DOUBLE,
    BLOBMSG_TYPE_BOOL = BLOBMSG_TYPE_INT8,
    BLOBMSG_CAST_INT64 /* policies only: any integer */
};

struct blobmsg_policy {
    const char *name;
    enum blobmsg_type type;
};

static inline int blobmsg_type(const struct blob_attr *attr)
{
    return (int)blob_id(attr);
}

/* What a name of this length takes before the value. */
static inline size_t blobmsg_hdrlen(size_t name_length)
{
    return blob_padded(2 + name_length + 1);
}

static inline size_t blobmsg_value_offset(const struct blob_attr *attr)
{
    return blob_is_extended(attr) && blob_len(attr) >= 2 ? blobmsg_hdrlen(blob_get_u16(attr)) : 0;
}

static inline const char *blobmsg_name(const struct blob_attr *attr)
{
    return blobmsg_value_offset(attr) != 0 ? attr->data + 2 : "";
}

static inline void *blobmsg_data(const struct blob_attr *attr)
{
    return attr ? (char *)blob_data(attr) + blobmsg_value_offset(attr) : NULL;
}

static inline size_t blobmsg_data_len(const struct blob_attr *attr)
{
    const size_t offset = blobmsg_value_offset(attr);
    return blob_len(attr) < offset ? 0 : blob_len(attr) - offset;
}

static inline size_t blobmsg_len(const struct blob_attr *attr)
{
    return blobmsg_data_len(attr);
}

static inline uint8_t blobmsg_get_u8(const struct blob_attr *attr)
{
    return *(const uint8_t *)blobmsg_data(attr);
}

static inline bool blobmsg_get_bool(const struct blob_attr *attr)
{
    return blobmsg_get_u8(attr) != 0;
}

static inline uint16_t blobmsg_get_u16(const struct blob_attr *attr)
{
    const uint8_t *b = (const uint8_t *)blobmsg_data(attr);
    return (uint16_t)(b[0] << 8 | b[1]);
}

static inline uint32_t blobmsg_get_u32(const struct blob_attr *attr)
{
    return blob_get_be32(blobmsg_data(attr));
}

static inline uint64_t blobmsg_get_u64(const struct blob_attr *attr)
{
    const char *b = (const char *)blobmsg_data(attr);
    return (uint64_t)blob_get_be32(b) << 32 | blob_get_be32(b + 4);
}

static inline double blobmsg_get_double(const struct blob_attr *attr)
{
    const uint64_t bits = blobmsg_get_u64(attr);
    double value;
    memcpy(&value, &bits, sizeof value);
    return value;
}

static inline char *blobmsg_get_string(const struct blob_attr *attr)
{
    return (char *)blobmsg_data(attr);
}

static inline int64_t blobmsg_cast_s64(const struct blob_attr *attr)
{
    switch (blobmsg_type(attr)) {
    case BLOBMSG_TYPE_INT64:
        return (int64_t)blobmsg_get_u64(attr);
    case BLOBMSG_TYPE_INT32:
        return (int32_t)blobmsg_get_u32(attr);
    case BLOBMSG_TYPE_INT16:
        return (int16_t)blobmsg_get_u16(attr);
    case BLOBMSG_TYPE_INT8:
        return (int8_t)blobmsg_get_u8(attr);
    default:
        return 0;
    }
}

static inline uint64_t blobmsg_cast_u64(const struct blob_attr *attr)
{
    switch (blobmsg_type(attr)) {
    case BLOBMSG_TYPE_INT64:
        return blobmsg_get_u64(attr);
    case BLOBMSG_TYPE_INT32:
        return blobmsg_get_u32(attr);
    case BLOBMSG_TYPE_INT16:
        return blobmsg_get_u16(attr);
    case BLOBMSG_TYPE_INT8:
        return blobmsg_get_u8(attr);
    default:
        return 0;
    }
}

#define blobmsg_for_each_attr(pos, attr, rem)                                                                          \
    for ((rem) = (attr) ? blobmsg_data_len(attr) : 0, (pos) = (struct blob_attr *)blobmsg_data(attr);                  \
         blob_fits(pos, rem); (rem) -= blob_pad_len(pos), (pos) = blob_next(pos))

/* Whether name and value lie in the attribute and the value is one of its type; with `name`, an empty name is none. */
bool blobmsg_check_attr(const struct blob_attr *attr, bool name);
/* The same for each field of a table or array, one level deep; `type` 0 takes any. */
bool blobmsg_check_attr_list(const struct blob_attr *attr, int type);
/* 0, -EINVAL without data, -1 at a field that fails its check; the first of equal names wins, a wrong type is none. */
int blobmsg_parse(const struct blobmsg_policy *policy, int count, struct blob_attr **found, void *data,
                  unsigned length);

int blobmsg_add_field(struct blob_buf *buf, int type, const char *name, const void *data, unsigned length);
void *blobmsg_open_nested(struct blob_buf *buf, const char *name, bool array);

static inline int blobmsg_add_u8(struct blob_buf *buf, const char *name, uint8_t value)
{
    return blobmsg_add_field(buf, BLOBMSG_TYPE_INT8, name, &value, 1);
}

static inline int blobmsg_add_u16(struct blob_buf *buf, const char *name, uint16_t value)
{
    const unsigned char bytes[] = {(unsigned char)(value >> 8), (unsigned char)value};
    return blobmsg_add_field(buf, BLOBMSG_TYPE_INT16, name, bytes, sizeof bytes);
}

static inline int blobmsg_add_u32(struct blob_buf *buf, const char *name, uint32_t value)
{
    char bytes[4];
    blob_put_be32(bytes, value);
    return blobmsg_add_field(buf, BLOBMSG_TYPE_INT32, name, bytes, sizeof bytes);
}

static inline int blobmsg_add_wide(struct blob_buf *buf, int type, const char *name, uint64_t value)
{
    char bytes[8];
    blob_put_be32(bytes, (uint32_t)(value >> 32));
    blob_put_be32(bytes + 4, (uint32_t)value);
    return blobmsg_add_field(buf, type, name, bytes, sizeof bytes);
}

static inline int blobmsg_add_u64(struct blob_buf *buf, const char *name, uint64_t value)
{
    return blobmsg_add_wide(buf, BLOBMSG_TYPE_INT64, name, value);
}

static inline int blobmsg_add_double(struct blob_buf *buf, const char *name, double value)
{
    uint64_t bits;
    memcpy(&bits, &value, sizeof bits);
    return blobmsg_add_wide(buf, BLOBMSG_TYPE_DOUBLE, name, bits);
}

static inline int blobmsg_add_string(struct blob_buf *buf, const char *name, const char *text)
{
    return blobmsg_add_field(buf, BLOBMSG_TYPE_STRING, name, text, (unsigned)strlen(text) + 1);
}

static inline void *blobmsg_open_table(struct blob_buf *buf, const char *name)
{
    return blobmsg_open_nested(buf, name, false);
}

static inline void *blobmsg_open_array(struct blob_buf *buf, const char *name)
{
    return blobmsg_open_nested(buf, name, true);
}

static inline void blobmsg_close_table(struct blob_buf *buf, void *cookie)
{
    blob_nest_end(buf, cookie);
}

static inline void blobmsg_close_array(struct blob_buf *buf, void *cookie)
{
    blob_nest_end(buf, cookie);
}

#endif
