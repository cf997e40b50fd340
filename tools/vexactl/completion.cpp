// SPDX-License-Identifier: MIT
#include "completion.h"

#include "arguments.h"
#include "configuration.h"
#include "portal.h"
#include "wireless.h"

#include <algorithm>
#include <net/if.h>
#include <unistd.h>

namespace {

using names = std::vector<std::string>;

names configuration_keys(const char *file)
{
    unique_cfg cfg;
    names keys;
    if (load(file, cfg).empty())
        for (const cfg_entry *entry = cfg.get(); entry; entry = entry->next)
            keys.emplace_back(entry->key);
    return keys;
}

names interfaces(const char *)
{
    names all;
    struct if_nameindex *const found = if_nameindex();
    for (const struct if_nameindex *i = found; i && i->if_index != 0; i++)
        all.emplace_back(i->if_name);
    if_freenameindex(found);
    return all;
}

names bridges(const char *)
{
    names all = interfaces(nullptr);
    const auto is_none = [](const std::string &name) {
        return access(("/sys/class/net/" + name + "/bridge").c_str(), F_OK) != 0;
    };
    all.erase(std::remove_if(all.begin(), all.end(), is_none), all.end());
    return all;
}

// what each row of a list is called
names names_of(const json_ref &rows, const char *key)
{
    names all;
    for (size_t i = 0; i < json_array_size(rows.get()); i++)
        all.emplace_back(bytes_of(json_object_get(json_array_get(rows.get(), i), key)));
    return all;
}

names portals(const char *)
{
    return names_of(portal_set{}.documents(), "name");
}

names wireless_interfaces(const char *)
{
    names all;
    for (const vap_entry &vap : find_vaps())
        all.emplace_back(vap.ifname);
    return all;
}

names stations(const char *)
{
    std::string silent;
    return names_of(station_documents(nullptr, silent), "mac");
}

// operands that are named after something on the device
constexpr struct {
    const char *operand;
    names (*list)(const char *file);
} live_names[] = {
    {"KEY", configuration_keys}, {"PREFIX", configuration_keys}, {"IFNAME", interfaces}, {"BRIDGE", bridges},
    {"PORTAL", portals},         {"VAP", wireless_interfaces},   {"MAC", stations},
};

names option_names(const arguments &line)
{
    names all;
    for (const option &o : common_options())
        all.push_back(std::string{"--"} + o.name);
    if (line.command())
        for (const option &o : line.command()->options)
            if (o.name)
                all.push_back(std::string{"--"} + o.name);
    return all;
}

names operand_names(const arguments &line)
{
    const names operands = split(line.command()->operands, ' ');
    if (line.count() >= operands.size())
        return {};
    const std::string &shown = operands[line.count()];
    if (shown.find('|') != shown.npos)
        return split(shown, '|');
    for (const auto &live : live_names)
        if (shown == live.operand || shown == "[" + std::string{live.operand} + "]")
            return live.list(line.value("file", running_configuration));
    return {};
}

} // namespace

names candidates(std::vector<const char *> words)
{
    const std::string current = words.empty() ? "" : words.back();
    if (words.empty())
        words.push_back("");
    words.back() = "vexactl"; // the name of the program stands first
    std::rotate(words.rbegin(), words.rbegin() + 1, words.rend());
    arguments line;
    (void)line.parse(static_cast<int>(words.size()), words.data()); // it need not be complete
    const option *before = line.find_option(words.back());

    names all;
    if (before && before->value)
        all = before->choices ? split(before->choices, '|') : names{};
    else if (current.rfind('-', 0) == 0)
        all = option_names(line);
    else
        all = line.command() ? operand_names(line) : verb_words(line.family());
    all.erase(std::remove_if(all.begin(), all.end(), [&](const std::string &s) { return s.rfind(current, 0) != 0; }),
              all.end());
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}
