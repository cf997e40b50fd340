// SPDX-License-Identifier: MIT
#include "device/processor.h"

#include "core/ascii.h"
#include "core/open_file.h"
#include "core/read_file.h"
#include "core/text.h"

#include <cstring>
#include <libvexa.h>

namespace {

constexpr char path_cpuinfo[] = "/proc/cpuinfo";

// The codes of the families; nothing else is known of them.
enum family { ar2313 = 0, ar2316 = 1, ar7100 = 2, ar7240 = 3, ar933x = 4, unknown = 43 };

struct family_name {
    const char *text;
    family code;
};

constexpr family_name names[] = {
    {"ar933x", ar933x}, {"ar7240", ar7240}, {"ar2313", ar2313}, {"ar2316", ar2316}, {"ar7100", ar7100},
};

constexpr family_name system_types[] = {
    {"Atheros AR5", ar2316},
    {"Atheros AR724", ar7240},
    {"Atheros AR933", ar933x},
    {"Atheros AR7", ar7100}, // after those that begin like it
};

// Takes "key : value" apart, in place.
const char *split(char *line)
{
    char *colon = strchr(line, ':');
    if (!colon || colon[1] != ' ')
        return nullptr;
    *colon = '\0';
    trim_trailing(line, int(colon - line));
    return colon + 2;
}

} // namespace

int processor_family()
{
    char system_type[32] = "";
    char cpu_model[64] = "";
    char line[128];
    const unique_file file = open_reader(path_cpuinfo);
    while (file && fgets(line, sizeof line, file.get())) {
        const char *value = split(line);
        if (value && strcmp(line, "system type") == 0)
            copy_text(system_type, sizeof system_type, value);
        else if (value && strcmp(line, "cpu model") == 0)
            copy_text(cpu_model, sizeof cpu_model, value);
    }
    if (begins_with(system_type, "Atheros") && begins_with(cpu_model, "MIPS 4Kc"))
        return ar2313;
    for (const family_name &known : system_types)
        if (begins_with(system_type, known.text))
            return known.code;
    return unknown;
}

extern "C" int arch_name_to_type(const char *name, size_t len)
{
    for (const family_name &known : names)
        if (equal_without_case({name, len}, {known.text, strlen(known.text)}))
            return known.code;
    return unknown;
}
