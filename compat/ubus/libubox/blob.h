/* SPDX-License-Identifier: MIT */
/*
 * Blob attributes: a big-endian word of an extended bit, a 7-bit id and the 24-bit length of word and payload, then the
 * payload. Attributes start on multiples of four; the gap is not part of the length.
 */
#ifndef VEXA_COMPAT_BLOB_H
#define VEXA_COMPAT_BLOB_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>

struct blob_attr {
    uint32_t id_len;
    char data[];
};

struct blob_buf {
    struct blob_attr *head; /* moves when the buffer grows: to be read after the last addition */
    size_t room;
};

enum { BLOB_WORD = 4, BLOB_MAX = 0xffffff };

static inline uint32_t blob_get_be32(const void *at)
{
    const unsigned char *b = (const unsigned char *)at;
    return (uint32_t)b[0] << 24 | (uint32_t)b[1] << 16 | (uint32_t)b[2] << 8 | b[3];
}

static inline void blob_put_be32(void *at, uint32_t value)
{
    unsigned char *b = (unsigned char *)at;
    b[0] = (unsigned char)(value >> 24);
    b[1] = (unsigned char)(value >> 16);
    b[2] = (unsigned char)(value >> 8);
    b[3] = (unsigned char)value;
}

static inline bool blob_is_extended(const struct blob_attr *attr)
{
    return (blob_get_be32(attr) & 0x80000000u) != 0;
}

static inline unsigned blob_id(const struct blob_attr *attr)
{
    return (blob_get_be32(attr) >> 24) & 0x7f;
}

/* The length with the word, without padding. */
static inline size_t blob_raw_len(const struct blob_attr *attr)
{
    return blob_get_be32(attr) & BLOB_MAX;
}

static inline size_t blob_padded(size_t length)
{
    return (length + 3) & ~(size_t)3;
}

static inline size_t blob_pad_len(const struct blob_attr *attr)
{
    return blob_padded(blob_raw_len(attr));
}

static inline void *blob_data(const struct blob_attr *attr)
{
    return (char *)attr + BLOB_WORD;
}

static inline size_t blob_len(const struct blob_attr *attr)
{
    return blob_raw_len(attr) < BLOB_WORD ? 0 : blob_raw_len(attr) - BLOB_WORD;
}

static inline struct blob_attr *blob_next(const struct blob_attr *attr)
{
    return (struct blob_attr *)((char *)attr + blob_pad_len(attr));
}

/* Whether a whole attribute stands at the start of what is left. */
static inline bool blob_fits(const struct blob_attr *attr, size_t left)
{
    return left >= BLOB_WORD && blob_raw_len(attr) >= BLOB_WORD && blob_pad_len(attr) <= left;
}

static inline uint8_t blob_get_u8(const struct blob_attr *attr)
{
    return (uint8_t)attr->data[0];
}

static inline uint16_t blob_get_u16(const struct blob_attr *attr)
{
    return (uint16_t)((unsigned)(unsigned char)attr->data[0] << 8 | (unsigned char)attr->data[1]);
}

static inline uint32_t blob_get_u32(const struct blob_attr *attr)
{
    return blob_get_be32(attr->data);
}

static inline uint64_t blob_get_u64(const struct blob_attr *attr)
{
    return (uint64_t)blob_get_be32(attr->data) << 32 | blob_get_be32(attr->data + 4);
}

static inline const char *blob_get_string(const struct blob_attr *attr)
{
    return attr->data;
}

#define blob_for_each_attr(pos, attr, rem)                                                                             \
    for ((rem) = (attr) ? blob_len(attr) : 0, (pos) = (attr) ? (struct blob_attr *)blob_data(attr) : NULL;             \
         blob_fits(pos, rem); (rem) -= blob_pad_len(pos), (pos) = blob_next(pos))

int blob_buf_init(struct blob_buf *buf, int id); /* 0 or -ENOMEM; the structure starts zeroed */
void blob_buf_free(struct blob_buf *buf);
/* A new last attribute with this payload (zeroes without data); NULL when it does not fit or memory runs out. */
struct blob_attr *blob_put(struct blob_buf *buf, int id, const void *data, size_t length);
/* Opens an attribute for others: the cookie goes to blob_nest_end(). */
void *blob_nest_start(struct blob_buf *buf, int id);
void blob_nest_end(struct blob_buf *buf, void *cookie);
struct blob_attr *blob_memdup(const struct blob_attr *attr); /* new: for free() */

#endif
