// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"
#include "tests/support/device.h"

#include <filesystem>
#include <fstream>

inline const std::string logs = "/etc/persistent/isolation_logs/";
inline const std::string metas = "/etc/persistent/isolation_logs/meta/";
inline const std::string finished_logs = "/etc/persistent/isolation_logs_sent/";

// A log as its writer leaves it: a compressed archive with one file.
inline void put_log(const std::string &name)
{
    std::filesystem::create_directories(logs);
    std::ofstream("/tmp/said") << "said by <" << name << "> secret=word\n";
    ASSERT_EQ(system("tar -czf /tmp/log.tgz -C /tmp said"), 0);
    std::filesystem::copy_file("/tmp/log.tgz", logs + name);
}

inline json_ref file_json(const std::string &path)
{
    return json_ref{json_load_file(path.c_str(), 0, nullptr)};
}

inline std::string text_of(const json_t *object, const char *key)
{
    const char *text = json_string_value(json_object_get(object, key));
    return text ? text : "(none)";
}

// What request number @i of a journal carried.
inline json_ref body_of(const json_t &journal, size_t i)
{
    return json_ref{json_loads(text_of(json_array_get(&journal, i), "body").c_str(), 0, nullptr)};
}
