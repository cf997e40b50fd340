// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/device.h"
#include "tests/support/program.h"

#include <jansson.h>
#include <memory>

// The tool runs as a program on the device, as at a prompt.

inline finished vexactl(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), VEXACTL);
    return run_program(arguments);
}

// A command line of a shell, where $VEXACTL is the tool. What the shell starts has no number in the device's /proc,
// where a leak detector would look.
inline finished shell(const std::string &line)
{
    return run_program(
        {"bash", "-c", "export ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0; VEXACTL='" VEXACTL "'; " + line});
}

struct drop_json {
    void operator()(json_t *j) const { json_decref(j); }
};
using json_document = std::unique_ptr<json_t, drop_json>;

inline json_document json_of(const std::string &text)
{
    json_error_t error{};
    json_document document{json_loads(text.c_str(), JSON_DECODE_ANY, &error)};
    EXPECT_TRUE(document) << error.text << " in: " << text;
    return document;
}

inline std::string member_text(const json_t *object, const char *key)
{
    const char *text = json_string_value(json_object_get(object, key));
    return text ? text : "(none)";
}

inline std::vector<std::string> lines_of(const std::string &text)
{
    std::vector<std::string> lines;
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find('\n', at), text.size());
        lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}
