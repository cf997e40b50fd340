// SPDX-License-Identifier: MIT
#include "tests/support/device.h"
#include "tests/support/program.h"

#include <filesystem>
#include <fstream>

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

const runs_on no_device{the_machine}; // the tool makes its own

constexpr int refused = 77;

finished sh(const std::string &script)
{
    return run_program({"sh", "-c", script});
}

finished on_device(const std::string &script)
{
    return run_program({VEXA_SIM, "run", "--", "sh", "-c", script});
}

class simulator : public testing::Test {
    void SetUp() override
    {
        if (const finished trial = on_device("true"); trial.status == refused)
            GTEST_SKIP() << trial.err;
    }
};

class temporary_folder {
public:
    explicit temporary_folder(std::string name) : path_{mkdtemp(name.data())} {}
    ~temporary_folder() { fs::remove_all(path_); }
    const fs::path &path() const { return path_; }

private:
    fs::path path_;
};

} // namespace

// Only what does no harm should it reach the machine after all.
TEST_F(simulator, changes_nothing_on_the_machine)
{
    const std::string interfaces = "ip -o link | cut -d: -f2; ip -o address | cut -d' ' -f7";
    const std::string before = sh(interfaces).out;
    const std::string mark = "vexa-sim-" + std::to_string(getpid());
    const std::string folders =
        "/etc /usr /usr/bin /usr/local /var /var/log /var/run /var/tmp /run /tmp /root /home /opt "
        "/srv /dev /dev/shm " +
        fs::current_path().string();
    const temporary_folder victim{"/var/tmp/vexa-sim-XXXXXX"};
    const std::string file = victim.path() / "file";
    std::ofstream(file) << "kept";

    const finished run =
        on_device("for folder in " + folders + "; do echo x >$folder/" + mark +
                  "; done 2>/dev/null\n" //
                  "(echo x >" +
                  file + "; rm -f " + file +
                  ") 2>/dev/null\n"                           //
                  "ip link add br-mark type bridge || exit\n" //
                  "[ -f /dev/kmsg ] && for space in mnt net ipc uts; do readlink /proc/self/ns/$space; done");
    EXPECT_EQ(sh(interfaces).out, before);
    EXPECT_EQ(sh("cd / && for folder in " + folders + "; do ls $folder/" + mark + " && rm $folder/" + mark +
                 "; done 2>/dev/null")
                  .out,
              "");
    EXPECT_EQ(sh("cat " + file).out, "kept");
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 4) << run.err;
    for (const char *space : {"mnt", "net", "ipc", "uts"})
        EXPECT_THAT(run.out, Not(HasSubstr(fs::read_symlink(std::string("/proc/self/ns/") + space).string())));
}

TEST_F(simulator, ends_as_the_program_ends)
{
    const struct {
        const char *why;
        std::vector<std::string> arguments;
        int status, lines;
    } rows[] = {
        {"status of the program", {"run", "--", "sh", "-c", "exit 3"}, 3, 0},
        {"a signal", {"run", "sh", "-c", "kill -9 $$"}, 137, 0},
        {"signals are passed on",
         {"run", "sh", "-c", "trap 'exit 9' TERM; kill -TERM $PPID; while :; do :; done"},
         9,
         0},
        {"not there", {"run", "--", "/no/such/program"}, 127, 1},
        {"not a program", {"run", "--", "/etc/passwd"}, 126, 1},
        {"no such device", {"run", "--device", "toaster", "--", "true"}, 2, 1},
        {"no name", {"run", "--device"}, 2, 1},
        {"no failure", {"run", "--fail", "GETMACS", "true"}, 2, 1},
        {"no folder", {"run", "--writable", "/etc/passwd", "true"}, 2, 1},
        {"no place for a recording", {"record", "/proc/recorded"}, 125, 1},
        {"no setting", {"set", "station.rssi"}, 2, 1},
        {"no device to set it on", {"set", "station.a.rssi=1"}, 125, 1},
        {"no such option", {"run", "--fast", "true"}, 2, 1},
        {"no program", {"run", "--"}, 2, 1},
        {"no such verb", {"walk"}, 2, 1},
        {"no verb", {}, 2, 1},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        std::vector<std::string> arguments = row.arguments;
        arguments.insert(arguments.begin(), VEXA_SIM);
        const finished run = run_program(arguments);
        EXPECT_EQ(run.status, row.status) << run.err;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), row.lines) << run.err;
    }
}

TEST_F(simulator, shows_a_device_to_children_and_their_children)
{
    EXPECT_THAT(on_device("sh -c 'cat /proc/vexahal/system.info; true'").out,
                StartsWith("vendorid=0777\nsystemid=a620\n"));
    EXPECT_EQ(run_program({VEXA_SIM, "run", "--keep-proc", "--", "sh", "-c", "ls -d /proc/1 /proc/vexahal"}).out,
              "/proc/1\n");
    EXPECT_EQ(run_program({VEXA_SIM, "run", "--device=empty", "ls", "/run", "/sys/class/net"}).out,
              "/run:\n\n/sys/class/net:\nlo\n");
    EXPECT_THAT(run_program({VEXA_SIM, "list"}).out, HasSubstr("\nempty  "));
    EXPECT_EQ(run_program({VEXA_SIM, "complete", "--", "run", "--device", "ga"}).out, "gateway\n");
    EXPECT_EQ(run_program({VEXA_SIM, "complete", "--", "run", "--ke"}).out, "--keep-proc\n");
    EXPECT_EQ(run_program({VEXA_SIM, "complete", "--", "s"}).out, "shell\nset\n");
}

// Any program sees a working radio, one with a sanitizer, too (vexa-sim itself).
TEST_F(simulator, answers_for_the_radios_of_a_device)
{
    const std::string name_of_ra0 = "python3 -c 'import fcntl, socket, struct, ctypes\n"
                                    "name = ctypes.create_string_buffer(40)\n"
                                    "block = struct.pack(\"16sQHH4x\", b\"ra0\", ctypes.addressof(name), 40, 0)\n"
                                    "fcntl.ioctl(socket.socket(socket.AF_INET, socket.SOCK_DGRAM), 0x8B1B, block)\n"
                                    "print(name.value.decode())'\n";
    const finished run = on_device(
        name_of_ra0 +
        "cat /var/run/vapusage.apclii0 /sys/class/net/ra0/address\nASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0 " VEXA_SIM
        " --version >/dev/null || exit\n" VEXA_SIM " set vap.ra0.ssid='Harbour 2'\n" +
        name_of_ra0);
    EXPECT_EQ(run.out, "Harbour Street\nuplink\n02:56:58:00:10:10\nHarbour 2\n") << run.err;
    EXPECT_THAT(sh(VEXA_SIM " run --fail SIOCGIWESSID=EIO " + name_of_ra0).err, HasSubstr("Input/output error"));
}

TEST_F(simulator, tells_what_a_program_changed)
{
    const finished run = sh(VEXA_SIM " diff -- sh -c 'echo new >/tmp/new; ln -s nowhere /run/link; rm /run/ntp.ready; "
                                     "sed -i s/6.6.77/6.6.78/ /usr/etc/.version; exit 3'");
    EXPECT_EQ(run.status, 3);
    EXPECT_THAT(run.out, StartsWith("+ /run/link\n- /run/ntp.ready\n+ /tmp/new\n~ /usr/etc/.version\ndiff -urN "));
    EXPECT_THAT(run.out, HasSubstr("\n+new\n"));
    EXPECT_EQ(sh(VEXA_SIM " diff true").out, "");
}

// What was recorded is recorded again from itself, and nothing of the original tells whose it was.
TEST_F(simulator, records_a_device_that_others_can_run)
{
    const temporary_folder kept{"/var/tmp/vexa-sim-XXXXXX"};
    const std::string in_folder = "cd " + kept.path().string() + "; " VEXA_SIM " run --bus --writable=. ";
    ASSERT_EQ(sh(in_folder + VEXA_SIM " record one && " + in_folder + "--device ./one " VEXA_SIM " record two").err,
              "");
    EXPECT_EQ(sh("cd " + kept.path().string() + "; diff -r one two").out, "");
    const std::string all =
        sh("cd " + kept.path().string() + "/one; cat about bus eeprom interfaces wireless; cat $(find root -type f)")
            .out;
    for (const char *part : {"a recorded ", "psu_table", "VEXA:", "route add default", "busy_rx=", "aaa.1.wpa.psk="})
        EXPECT_NE(all.find(part), all.npos) << part;
    EXPECT_EQ(std::stoi(sh("grep -c ^station " + kept.path().string() + "/one/wireless").out), 60);
    for (const char *original : {"001001", "00:10:", "QX7M", "Harbour", "till-1", "f2:f7:67:96", "passphrase-office",
                                 "0123456789abcdef", "radius-secret", "11111111-2222", "=ap-lobby", "ExampleKey"})
        EXPECT_EQ(all.find(original), all.npos) << original;
    EXPECT_THAT(sh(in_folder + VEXA_SIM " record one").err, EndsWith("one is there already\n"));
}

TEST_F(simulator, opens_a_shell)
{
    const finished shell =
        sh("echo 'vexa-sim list | wc -l; cat /proc/vexahal/system.info; exit 4' | SHELL=/bin/sh " VEXA_SIM
           " shell --device beta");
    EXPECT_EQ(shell.status, 4) << shell.err;
    EXPECT_THAT(shell.out, HasSubstr("\nsystemid=a643\n"));
}

TEST_F(simulator, says_when_the_kernel_refuses)
{
    const finished run = sh("unshare -Ur sh -c 'echo 0 >/proc/sys/user/max_mnt_namespaces && " VEXA_SIM " run true'");
    EXPECT_EQ(run.status, refused) << run.err;
    EXPECT_THAT(run.err, StartsWith("vexa-sim: the kernel refuses private namespaces: "));
}

TEST_F(simulator, serves_an_ordinary_user)
{
    const bool is_root = geteuid() == 0;
    if (is_root && sh("setpriv --reuid 65534 --clear-groups test -x " VEXA_SIM).status != 0)
        GTEST_SKIP() << "other users cannot reach " VEXA_SIM;
    const std::string someone = is_root ? "setpriv --reuid 65534 --regid 65534 --clear-groups " : "";
    EXPECT_EQ(sh(someone + VEXA_SIM " run sh -c 'id -u; ls /sys/class/net/br0/brif; echo x >/tmp/x && cat /tmp/x'").out,
              "0\neth0\neth1\nx\n");
}
