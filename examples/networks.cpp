// SPDX-License-Identifier: MIT
// The names of the wireless networks of a configuration, in C++: what the library makes is owned like anything else.
//
//     networks [FILE]
#include <libvexa.h>

#include <memory>

template <auto release>
struct released_by {
    template <typename T>
    void operator()(T *resource) const
    {
        release(resource);
    }
};

using configuration = std::unique_ptr<cfg_entry, released_by<free_cfg>>;
using matches = std::unique_ptr<cfg_it, released_by<free_cfg_it>>;

int main(int argc, char **argv)
{
    const configuration cfg{parse(argc > 1 ? argv[1] : "/tmp/system.cfg")};
    const matches names{get_cfg_section(cfg.get(), ".ssid", nullptr, "wireless.")};
    for (const cfg_it *it = names.get(); it; it = it->next)
        puts(it->value);
    return names ? 0 : 1;
}
