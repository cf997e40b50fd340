// SPDX-License-Identifier: MIT
#include "document.h"

#include "status.h"
#include "text.h"

#include <cstdio>
#include <unistd.h>

namespace {

json_t *checked(json_t *value)
{
    if (!value)
        out_of_memory();
    return value;
}

// Plain ASCII, so that no character from outside reaches a terminal as itself.
constexpr size_t json_style = JSON_ENSURE_ASCII | JSON_ENCODE_ANY | JSON_REAL_PRECISION(15);

json_t *sanitized_object(const json_t *value)
{
    json_t *copy = checked(json_object());
    const char *key = nullptr;
    json_t *item = nullptr;
    json_object_foreach(const_cast<json_t *>(value), key, item)
        json_object_set_new(copy, key, sanitized(item).release());
    return copy;
}

json_t *sanitized_array(const json_t *value)
{
    json_t *copy = list();
    for (size_t i = 0; i < json_array_size(value); i++)
        append(copy, sanitized(json_array_get(value, i)).release());
    return copy;
}

} // namespace

void out_of_memory()
{
    fputs("vexactl: out of memory\n", stderr);
    _exit(status_unavailable);
}

json_t *text(std::string_view bytes)
{
    return checked(json_stringn_nocheck(bytes.data(), bytes.size()));
}

json_t *text_or_null(const char *bytes)
{
    return bytes ? text(bytes) : json_null();
}

json_t *number(int64_t value)
{
    return checked(json_integer(value));
}

json_t *flag(bool value)
{
    return json_boolean(value);
}

json_t *object(std::initializer_list<member> members)
{
    json_t *made = checked(json_object());
    for (const member &m : members)
        json_object_set_new(made, m.key, m.value);
    return made;
}

json_t *list()
{
    return checked(json_array());
}

void append(json_t *list, json_t *row)
{
    if (json_array_append_new(list, row) < 0)
        out_of_memory();
}

std::string_view bytes_of(const json_t *string)
{
    return {json_string_value(string), json_string_length(string)};
}

json_ref sanitized(const json_t *value)
{
    switch (json_typeof(value)) {
    case JSON_OBJECT:
        return json_ref{sanitized_object(value)};
    case JSON_ARRAY:
        return json_ref{sanitized_array(value)};
    case JSON_STRING:
        return json_ref{text(valid_utf8(bytes_of(value)))};
    default:
        return json_ref{json_incref(const_cast<json_t *>(value))};
    }
}

std::string json_text(const json_t *document, size_t style)
{
    const json_ref clean = sanitized(document);
    char *dumped = json_dumps(clean.get(), json_style | style);
    if (!dumped)
        out_of_memory();
    std::string out = std::string{dumped} + "\n";
    free(dumped);
    return out;
}
