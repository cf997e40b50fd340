// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "board.h"
#include "report.h"
#include "text.h"

#include <libvexa.h>

namespace {

int show_board(const arguments &, output &out)
{
    std::vector<section> page;
    page.push_back(record_section("device", "Device", identity_document(), identity_columns));
    page.push_back({"ports", "Ethernet ports", {port_documents(), port_columns}});
    page.push_back({"radios", "Radios", {radio_documents(), radio_columns}});
    return out.page(visible(map_board_name(board_identify())), page);
}

int boards(const arguments &args, output &out)
{
    return out.show({model_table_documents(args.has("all")), model_table_columns});
}

int model(const arguments &, output &out)
{
    answer found{predicate_documents(), predicate_columns};
    found.side_by_side = true;
    return out.show(found);
}

int accelerometer(const arguments &, output &out)
{
    static constexpr column axes[] = {{"x", "x"}, {"y", "y"}, {"z", "z"}};
    if (!has_accelerometer())
        return out.fail(status_negative, "no accelerometer");
    json_ref status{prepare_accelerometer_status()};
    return status ? out.show({std::move(status), axes}) : out.fail(status_unavailable, "out of memory");
}

constexpr verb verbs[] = {
    {.name = "board",
     .summary = "what the device is, its Ethernet ports and radios",
     .options = {},
     .example = "vexactl board",
     .run = show_board},
    {.name = "boards",
     .summary = "the models that the library knows the hardware of",
     .options = {{{"all", nullptr, "and those that it knows by name only"}}},
     .example = "vexactl boards --all",
     .run = boards},
    {.name = "model",
     .summary = "the questions about the model, those with a yes first",
     .options = {},
     .example = "vexactl model",
     .run = model},
    {.name = "accelerometer",
     .summary = "the acceleration along the three axes, raw",
     .options = {},
     .example = "vexactl accelerometer --format kv",
     .run = accelerometer},
};

} // namespace

const verb_family board_family = verbs;
