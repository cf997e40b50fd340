// SPDX-License-Identifier: MIT
#include "core/load_json.h"

#include "core/text.h"

#include <algorithm>

namespace {

constexpr int deepest = 64;

// Counts brackets outside of strings; whether they belong together is the parser's business.
int nesting(std::string_view text)
{
    int depth = 0, most = 0;
    bool quoted = false;
    for (size_t i = 0; i < text.size(); i++) {
        const char c = text[i];
        if (c == '"')
            quoted = !quoted;
        else if (quoted)
            i += c == '\\'; // the character behind it does not end the string
        else if (c == '{' || c == '[')
            most = std::max(most, ++depth);
        else if (c == '}' || c == ']')
            depth--;
    }
    return most;
}

} // namespace

json_t *load_json(std::string_view text, json_error_t &error)
{
    if (nesting(text) <= deepest)
        return json_loadb(text.data(), text.size(), 0, &error);
    error = {.line = -1, .column = -1, .position = 0, .source = {}, .text = {}};
    copy_text(error.text, sizeof error.text, "nested too deeply");
    return nullptr;
}
