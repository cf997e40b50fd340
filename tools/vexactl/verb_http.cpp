// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "configuration.h"
#include "output.h"
#include "progress.h"
#include "text.h"

#include <curl/curl.h>

namespace {

constexpr size_t longest_body = size_t{1} << 20; // that is shown

struct free_response {
    void operator()(curl_simple_response *r) const { curl_simple_response_free(r); }
};
using unique_response = std::unique_ptr<curl_simple_response, free_response>;

struct content {
    std::string bytes;
    json_ref json;
};

// Returns what is wrong with the command line, empty when nothing is.
std::string read_content(const arguments &args, content &out)
{
    const char *json = args.value("json-body"), *file = args.value("body");
    if (json && file)
        return "either --json-body or --body";
    if (args.has("fallback") && !args.has("doh"))
        return "--fallback goes with --doh";
    if (json)
        out.json.reset(json_loads(json, 0, nullptr));
    if (json && !out.json)
        return "--json-body takes an object or an array";
    return file ? load(file, out.bytes) : "";
}

uint32_t flags_of(const arguments &args)
{
    return (args.has("doh") ? VEXA_HTTP_DOH : 0) | (args.has("fallback") ? VEXA_HTTP_DOH_FALLBACK : 0);
}

int show_answer(int result, const curl_simple_response &r, const char *address, output &out)
{
    static constexpr column labels[] = {{"status", "Status", kind::number},
                                        {"received", "Received", kind::bytes},
                                        {"whole", "Whole", kind::on_off},
                                        {"body", "Body"}};
    if (result != CURLE_OK)
        return out.fail(status_unavailable, format("'%s': %s", address, curl_easy_strerror(CURLcode(result))));
    const std::string_view body{static_cast<const char *>(r.body->head(r.body)), r.body->len(r.body)};
    const int shown = out.show({json_ref{object({{"status", number(r.code)},
                                                 {"received", number(int64_t(r.received))},
                                                 {"whole", flag(r.received == body.size())},
                                                 {"body", text(body)}})},
                                labels});
    if (shown != status_ok || r.code / 100 == 2)
        return shown;
    return out.fail(status_negative, format("'%s' answers with status %ld", address, r.code));
}

using request = int (*)(const char *address, uint32_t flags, const content &what, curl_simple_response *r);

int perform(request send, const arguments &args, output &out)
{
    content what;
    const std::string wrong = read_content(args, what);
    if (!wrong.empty())
        return out.fail(status_usage, wrong);
    const char *address = args.operand(0);
    const unique_response r{curl_simple_response_init(longest_body)};
    if (!r)
        out_of_memory();
    int result;
    {
        const progress waiting{std::string{"waiting for "} + visible(address)};
        result = send(address, flags_of(args), what, r.get());
    }
    return show_answer(result, *r, address, out);
}

int http_get(const arguments &args, output &out)
{
    return perform([](const char *address, uint32_t flags, const content &,
                      curl_simple_response *r) { return curl_simple_get(address, flags, nullptr, r); },
                   args, out);
}

int http_post(const arguments &args, output &out)
{
    return perform(
        [](const char *address, uint32_t flags, const content &what, curl_simple_response *r) {
            return what.json ? curl_simple_post_json(address, flags, what.json.get(), r)
                             : curl_simple_post(address, flags, nullptr, what.bytes.data(), what.bytes.size(), r);
        },
        args, out);
}

int http_put(const arguments &args, output &out)
{
    return perform(
        [](const char *address, uint32_t flags, const content &what, curl_simple_response *r) {
            return what.json ? curl_simple_put_json(address, flags, what.json.get(), r)
                             : curl_simple_put(address, flags, nullptr, what.bytes.data(), what.bytes.size(), r);
        },
        args, out);
}

constexpr option doh{"doh", nullptr, "resolve the host's name over HTTPS"};
constexpr option fallback{"fallback", nullptr, "with --doh: and by the system when that fails"};
constexpr option json_body{"json-body", "TEXT", "send this object or array"};
constexpr option body{"body", "FILE", "send the bytes of a file"};

constexpr verb verbs[] = {
    {.name = "http get",
     .operands = "URL",
     .summary = "what a server answers to a GET",
     .options = {{doh, fallback}},
     .example = "vexactl http get https://www.vexa.example/",
     .run = http_get},
    {.name = "http post",
     .operands = "URL",
     .summary = "the same for a POST",
     .options = {{json_body, body, doh, fallback}},
     .example = "vexactl http post https://www.vexa.example/echo --json-body '{\"hello\":true}'",
     .run = http_post},
    {.name = "http put",
     .operands = "URL",
     .summary = "the same for a PUT",
     .options = {{json_body, body, doh, fallback}},
     .example = "vexactl http put https://www.vexa.example/echo --body /tmp/system.cfg",
     .run = http_put},
};

} // namespace

const verb_family http_family = verbs;
