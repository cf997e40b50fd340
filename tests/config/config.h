// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/captured_log.h"
#include "tests/support/device.h"
#include "tests/support/failing_memory.h"
#include "tests/support/memory_file.h"

#include <memory>
#include <optional>
#include <random>

using namespace std::string_literals;
using config = std::unique_ptr<cfg_entry, decltype(&free_cfg)>;
using results = std::unique_ptr<cfg_it, decltype(&free_cfg_it)>;
using file = std::unique_ptr<FILE, int (*)(FILE *)>;

inline config config_of(file stream)
{
    return {parse_stream(stream.get()), free_cfg};
}
inline config config_of(const std::string &text)
{
    return config_of(file{fdopen(memory_file(text), "r"), fclose});
}
inline results results_of(cfg_it *list)
{
    return {list, free_cfg_it};
}

// A configuration or a result, one "key=value" a line.
std::string lines(const auto &list)
{
    std::string text;
    for (const auto *entry = list.get(); entry; entry = entry->next)
        text.append(entry->key).append("=").append(entry->value).append("\n");
    return text;
}

inline std::string random_text(std::mt19937 &random, const std::vector<std::string> &pieces, size_t longest)
{
    std::string text;
    for (size_t n = random() % (longest + 1); n > 0; n--)
        text += pieces[random() % pieces.size()];
    return text;
}
