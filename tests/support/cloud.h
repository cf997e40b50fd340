// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/device.h"
#include "tests/support/service.h"

#include <jansson.h>
#include <memory>

// The services that the device reports to, and what arrived there.
class cloud : public service {
public:
    cloud() : service{{VEXA_CLOUD}} {}

    // The requests so far, in their order: a JSON array.
    std::shared_ptr<json_t> journal() const
    {
        std::string text = the_device.text("/tmp/vexa-cloud/journal");
        for (size_t at = text.find('\n'); at != text.npos && at + 1 < text.size(); at = text.find('\n', at + 1))
            text[at] = ',';
        return {json_loads(("[" + text + "]").c_str(), JSON_ALLOW_NUL, nullptr), json_decref};
    }

    size_t requests() const { return json_array_size(journal().get()); }

    // Of the last request: "method", "host", "path", "body", or a header after "headers".
    std::string last(const char *key) const { return string(json_object_get(newest(*journal()), key)); }
    std::string last_header(const char *name) const
    {
        return string(json_object_get(json_object_get(newest(*journal()), "headers"), name));
    }

private:
    static json_t *newest(const json_t &all) { return json_array_get(&all, json_array_size(&all) - 1); }
    static std::string string(const json_t *value)
    {
        return value ? std::string{json_string_value(value), json_string_length(value)} : "(none)";
    }
};
