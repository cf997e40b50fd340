// SPDX-License-Identifier: MIT
#pragma once

#include "colour.h"
#include "document.h"
#include "plot.h"
#include "status.h"

#include <span>
#include <string>
#include <vector>

// How people see a member of an object.
enum class kind {
    text,   // wraps when the line is too long
    number, // to the right
    bytes,  // a number in B, kB, MB ...
    on_off, // a boolean: mark and word
    change, // "added", "removed" or "changed": "+", "-" or "~", which also colours the row
    bar,    // a number up to 100, drawn and written
};

struct column {
    const char *key;   // member of the object
    const char *title; // heading of a list, label of a record
    kind as = kind::text;
    bool wraps = false; // gives way first when a list is too wide
};

// What a verb answers, from which every format is made.
struct answer {
    json_ref document;               // list of objects, object, or one value; shown by --json as it is
    std::span<const column> columns; // none: every member under its own name
    const char *when_empty = "";     // what people read instead of a list without rows
    bool pairs = false;              // rows {key, value}: variables of a shell
    bool side_by_side = false;       // short rows next to each other; a record in two columns
};

struct section {
    const char *key; // of its document in the page's document
    std::string title;
    answer body;
    plot picture{}; // of the body, on a page that has pictures
};

bool has_no_rows(const section &s); // people do not see it then

enum class output_format { table, json, kv };

class output {
public:
    output(output_format format, const palette &colours) : format_{format}, colours_{colours} {}

    // Each returns status_ok, or status_unavailable when the answer could not be written.
    int show(const answer &what);
    int page(const std::string &title, const std::vector<section> &sections);

    // Writes one line on standard error, an object {error, status} in JSON. Returns the status.
    int fail(int status, const std::string &message);

    bool for_people() const { return format_ == output_format::table; }
    std::string rendered(const answer &what) const { return for_people(what, 0); }
    int write(const std::string &text);
    int flush();
    int finish(); // nothing may be written after it

private:
    void note_write_error();
    std::string for_people(const answer &what, size_t indent) const;
    std::string record(const answer &what, size_t indent) const;
    std::string grid(const answer &what, size_t indent) const;
    std::string rows(const answer &what, size_t indent) const;

    output_format format_;
    palette colours_;
    int write_error_ = 0; // errno of the first failure
};
