// SPDX-License-Identifier: MIT
#pragma once

#include "verbs.h"

#include <string>
#include <string_view>
#include <vector>

// A command line, checked against the verb table.
class arguments {
public:
    // Returns what is wrong with the command line, empty when nothing is.
    std::string parse(int argc, const char *const *argv);

    // nullptr while only a family or nothing was named
    const verb *command() const { return command_; }
    const std::string &family() const { return family_; }

    size_t count() const { return operands_.size(); }
    const char *operand(size_t i) const { return i < operands_.size() ? operands_[i] : nullptr; }

    // of the verb or common, written with its dashes; nullptr when there is none
    const option *find_option(std::string_view word) const;

    size_t times(std::string_view option) const;
    bool has(std::string_view option) const { return times(option) > 0; }
    const char *value(std::string_view option, const char *otherwise = nullptr) const; // the last one given

private:
    struct given {
        const option *what;
        const char *value;
    };
    using word_list = const char *const *;

    std::string take_word(const char *word);
    std::string take_option(word_list &next, word_list end);
    std::string take_letters(const char *letters);
    std::string take_value(const option &what, const char *value);
    std::string check_operands() const;
    std::string unknown_option(std::string_view name) const;

    const verb *command_ = nullptr;
    std::string family_; // the first word of a verb of two
    std::vector<const char *> operands_;
    std::vector<given> given_;
};

// the words that name a verb of a family, or without one the first words of all
std::vector<std::string> verb_words(const std::string &family);

// the words of a list such as "table|json|kv", or of a usage line
std::vector<std::string> split(std::string_view text, char separator);
