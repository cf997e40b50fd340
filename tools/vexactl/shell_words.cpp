// SPDX-License-Identifier: MIT
#include "shell_words.h"

#include "text.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

namespace {

bool is_plain(std::string_view text)
{
    while (!text.empty()) {
        const character c = first_character(text);
        if (!is_shown(c))
            return false;
        text.remove_prefix(c.bytes.size());
    }
    return true;
}

std::string in_octal(std::string_view bytes)
{
    std::string out;
    for (const char byte : bytes)
        if (byte) // no shell word can hold a zero byte
            out += format("\\%03o", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    return out;
}

std::string escaped_word(std::string_view text)
{
    std::string out = "$'";
    while (!text.empty()) {
        const character c = first_character(text);
        if (!is_shown(c))
            out += in_octal(c.bytes);
        else if (c.code == '\'' || c.code == '\\')
            (out += '\\') += c.bytes;
        else
            out += c.bytes;
        text.remove_prefix(c.bytes.size());
    }
    return out + "'";
}

std::string scalar(const json_t *value)
{
    switch (json_typeof(value)) {
    case JSON_STRING:
        return shell_quoted(bytes_of(value));
    case JSON_NULL:
        return "''";
    default: {
        char *dumped = json_dumps(value, JSON_ENCODE_ANY | JSON_REAL_PRECISION(15));
        std::string out = shell_quoted(dumped ? dumped : "");
        free(dumped);
        return out;
    }
    }
}

struct assignment {
    std::string name, word;
    std::string line() const { return name + "=" + word + "\n"; }
};

assignment pair(const json_t *row)
{
    return {shell_name(bytes_of(json_object_get(row, "key"))), scalar(json_object_get(row, "value"))};
}

// every scalar below `value`, named by the way that leads to it
void flatten(const std::string &name, const json_t *value, std::vector<assignment> &out)
{
    const std::string prefix = name.empty() ? "" : name + "_";
    if (json_is_object(value)) {
        const char *key = nullptr;
        json_t *item = nullptr;
        json_object_foreach(const_cast<json_t *>(value), key, item) flatten(prefix + key, item, out);
    } else if (json_is_array(value)) {
        out.push_back({shell_name(prefix + "count"), "'" + std::to_string(json_array_size(value)) + "'"});
        for (size_t i = 0; i < json_array_size(value); i++)
            flatten(prefix + std::to_string(i), json_array_get(value, i), out);
    } else {
        out.push_back({shell_name(name.empty() ? "value" : name), scalar(value)});
    }
}

std::string joined(const json_t *value, char separator)
{
    std::vector<assignment> all;
    flatten("", value, all);
    std::string out;
    for (const assignment &a : all) {
        if (!out.empty())
            out += separator;
        out += a.name + "=" + a.word;
    }
    return out.empty() ? out : out + "\n";
}

} // namespace

std::string shell_quoted(std::string_view text)
{
    if (!is_plain(text))
        return escaped_word(text);
    std::string out = "'";
    for (const char c : text)
        out += c == '\'' ? std::string{"'\\''"} : std::string{c};
    return out + "'";
}

std::string shell_name(std::string_view text)
{
    std::string out = lower_case(text);
    for (char &c : out)
        c = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ? c : '_';
    if (out.empty() || (out[0] >= '0' && out[0] <= '9'))
        out.insert(0, "_");
    return out;
}

std::string shell_lines(const json_t *document)
{
    if (!json_is_array(document))
        return joined(document, '\n');
    std::string out;
    for (size_t i = 0; i < json_array_size(document); i++)
        out += joined(json_array_get(document, i), ' ');
    return out;
}

std::string shell_pairs(const json_t *rows)
{
    if (json_is_object(rows))
        return pair(rows).line();
    std::unordered_set<std::string> seen;
    std::string out;
    for (size_t i = 0; i < json_array_size(rows); i++) {
        const assignment a = pair(json_array_get(rows, i));
        if (seen.insert(a.name).second)
            out += a.line();
    }
    return out;
}
