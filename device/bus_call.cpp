// SPDX-License-Identifier: MIT
#include "device/bus_call.h"

#include "core/log.h"
#include "core/paths.h"

#include <cmath>
#include <cstring>
#include <memory>
extern "C" {
#include <libubox/blobmsg.h>
#include <libubox/blobmsg_json.h>
}
#include <libubus.h>

namespace {

constexpr char log_tag[] = "libvexa_power";
constexpr int patience_ms = 3000;
constexpr char method[] = "status";

struct drop_context {
    void operator()(ubus_context *ctx) const noexcept { ubus_free(ctx); }
};
using unique_context = std::unique_ptr<ubus_context, drop_context>;

// Room for one number of the answer at a time.
struct number_text {
    char text[400];
};

// Numbers of JSON have a point in every locale, and are finite.
const char *format_double(void *priv, blob_attr *attr)
{
    if (blobmsg_type(attr) != BLOBMSG_TYPE_DOUBLE)
        return nullptr;
    const double value = blobmsg_get_double(attr);
    if (!std::isfinite(value))
        return "null";
    auto *number = static_cast<number_text *>(priv);
    (void)snprintf(number->text, sizeof number->text, "%f", value);
    if (char *comma = strchr(number->text, ','))
        *comma = '.';
    return number->text;
}

void keep_text(ubus_request *request, int, blob_attr *message)
{
    auto *text = static_cast<unique_text *>(request->priv);
    number_text number;
    text->reset(blobmsg_format_json_with_cb(message, true, format_double, &number, -1));
}

void log_error_reply(const json_t *reply, const char *func)
{
    const json_t *error = json_object_get(reply, "result");
    const json_t *code = json_object_get(error, "code");
    const json_t *message = json_object_get(error, "message");
    if (!error)
        log_err_as(func, "RPC invalid response, lack of error");
    else if (!code)
        log_err_as(func, "RPC invalid response, lack of code");
    else if (!message)
        log_err_as(func, "RPC invalid response, lack of message");
    else
        log_err_as(func, "Error code %d, message: %s", int(json_integer_value(code)),
                   json_is_string(message) ? json_string_value(message) : "");
}

unique_text call_status(const char *object, const char *func)
{
    const unique_context ctx{ubus_connect(path_bus_socket)};
    uint32_t id = 0;
    if (!ctx || ubus_lookup_id(ctx.get(), object, &id) != 0 || id == 0) {
        log_err_as(func, "Failed to find ubus object [%s]", object);
        return nullptr;
    }
    unique_text text;
    const int status = ubus_invoke(ctx.get(), id, method, nullptr, keep_text, &text, patience_ms);
    if (status != 0) {
        log_err_as(func, "Failed to invoke ubus object [%s], ret %d, %s", object, status, ubus_strerror(status));
        return nullptr;
    }
    return text;
}

} // namespace

json_ref ask_status(const char *object, const char *member, const char *func)
{
    const unique_text text = call_status(object, func);
    if (!text)
        return nullptr;
    json_error_t error;
    json_ref reply{json_loads(text.get(), 0, &error)};
    if (!reply) {
        log_err_as(func, "Wrong %s json on line %d: %s", object, error.line, error.text);
        return nullptr;
    }
    if (!json_object_get(reply.get(), member)) {
        log_error_reply(reply.get(), func);
        return nullptr;
    }
    return reply;
}
