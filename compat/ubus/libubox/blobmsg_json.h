/* SPDX-License-Identifier: MIT */
#ifndef VEXA_COMPAT_BLOBMSG_JSON_H
#define VEXA_COMPAT_BLOBMSG_JSON_H

#include "blobmsg.h"

/* A text that stands for the field's value, borrowed; NULL leaves the value to the formatter. */
typedef const char *(*blobmsg_json_format_t)(void *priv, struct blob_attr *attr);

/*
 * The fields in `attr` as an object or array (`list`), or the one field as "name":value. A field that fails its check,
 * or lies more than 64 levels deep, prints nothing, which leaves text that a JSON parser refuses. New text for free();
 * NULL without memory.
 */
char *blobmsg_format_json_with_cb(struct blob_attr *attr, bool list, blobmsg_json_format_t cb, void *priv, int indent);

static inline char *blobmsg_format_json(struct blob_attr *attr, bool list)
{
    return blobmsg_format_json_with_cb(attr, list, NULL, NULL, -1);
}

#endif
