// SPDX-License-Identifier: MIT
#include "tests/tools/vexactl.h"

TEST(command_line, what_is_wrong_is_told_in_one_line)
{
    const struct {
        const char *why;
        std::vector<std::string> arguments;
        const char *line;
    } rows[] = {
        {"nothing", {}, "no command given; see vexactl --help"},
        {"half a command", {"lock"}, "lock: which one? status; see vexactl --help"},
        {"two letters swapped", {"confgi", "list"}, "no command 'confgi'; did you mean 'config'?; see vexactl --help"},
        {"a typo in the second word",
         {"config", "lst"},
         "config: no command 'lst'; did you mean 'list'?; see vexactl --help"},
        {"nothing is near", {"zzzzzz"}, "no command 'zzzzzz'; see vexactl --help"},
        {"a typo in an option", {"report", "--jsno"}, "report: no option '--jsno'; did you mean '--json'?"},
        {"an option of another command", {"uplink", "--default", "x"}, "uplink: no option '--default'"},
        {"no such letter", {"report", "-vx"}, "no option '-x'"},
        {"a word too few", {"config", "diff", "a"}, "config diff: NEW is missing"},
        {"a word too many", {"config", "get", "a", "b"}, "config get: 'b' is one argument too many"},
        {"a value is missing", {"config", "get", "a", "--default"}, "option --default wants a value (V)"},
        {"a value that is not asked for", {"report", "--json=yes"}, "option --json takes no value"},
        {"none of the choices",
         {"report", "--color", "alwyas"},
         "option --color: 'alwyas' is none of auto, always, never; did you mean 'always'?"},
        {"control characters stay visible", {"\033[2J"}, "no command '\\x1b[2J'; see vexactl --help"},
        {"a postfix is checked",
         {"config", "section", "radio.", "--postfix", "mode"},
         "config section: a postfix begins with '.': 'mode'"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        const finished done = vexactl(row.arguments);
        EXPECT_EQ(done.status, 2);
        EXPECT_EQ(done.out, "");
        EXPECT_EQ(done.err, std::string{"vexactl: "} + row.line + "\n");
    }
}

// the verbs that completion offers, which come from the same table as help
TEST(help, every_command_has_one_line_and_an_example_that_its_table_row_accepts)
{
    size_t commands = 0;
    const std::string overview = vexactl({"--help"}).out;
    for (const std::string &first : lines_of(vexactl({"complete", "--", ""}).out)) {
        std::vector<std::string> names{first};
        const bool alone = vexactl({first, "--help"}).out.rfind("usage: vexactl " + first + " COMMAND", 0) != 0;
        if (!alone) {
            names.clear();
            for (const std::string &second : lines_of(vexactl({"complete", "--", first, ""}).out))
                names.emplace_back(first).append(" " + second);
        }
        for (const std::string &name : names) {
            SCOPED_TRACE(name);
            const finished help = shell("$VEXACTL " + name + " --help");
            EXPECT_EQ(help.status, 0);
            const size_t example = help.out.find("Example:\n  vexactl " + name);
            ASSERT_NE(example, help.out.npos) << help.out;
            std::string line = lines_of(help.out.substr(example))[1];
            line.replace(line.find("vexactl"), 7, "$VEXACTL --help");
            EXPECT_EQ(shell(line.substr(0, line.find_first_of(">|"))).status, 0) << line;
            EXPECT_NE(overview.find("\n  " + name), overview.npos);
            const json_document described = json_of(shell("$VEXACTL --json --help " + name).out);
            EXPECT_EQ(member_text(json_array_get(json_object_get(described.get(), "commands"), 0), "command"), name);
            commands++;
        }
    }
    EXPECT_GE(commands, 11u);
}

TEST(completion, offers_what_may_stand_there)
{
    the_device.put("/tmp/system.cfg", "radio.1.channel=6\nradio.2.channel=36\nradio.1.channel=7\nbad\nkey\tx\033=1\n");
    the_device.put("/var/run/guest/portal/lobby/vlans", "10");
    const struct {
        const char *why;
        std::vector<std::string> words;
        const char *offered;
    } rows[] = {
        {"a first word", {"con"}, "config\nconntrack\n"},
        {"a second word", {"config", "d"}, "diff\n"},
        {"keys as they are now, each once", {"config", "get", "radio."}, "radio.1.channel\nradio.2.channel\n"},
        {"nothing that a shell would take apart", {"config", "get", "key"}, ""},
        {"options of the command", {"config", "section", "radio.", "--p"}, "--postfix\n"},
        {"the choices of an option", {"--format", ""}, "json\nkv\ntable\n"},
        {"interfaces of the device", {"iface", "e"}, "eth0\neth1\n"},
        {"bridges only", {"fdb", ""}, "br0\n"},
        {"guest portals", {"portal", "auth", ""}, "lobby\n"},
        {"words to choose from", {"wait", "u"}, "uplink\n"},
        {"a site key is no key of the configuration", {"envelope", "seal", ""}, ""},
        {"file names are left to the shell", {"config", "diff", ""}, ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        std::vector<std::string> arguments{"complete", "--"};
        arguments.insert(arguments.end(), row.words.begin(), row.words.end());
        EXPECT_EQ(vexactl(arguments).out, row.offered);
    }
    constexpr char key[] = "radio.2.channel\n";
    const struct {
        const char *shell, *around, *question, *offered; // what completes in a shell at work stands around
    } shells[] = {
        {"bash", "", "COMP_WORDS=(vexactl config get radio.2); COMP_CWORD=3; _vexactl; echo ${COMPREPLY[@]}", key},
        {"bash", "", "COMP_WORDS=(vexactl station f2 : f7 : 67); COMP_CWORD=6; _vexactl; echo ${COMPREPLY[@]}",
         "67:96:1b:4a\n"},
        {"zsh", "compdef() {}; compadd() { print -l -- ${(P)argv[-1]}; }",
         "words=(vexactl config get radio.2); CURRENT=4; _vexactl", key},
        {"fish", "", "complete -C 'vexactl config get radio.2'", key},
    };
    const std::string tool = VEXACTL;
    for (const auto &s : shells) {
        const std::string line = std::string(s.around) + "\nexport PATH=" + tool.substr(0, tool.rfind('/')) +
                                 ":$PATH; eval \"$(vexactl completion " + s.shell + ")\"; " + s.question;
        const finished asked = run_program({s.shell, "-c", line});
        if (asked.status != 127) { // the shell is there
            EXPECT_EQ(asked.out, s.offered) << s.shell << asked.err;
        }
    }
}

TEST(wait, returns_when_it_is_there)
{
    EXPECT_EQ(vexactl({"wait", "uplink", "--timeout", "1"}).status, 0);
    the_device.remove("/var/run/ntp.ready");
    const finished clock = shell("$VEXACTL wait time --timeout 20 & echo > /var/run/ntp.ready; wait $!");
    EXPECT_EQ(clock.status, 0) << clock.err;
    const finished late = shell("script -qec \"$VEXACTL wait bus power.outlet --timeout 2\" /dev/null");
    EXPECT_EQ(late.status, 1);
    EXPECT_THAT(late.out, testing::StartsWith("\rwaiting for power.outlet ... 1 s "));
    EXPECT_THAT(late.out, testing::EndsWith("\r\033[Kvexactl: no power.outlet within 2 s\r\n"));
    EXPECT_EQ(vexactl({"wait", "bus"}).status + vexactl({"wait", "time", "x"}).status, 2 + 2);
}
