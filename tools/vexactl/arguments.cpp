// SPDX-License-Identifier: MIT
#include "arguments.h"

#include "suggest.h"
#include "text.h"

#include <algorithm>
#include <cstring>

namespace {

std::string quoted(std::string_view word)
{
    return "'" + visible(word) + "'";
}

template <typename Visit>
void each_verb(Visit visit)
{
    for (const verb_family &family : verb_table())
        for (const verb &v : family)
            visit(v);
}

const verb *find_verb(const std::string &name)
{
    const verb *found = nullptr;
    each_verb([&](const verb &v) { found = name == v.name ? &v : found; });
    return found;
}

bool is_family(const std::string &word)
{
    bool found = false;
    each_verb([&](const verb &v) { found = found || std::string{v.name}.rfind(word + " ", 0) == 0; });
    return found;
}

} // namespace

std::vector<std::string> verb_words(const std::string &family)
{
    std::vector<std::string> words;
    each_verb([&](const verb &v) {
        if (!v.summary)
            return;
        const std::vector<std::string> name = split(v.name, ' ');
        if (family.empty())
            words.push_back(name[0]);
        else if (name.size() > 1 && name[0] == family)
            words.push_back(name[1]);
    });
    return words;
}

std::vector<std::string> split(std::string_view text, char separator)
{
    std::vector<std::string> words;
    while (!text.empty()) {
        const size_t end = std::min(text.find(separator), text.size());
        if (end > 0)
            words.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return words;
}

std::string arguments::parse(int argc, const char *const *argv)
{
    word_list next = argv + (argc > 0), end = argv + argc;
    bool options_end = false;
    while (next < end) {
        std::string wrong;
        if (!options_end && strcmp(*next, "--") == 0) {
            options_end = true;
            next++;
        } else if (!options_end && next[0][0] == '-' && next[0][1]) {
            wrong = take_option(next, end);
        } else {
            wrong = take_word(*next++);
        }
        if (!wrong.empty())
            return wrong;
    }
    return has("help") || has("version") ? "" : check_operands();
}

std::string arguments::take_word(const char *word)
{
    if (command_) {
        operands_.push_back(word);
        return "";
    }
    const std::string name = family_.empty() ? word : family_ + " " + word;
    command_ = find_verb(name);
    if (command_)
        return "";
    if (family_.empty() && is_family(word)) {
        family_ = word;
        return "";
    }
    return (family_.empty() ? "no command " : family_ + ": no command ") + quoted(word) +
           did_you_mean(word, verb_words(family_), "");
}

std::string arguments::take_option(word_list &next, word_list end)
{
    const std::string_view word = *next++;
    if (word[1] != '-')
        return take_letters(word.data() + 1);
    const size_t equals = word.find('=');
    const option *what = find_option(word.substr(0, equals));
    if (!what)
        return unknown_option(word.substr(0, equals));
    if (equals != word.npos)
        return what->value ? take_value(*what, word.data() + equals + 1)
                           : "option --" + std::string{what->name} + " takes no value";
    if (what->value && next == end)
        return "option --" + std::string{what->name} + " wants a value (" + what->value + ")";
    return take_value(*what, what->value ? *next++ : nullptr);
}

std::string arguments::take_letters(const char *letters)
{
    for (; *letters; letters++) {
        const auto options = common_options();
        const auto found =
            std::find_if(options.begin(), options.end(), [&](const option &o) { return o.letter == *letters; });
        if (found == options.end())
            return "no option " + quoted("-" + std::string{first_character(letters).bytes});
        given_.push_back({&*found, nullptr});
    }
    return "";
}

std::string arguments::take_value(const option &what, const char *value)
{
    if (what.choices) {
        const std::vector<std::string> choices = split(what.choices, '|');
        if (std::find(choices.begin(), choices.end(), value) == choices.end())
            return "option --" + std::string{what.name} + ": " + quoted(value) + " is none of " + joined(choices) +
                   did_you_mean(value, choices, "");
    }
    given_.push_back({&what, value});
    return "";
}

std::string arguments::check_operands() const
{
    if (!command_)
        return family_.empty() ? "no command given" : family_ + ": which one? " + joined(verb_words(family_));
    const std::vector<std::string> wanted = split(command_->operands, ' ');
    for (size_t i = operands_.size(); i < wanted.size(); i++)
        if (wanted[i][0] != '[')
            return std::string{command_->name} + ": " + wanted[i] + " is missing";
    const bool any_number = !wanted.empty() && wanted.back().find("...") != std::string::npos;
    if (operands_.size() > wanted.size() && !any_number)
        return std::string{command_->name} + ": " + quoted(operands_[wanted.size()]) + " is one argument too many";
    return "";
}

const option *arguments::find_option(std::string_view word) const
{
    if (word.size() < 3 || word[0] != '-' || word[1] != '-')
        return nullptr;
    const std::string_view name = word.substr(2);
    const auto of_that_name = [&](const option &o) { return o.name && name == o.name; };
    if (command_) {
        const auto own = std::find_if(command_->options.begin(), command_->options.end(), of_that_name);
        if (own != command_->options.end())
            return &*own;
    }
    const auto options = common_options();
    const auto found = std::find_if(options.begin(), options.end(), of_that_name);
    return found == options.end() ? nullptr : &*found;
}

std::string arguments::unknown_option(std::string_view name) const
{
    std::vector<std::string> names;
    for (const option &o : common_options())
        names.emplace_back(o.name);
    if (command_)
        for (const option &o : command_->options)
            if (o.name)
                names.emplace_back(o.name);
    return (command_ ? std::string{command_->name} + ": no option " : "no option ") + quoted(name) +
           did_you_mean(name.substr(2), names, "--");
}

size_t arguments::times(std::string_view option) const
{
    return static_cast<size_t>(
        std::count_if(given_.begin(), given_.end(), [&](const given &g) { return option == g.what->name; }));
}

const char *arguments::value(std::string_view option, const char *otherwise) const
{
    const auto last =
        std::find_if(given_.rbegin(), given_.rend(), [&](const given &g) { return option == g.what->name; });
    return last == given_.rend() ? otherwise : last->value;
}
