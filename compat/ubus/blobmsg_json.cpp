// SPDX-License-Identifier: MIT
#include "compat/ubus/json_text.h"

#include <cinttypes>
#include <cstdio>
extern "C" {
#include <libubox/blobmsg_json.h>
}

namespace {

constexpr int deepest = 64;
constexpr std::string_view tabs{"\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t", 16};

class formatter {
public:
    formatter(blobmsg_json_format_t cb, void *priv, int indent) : cb_{cb}, priv_{priv}, indent_{indent} {}

    void add_list(blob_attr *attr, bool array);
    void add_field(blob_attr *attr, bool named);
    char *release() { return text_.release(); }

private:
    bool pretty() const { return indent_ >= 0; }
    void new_line();
    void add_escaped(const char *bytes, size_t limit);
    void add_value(blob_attr *attr);
    template <typename... Arguments>
    void add_number(const char *format, Arguments... arguments);

    json_text text_;
    blobmsg_json_format_t cb_;
    void *priv_;
    int indent_;
    int depth_ = 0;
};

void formatter::new_line()
{
    if (!pretty())
        return;
    text_.add('\n');
    text_.add({tabs.data(), std::min(size_t(indent_) + size_t(depth_), tabs.size())});
}

void formatter::add_escaped(const char *bytes, size_t limit)
{
    constexpr std::string_view special = "\b\n\t\r\"\\";
    constexpr std::string_view letters = "bntr\"\\";
    text_.add('"');
    const size_t length = strnlen(bytes, limit);
    for (size_t i = 0; i < length; i++) {
        const char c = bytes[i];
        if (const size_t found = special.find(c); found != special.npos) {
            const char escape[] = {'\\', letters[found]};
            text_.add({escape, sizeof escape});
        } else if (static_cast<unsigned char>(c) < 0x20) {
            add_number("\\u00%02x", unsigned(c));
        } else {
            text_.add(c);
        }
    }
    text_.add('"');
}

template <typename... Arguments>
void formatter::add_number(const char *format, Arguments... arguments)
{
    char number[512]; // the longest double has 309 digits before its point
    const int length = snprintf(number, sizeof number, format, arguments...);
    text_.add({number, size_t(length)});
}

void formatter::add_value(blob_attr *attr)
{
    switch (blobmsg_type(attr)) {
    case BLOBMSG_TYPE_INT8:
        return text_.add(blobmsg_get_bool(attr) ? std::string_view{"true"} : std::string_view{"false"});
    case BLOBMSG_TYPE_INT16:
    case BLOBMSG_TYPE_INT32:
    case BLOBMSG_TYPE_INT64:
        return add_number("%" PRId64, blobmsg_cast_s64(attr));
    case BLOBMSG_TYPE_DOUBLE:
        return add_number("%f", blobmsg_get_double(attr));
    case BLOBMSG_TYPE_STRING:
        return add_escaped(blobmsg_get_string(attr), blobmsg_data_len(attr));
    case BLOBMSG_TYPE_ARRAY:
    case BLOBMSG_TYPE_TABLE:
        return add_list(attr, blobmsg_type(attr) == BLOBMSG_TYPE_ARRAY);
    default:
        return text_.add("null");
    }
}

void formatter::add_field(blob_attr *attr, bool named)
{
    if (!blobmsg_check_attr(attr, false) || depth_ > deepest)
        return;
    if (named && *blobmsg_name(attr) != '\0') {
        add_escaped(blobmsg_name(attr), blobmsg_value_offset(attr));
        text_.add(pretty() ? std::string_view{": "} : std::string_view{":"});
    }
    if (const char *instead = cb_ ? cb_(priv_, attr) : nullptr)
        text_.add({instead, strlen(instead)});
    else
        add_value(attr);
}

void formatter::add_list(blob_attr *attr, bool array)
{
    text_.add(array ? '[' : '{');
    depth_++;
    new_line();
    blob_attr *field;
    size_t left;
    bool first = true;
    blobmsg_for_each_attr(field, attr, left)
    {
        if (!first) {
            text_.add(',');
            new_line();
        }
        first = false;
        add_field(field, !array);
    }
    depth_--;
    new_line();
    text_.add(array ? ']' : '}');
}

} // namespace

extern "C" char *blobmsg_format_json_with_cb(blob_attr *attr, bool list, blobmsg_json_format_t cb, void *priv,
                                             int indent)
{
    formatter out{cb, priv, indent};
    if (list)
        out.add_list(attr, blob_is_extended(attr) && blobmsg_type(attr) == BLOBMSG_TYPE_ARRAY);
    else
        out.add_field(attr, true);
    return out.release();
}
