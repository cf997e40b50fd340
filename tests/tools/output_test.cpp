// SPDX-License-Identifier: MIT
#include "tests/tools/vexactl.h"

#include <sys/wait.h>

namespace {

std::string shown(const std::string &value, const char *format)
{
    the_device.put("/tmp/system.cfg", "k=" + value + "\n");
    const finished done = vexactl({"config", "get", "k", "--format", format});
    EXPECT_EQ(done.status, 0) << done.err;
    return done.out;
}

} // namespace

TEST(text_from_outside, is_made_fit_for_each_format)
{
    const struct {
        const char *why, *value, *table, *json, *kv;
    } rows[] = {
        {"ordinary text", "a b", "a b", "a b", "'a b'"},
        {"UTF-8", "Caf\u00e9 \u6e2f", "Caf\u00e9 \u6e2f", "Caf\u00e9 \u6e2f", "'Caf\u00e9 \u6e2f'"},
        {"quotes", "it's \"$x\"", "it's \"$x\"", "it's \"$x\"", "'it'\\''s \"$x\"'"},
        {"an escape sequence", "\033[2J", "\\x1b[2J", "\033[2J", "$'\\033[2J'"},
        {"line ends", "a\r", "a\\r", "a\r", "$'a\\015'"},
        {"a byte that is no UTF-8", "a\xff'", "a\\xff'", "a\ufffd'", "$'a\\377\\''"},
        {"a sequence cut short", "\xe6\xb8", "\\xe6\\xb8", "\ufffd\ufffd", "$'\\346\\270'"},
        {"an overlong sequence", "\xc0\xaf", "\\xc0\\xaf", "\ufffd\ufffd", "$'\\300\\257'"},
        {"a surrogate", "\xed\xa0\x80", "\\xed\\xa0\\x80", "\ufffd\ufffd\ufffd", "$'\\355\\240\\200'"},
        {"a control character beyond ASCII", "\u009b2J", "\\u009b2J", "\u009b2J", "$'\\302\\2332J'"},
        {"text that runs backwards", "\u202ecod", "\\u202ecod", "\u202ecod", "$'\\342\\200\\256cod'"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(shown(row.value, "table"), row.table + std::string{"\n"});
        EXPECT_EQ(shown(row.value, "kv"), "k=" + std::string{row.kv} + "\n");
        const std::string json = shown(row.value, "json");
        EXPECT_EQ(member_text(json_of(json).get(), "value"), row.json);
        EXPECT_TRUE(std::all_of(json.begin(), json.end(), [](char c) { return c == '\n' || (c >= ' ' && c < 127); }));
    }
}

TEST(kv, a_shell_reads_every_byte_back)
{
    std::string value;
    for (int byte = 1; byte < 256; byte++)
        if (byte != '\n')
            value += static_cast<char>(byte);
    the_device.put("/tmp/system.cfg", "Radio.1.x-y=" + value + "\nradio.1.x_y=second\n");
    const finished done = shell("eval \"$($VEXACTL config list --format kv)\"; printf %s \"$radio_1_x_y\"");
    EXPECT_EQ(done.out, value);
}

TEST(json, a_list_is_an_array_even_when_it_is_empty)
{
    the_device.put("/tmp/system.cfg", "");
    for (const char *command : {"config list", "config list x", "config section x.", "config check",
                                "config diff /tmp/system.cfg /tmp/system.cfg"}) {
        SCOPED_TRACE(command);
        const json_document answer = json_of(shell("$VEXACTL --json " + std::string{command}).out);
        EXPECT_TRUE(json_is_array(answer.get()));
        EXPECT_EQ(json_array_size(answer.get()), 0u);
    }
}

TEST(table, stays_within_80_columns_and_loses_nothing)
{
    const std::string word(300, 'x'), key(90, 'k');
    the_device.put("/tmp/system.cfg", "a=" + word + "\n" + key + "=\u6e2f\u6e2f y\nb=2\n");
    std::string joined;
    for (const std::string &line : lines_of(vexactl({"config", "list"}).out)) {
        EXPECT_LE(line.size(), 80u + 2) << line; // each wide character takes two columns and three bytes
        EXPECT_NE(line.back(), ' ');
        joined += line;
    }
    EXPECT_EQ(std::count(joined.begin(), joined.end(), 'x'), 300);
    EXPECT_EQ(std::count(joined.begin(), joined.end(), 'k'), 90);
}

TEST(output, what_cannot_be_written_is_an_error)
{
    const struct {
        const char *why, *line, *reason;
    } rows[] = {
        {"a full disk", "$VEXACTL config list > /dev/full", "No space left on device"},
        {"a full disk, more than a buffer", "$VEXACTL config list --json > /dev/full", "No space left on device"},
        {"closed", "$VEXACTL report >&-", "Bad file descriptor"},
        {"nobody reads", "trap '' PIPE; { sleep 0.2; $VEXACTL report; echo $? >&2; } | true", "Broken pipe"},
        {"help, too", "$VEXACTL --help > /dev/full", "No space left on device"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        const finished done = shell(row.line);
        EXPECT_THAT(done.err, testing::HasSubstr(std::string{"cannot write the answer: "} + row.reason));
        EXPECT_TRUE(done.status == 3 || done.err.find("\n3\n") != std::string::npos) << done.status << done.err;
    }
}
