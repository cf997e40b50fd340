// SPDX-License-Identifier: MIT
// vexactl: the device's support library at a prompt.
#include "arguments.h"
#include "help.h"
#include "output.h"

#include <cstring>
#include <fcntl.h>
#include <libvexa.h>
#include <new>
#include <unistd.h>

namespace {

// A file must not be opened where a closed standard stream would then write into it.
void fill_standard_streams()
{
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; fd++)
        if (fcntl(fd, F_GETFD) < 0)
            (void)open("/dev/null", O_RDONLY); // takes the lowest free number; writing to it fails
}

// Looked for before everything else, since a wrong command line is answered in the asked format, too.
bool asks_for_json(int argc, char *const *argv)
{
    for (int i = 1; i < argc && strcmp(argv[i], "--") != 0; i++)
        if (strcmp(argv[i], "--json") == 0 || strcmp(argv[i], "--format=json") == 0 ||
            (strcmp(argv[i], "--format") == 0 && i + 1 < argc && strcmp(argv[i + 1], "json") == 0))
            return true;
    return false;
}

output_format chosen_format(const arguments &args, bool json)
{
    const std::string name = args.value("format", "table");
    return json || name == "json" ? output_format::json : name == "kv" ? output_format::kv : output_format::table;
}

// The library is silent at a prompt unless it is asked: the tool itself says what is wrong.
void set_verbosity(size_t times)
{
    libvexa_log_level = times == 0 ? 0 : times == 1 ? 8 : 16;
    libvexa_log_use_syslog = times == 0;
}

int show_version(output &out)
{
    if (out.for_people())
        return out.write("vexactl " VEXA_VERSION "\n");
    return out.show({json_ref{object({{"version", text(VEXA_VERSION)}})}, {}});
}

int run(const arguments &args, output &out)
{
    set_verbosity(args.times("verbose"));
    if (args.has("help"))
        return out.for_people() ? out.write(help_text(args)) : out.show({json_ref{help_document(args)}, {}});
    if (args.has("version"))
        return show_version(out);
    return args.command()->run(args, out);
}

} // namespace

int main(int argc, char **argv)
{
    std::set_new_handler(out_of_memory);
    fill_standard_streams();
    arguments args;
    const std::string wrong = args.parse(argc, argv);
    const bool json = asks_for_json(argc, argv);
    output out{chosen_format(args, json), choose_palette(args.value("color", "auto"))};
    if (!wrong.empty())
        return out.fail(status_usage, wrong + (args.command() || json ? "" : "; see vexactl --help"));
    const int status = run(args, out);
    const int written = out.finish();
    return written != status_ok ? written : status;
}
