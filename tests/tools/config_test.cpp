// SPDX-License-Identifier: MIT
#include "tests/tools/vexactl.h"

#include <sys/stat.h>

namespace {

struct check_row {
    size_t line;
    std::string problem, key;
    bool operator==(const check_row &) const = default;
};

std::ostream &operator<<(std::ostream &out, const check_row &row)
{
    return out << row.line << ' ' << row.problem << ' ' << row.key;
}

std::vector<check_row> checked(const std::string &file, int &status)
{
    the_device.put("/tmp/new.cfg", file);
    const finished done = vexactl({"config", "check", "--json", "--file", "/tmp/new.cfg"});
    status = done.status;
    const json_document found = json_of(done.out);
    std::vector<check_row> rows;
    for (size_t i = 0; i < json_array_size(found.get()); i++) {
        const json_t *row = json_array_get(found.get(), i);
        rows.push_back({static_cast<size_t>(json_integer_value(json_object_get(row, "line"))),
                        member_text(row, "problem"), member_text(row, "key")});
    }
    return rows;
}

} // namespace

TEST(config_get, tells_the_first_value_or_that_there_is_none)
{
    the_device.put("/tmp/system.cfg", "Radio.1.mode=a\nradio.1.mode=b\nempty=\n");
    EXPECT_EQ(vexactl({"config", "get", "radio.1.MODE"}).out, "a\n");
    EXPECT_EQ(vexactl({"config", "get", "empty", "--default", "x"}).out, "\n");
    EXPECT_EQ(vexactl({"config", "get", "none", "--default", "x"}).out, "x\n");
    const finished missing = vexactl({"config", "get", "100%s"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "vexactl: no entry '100%s' in /tmp/system.cfg\n");
    the_device.remove("/tmp/system.cfg");
    for (const char *file : {"/tmp/system.cfg", "/tmp"}) {
        const finished unreadable = vexactl({"config", "get", "radio.1.mode", "--file", file});
        EXPECT_EQ(unreadable.status, 3);
        EXPECT_EQ(lines_of(unreadable.err).size(), 1u);
    }
}

TEST(config_list, shows_what_the_library_finds)
{
    the_device.put("/tmp/system.cfg", "b.10.x=1\nb.9.x=2\nB.9.x=3\nc=4\nb.9.y=5\n");
    const struct {
        const char *why, *command, *keys;
        int status;
    } rows[] = {
        {"all, in file order", "config list", "b.10.x b.9.x B.9.x c b.9.y", 0},
        {"a prefix minds case", "config list b.9", "b.9.x b.9.y", 0},
        {"no match", "config list d", "", 1},
        {"a section is sorted by number", "config section b. --postfix .x", "b.9.x b.10.x", 0},
        {"a section with a value", "config section b. --postfix .x --value 1", "b.10.x", 0},
        {"a section's prefix ends with a dot", "config section b --postfix .x", "", 1},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        const finished done = shell("$VEXACTL --json " + std::string{row.command});
        EXPECT_EQ(done.status, row.status);
        const json_document found = json_of(done.out);
        std::string keys;
        for (size_t i = 0; i < json_array_size(found.get()); i++)
            keys += (i ? " " : "") + member_text(json_array_get(found.get(), i), "key");
        EXPECT_EQ(keys, row.keys);
    }
}

TEST(config_check, finds_what_is_suspicious)
{
    const std::string digits(32, 'a');
    const struct {
        const char *why;
        std::string file;
        std::vector<check_row> found;
    } rows[] = {
        {"nothing is", "# x\n\r\n\na=1\nb==\nc=\ncorvo.key=" + digits + "\ncorvo.mcip=239.0.0.1\n", {}},
        {"no equals sign", "a=1\nnovalue\n", {{2, "no-equals", ""}}},
        {"a key twice, whatever its case", "a=1\nb=2\nA=3\n", {{3, "duplicate-key", "A"}}},
        {"overrides are meant to repeat", "a=1\n# misc\na=2\na=3\n", {}},
        {"the last character is lost", "a=12", {{1, "no-line-feed", "a"}}},
        {"carriage returns are told once", "a=1\r\nb=2\r\nc=3\n", {{1, "carriage-return", "a"}}},
        {"blanks around a key are trimmed, inside they stay", " a =1\nb c=1\n", {{2, "blank-in-key", "b c"}}},
        {"no key", "=1\n", {{1, "empty-key", ""}}},
        {"a zero byte ends the value or the key",
         std::string{"a=1\0x\nb\0c=1\n", 12},
         {{1, "zero-byte", "a"}, {2, "zero-byte", "b"}}},
        {"a control character", "a=\033[m\n", {{1, "control-character", "a"}}},
        {"no room in a fixed buffer", "a=" + std::string(1022, 'x') + "\n", {{1, "long-line", ""}}},
        {"just room enough", "a=" + std::string(1021, 'x') + "\n", {}},
        {"a site key too short", "corvo.key=abc\n", {{1, "site-key", "corvo.key"}}},
        {"a site key of 32 other characters",
         "corvo.key=" + std::string(32, 'g') + "\n",
         {{1, "site-key", "corvo.key"}}},
        {"a group that none can join", "corvo.mcip=192.0.2.1\n", {{1, "group", "corvo.mcip"}}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        int status = -1;
        EXPECT_EQ(checked(row.file, status), row.found);
        EXPECT_EQ(status, row.found.empty() ? 0 : 1);
    }
}

TEST(config, reads_what_is_no_plain_file_without_hanging)
{
    EXPECT_EQ(mkfifo("/tmp/nobody_writes", 0600), 0);
    EXPECT_EQ(vexactl({"config", "list", "--file", "/tmp/nobody_writes"}).out, "");
    EXPECT_EQ(shell("$VEXACTL config diff <(echo a=1) <(sleep 0.1; echo a=2)").out,
              "   KEY  OLD  NEW\n~  a    1    2\n");
}
