// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <initializer_list>
#include <jansson.h>
#include <memory>
#include <string>
#include <string_view>

// What a command answers is made once, as a JSON value. Its strings are the exact bytes from outside; they become
// visible text, valid UTF-8 or shell words where they are written.

[[noreturn]] void out_of_memory();

struct drop_json {
    void operator()(json_t *j) const noexcept { json_decref(j); }
};
using json_ref = std::unique_ptr<json_t, drop_json>;

struct member {
    const char *key;
    json_t *value; // stolen
};

json_t *text(std::string_view bytes);
json_t *text_or_null(const char *bytes);
json_t *number(int64_t value);
json_t *flag(bool value);
json_t *object(std::initializer_list<member> members);
json_t *list();
void append(json_t *list, json_t *row); // steals the row

std::string_view bytes_of(const json_t *string);

// a copy whose strings are valid UTF-8
json_ref sanitized(const json_t *value);

// the value, sanitized, as JSON in ASCII with a line feed; `style` as jansson's flags
std::string json_text(const json_t *value, size_t style);
