// SPDX-License-Identifier: MIT
// The configuration store beside other readers of key=value files and beside the least that its work can cost.

#include "bench/config_input.h"
#include "bench/config_peers.h"
#include "bench/promises.h"

#include <array>
#include <cstring>
#include <functional>
#include <glib.h>
#include <ini.h>
#include <libvexa.h>
#include <malloc.h>
#include <memory>

using namespace std::string_literals;
using benchmark::DoNotOptimize;

namespace {

constexpr std::array<size_t, 3> sizes = {1000, 10000, 100000};
constexpr char section_prefix[] = "wireless.";
constexpr char section_postfix[] = ".ssid";

// Nobody has these: a family that is not there, an index beyond the last, a field and a number that are not there.
constexpr const char *missing_keys[] = {"mesh.status", "wireless.999999.ssid", "radio.3.antenna", "vlan.2.id2"};

struct free_config {
    void operator()(cfg_entry *cfg) const { free_cfg(cfg); }
};
using config = std::unique_ptr<cfg_entry, free_config>;

// All inputs of one size.
struct inputs {
    std::vector<config_line> lines;
    input_file plain, in_group, marked, unmarked;
    config cfg, scattered, changed, changed_scattered;
    GKeyFile *key_file = g_key_file_new();

    explicit inputs(size_t size)
        : lines{make_lines(size)}, plain{text_of(lines)}, in_group{"[config]\n" + text_of(lines)},
          marked{text_of(lines) + "# misc\n" + text_of(make_overrides(lines))}, unmarked{text_of(lines) +
                                                                                         text_of(
                                                                                             make_overrides(lines))},
          cfg{parse(plain.path())}, scattered{parse(input_file{text_of(scatter(lines))}.path())},
          changed{parse(input_file{text_of(change_some(lines))}.path())},
          changed_scattered{parse(input_file{text_of(scatter(change_some(lines)))}.path())}
    {
        g_key_file_load_from_file(key_file, in_group.path(), G_KEY_FILE_NONE, nullptr);
    }
    inputs(const inputs &) = delete;
    inputs &operator=(const inputs &) = delete;
    ~inputs() { g_key_file_free(key_file); }
};

int ignore_line(void *, const char *, const char *, const char *)
{
    return 1;
}

size_t section_of_key_file(GKeyFile *file)
{
    gsize count = 0;
    gchar **keys = g_key_file_get_keys(file, "config", &count, nullptr);
    std::vector<const char *> found;
    for (gsize i = 0; i < count; i++)
        if (g_str_has_prefix(keys[i], section_prefix) && g_str_has_suffix(keys[i], section_postfix))
            found.push_back(keys[i]);
    std::sort(found.begin(), found.end(), [](const char *a, const char *b) {
        return strtoul(a + strlen(section_prefix), nullptr, 10) < strtoul(b + strlen(section_prefix), nullptr, 10);
    });
    g_strfreev(keys);
    return found.size();
}

// What a run leaves behind is released off the clock; so is the tidying of the freed blocks, which the allocator puts
// off to the next large request, that is into the run that follows.
template <typename Make, typename Release>
void add(const std::string &work, size_t size, Make make, Release release)
{
    benchmark::RegisterBenchmark((work + "_" + std::to_string(size)).c_str(), [make, release](benchmark::State &state) {
        for (auto _ : state) {
            auto *made = make();
            DoNotOptimize(made);
            state.PauseTiming();
            release(made);
            void *large = malloc(4096);
            DoNotOptimize(large);
            free(large);
            state.ResumeTiming();
        }
    });
}

template <typename Work>
void add(const std::string &work, size_t size, Work run)
{
    benchmark::RegisterBenchmark((work + "_" + std::to_string(size)).c_str(), [run](benchmark::State &state) {
        for (auto _ : state)
            DoNotOptimize(run());
    });
}

void add_parsing(size_t size, const inputs &in)
{
    add(
        "parse", size, [&in] { return parse(in.plain.path()); }, free_cfg);
    add(
        "getline", size, [&in] { return parse_with_getline(in.plain.path()); }, free_cfg);
    add("inih", size, [&in] { return ini_parse(in.plain.path(), ignore_line, nullptr); });
    add(
        "glib", size,
        [&in] {
            GKeyFile *file = g_key_file_new();
            g_key_file_load_from_file(file, in.in_group.path(), G_KEY_FILE_NONE, nullptr);
            return file;
        },
        g_key_file_free);
    add(
        "overrides", size, [&in] { return parse(in.marked.path()); }, free_cfg);
    add(
        "unmarked", size, [&in] { return parse(in.unmarked.path()); }, free_cfg);
}

void add_queries(size_t size, const inputs &in)
{
    for (const char *key : missing_keys) {
        add("miss_"s + key, size, [&in, key] { return get_value(in.cfg.get(), nullptr, "%s", key); });
        add("miss_by_character_"s + key, size, [&in, key] { return find_by_character(in.cfg.get(), key); });
    }
    const auto collect = [](cfg_entry *cfg) { return get_cfg_section(cfg, section_postfix, nullptr, section_prefix); };
    add(
        "section", size, [&in, collect] { return collect(in.cfg.get()); }, free_cfg_it);
    add(
        "section_scattered", size, [&in, collect] { return collect(in.scattered.get()); }, free_cfg_it);
    add("scan", size, [&in] { return count_section(in.cfg.get(), section_prefix, section_postfix); });
    add("scan_scattered", size, [&in] { return count_section(in.scattered.get(), section_prefix, section_postfix); });
    add("glib_section", size, [&in] { return section_of_key_file(in.key_file); });
}

void add_diffs(size_t size, const inputs &in)
{
    const auto pair = [&](const std::string &order, cfg_entry *after) {
        add(
            "diff_" + order, size, [&in, after] { return get_cfg_diff_it(in.cfg.get(), after); }, free_cfg_it);
        add("join_" + order, size, [&in, after] { return diff_by_sorting(in.cfg.get(), after); });
    };
    pair("same", in.changed.get());
    pair("scattered", in.changed_scattered.get());
}

} // namespace

int main(int argc, char **argv)
{
    // The inputs stay out of the heap that is measured, and the heap keeps its pages from one run to the next.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    std::vector<std::unique_ptr<inputs>> all;
    for (const size_t size : sizes) {
        const inputs &in = *all.emplace_back(std::make_unique<inputs>(size));
        add_parsing(size, in);
        add_queries(size, in);
        add_diffs(size, in);
    }

    std::vector<promise> promises;
    for (const size_t size : sizes) {
        const std::string n = "_" + std::to_string(size);
        const auto expect = [&](const std::string &what, const std::string &subject, const std::string &peer,
                                double factor) {
            promises.push_back({n.substr(1) + " lines: " + what, subject + n, {peer + n}, factor});
        };
        expect("parse / getline loop", "parse", "getline", 0.75);
        expect("parse / inih, empty callback", "parse", "inih", 1 / 2.0);
        expect("parse / GLib key file", "parse", "glib", 1 / 3.0);
        expect("overrides / without the marker", "overrides", "unmarked", 1.6);
        for (const char *key : missing_keys)
            expect("missed "s + key + " / by character", "miss_"s + key, "miss_by_character_"s + key, 1 / 4.0);
        expect("section / scan", "section", "scan", 1.4);
        expect("section / scan, scattered", "section_scattered", "scan_scattered", 1.4);
        expect("section / GLib keys and sort", "section", "glib_section", 1 / 3.0);
        expect("diff / sort and join, same order", "diff_same", "join_same", 1);
        expect("diff / sort and join, scattered", "diff_scattered", "join_scattered", 1);
    }
    promises.push_back({"overrides, 100k / 1k lines", "overrides_100000", {"overrides_1000"}, 250});
    pace passing = {"ns per node passed at 1000 lines", {}, double(sizes.front() * std::size(missing_keys)), 2};
    for (const char *key : missing_keys)
        passing.subjects.push_back("miss_"s + key + "_" + std::to_string(sizes.front()));
    run_and_judge(argc, argv, promises, {passing});
}
