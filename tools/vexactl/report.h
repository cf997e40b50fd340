// SPDX-License-Identifier: MIT
#pragma once

#include "configuration.h"
#include "output.h"

// What the sections of the report are made from.
struct report_source {
    const char *path;
    bool readable;          // the configuration file; all below is empty when it is not
    std::string_view bytes; // of the file
    cfg_entry *cfg;
    const key_index &keys; // of cfg
};

// a record in two columns
section record_section(const char *key, const char *title, json_t *document, std::span<const column> columns);

// Each appends the sections of one family; people do not see those without an answer.
void report_config(const report_source &from, std::vector<section> &page);
void report_crash(const report_source &from, std::vector<section> &page);
void report_device(const report_source &from, std::vector<section> &page);
void report_interface(const report_source &from, std::vector<section> &page);
void report_inventory(const report_source &from, std::vector<section> &page);
void report_power(const report_source &from, std::vector<section> &page);
void report_wireless(const report_source &from, std::vector<section> &page);
