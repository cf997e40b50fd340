// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <memory>
#include <string>
#include <unordered_map>

struct drop_cfg {
    void operator()(cfg_entry *cfg) const noexcept { free_cfg(cfg); }
};
struct drop_cfg_it {
    void operator()(cfg_it *it) const noexcept { free_cfg_it(it); }
};
struct close_stream {
    void operator()(FILE *f) const noexcept { (void)fclose(f); }
};
using unique_cfg = std::unique_ptr<cfg_entry, drop_cfg>; // nullptr is the empty configuration
using unique_cfg_it = std::unique_ptr<cfg_it, drop_cfg_it>;
using unique_stream = std::unique_ptr<FILE, close_stream>;

constexpr char running_configuration[] = "/tmp/system.cfg";

// Each returns why the file cannot be read; empty when it was.
std::string load(const char *path, unique_cfg &cfg);
std::string load(const char *path, std::string &bytes);
std::string load(const char *path, std::string &bytes, unique_cfg &cfg); // of one reading

// The first entry of each key, as a look-up finds it, at the same cost for any number of entries. It borrows from the
// configuration.
class key_index {
public:
    explicit key_index(const cfg_entry *cfg);
    const char *value(const std::string &key) const; // nullptr when there is none
    int64_t integer(const std::string &key) const;   // -1 when there is none, or it is no number
    int boolean(const std::string &key) const;       // -1 when there is none, or it is no boolean

private:
    cfg_entry alone(const std::string &key) const;

    std::unordered_map<std::string, const cfg_entry *> first_;
};
