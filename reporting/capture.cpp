// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"
#include "core/utf8.h"

namespace {

constexpr char log_tag[] = "crash";
constexpr size_t most_output = 1 << 20; // zero included

} // namespace

extern "C" int json_object_capture_popen(json_t *obj, const char *key, const char *cmd)
{
    if (!cmd)
        return 0;
    const unique_text output{popen_alloc_output(cmd, most_output)};
    if (!output)
        log_err("Failed to capture the output of command %s", cmd);
    const int stored = json_object_set_new(obj, key, json_text(output ? output.get() : ""));
    return output && stored == 0 ? 0 : -1;
}
