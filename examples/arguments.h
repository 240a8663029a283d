#pragma once

/// @file
/// The command line of a program: options at any place, "--" in front of what only looks like one,
/// --help and --version.

#include "failure.h"
#include "nearest.h"

#include <pdf/version.h>

#include <charconv>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace Program {

/// An option: "--pages", what its value is called ("LIST"; empty where it takes none), what it
/// does.
struct Option {
    std::string name;
    std::string value;
    std::string does;
};

/// How a program is called.
struct Usage {
    std::string line;  ///< its name and its arguments: "rewrite IN OUT"
    std::string about; ///< what it does, in a sentence
    std::vector<Option> options = {};
};

/// What a program was called with, options apart.
class Arguments {
public:
    Arguments(int count, char** values, Usage usage) : usage_(std::move(usage)) {
        bool plain = false; // whether "--" was met
        for (int index = 1; index < count; ++index) {
            const std::string_view text = values[index];
            if (plain || text.size() < 2 || text[0] != '-') {
                arguments_.push_back(text);
            } else if (text == "--") {
                plain = true;
            } else if (takeOption(text, index + 1 < count ? values[index + 1] : nullptr)) {
                ++index;
            }
        }
    }

    /// Whether the program can go on: so many arguments, no wrong option, and neither --help nor
    /// --version asked for.
    [[nodiscard]] bool are(std::size_t count) const { return are(count, count); }
    [[nodiscard]] bool are(std::size_t least, std::size_t most) const {
        return fault_.empty() && !has("--help") && !has("--version") && size() >= least &&
               size() <= most;
    }

    [[nodiscard]] std::size_t size() const { return arguments_.size(); }
    std::string_view operator[](std::size_t index) const { return arguments_[index]; }

    /// Whether an option was given.
    [[nodiscard]] bool has(std::string_view option) const { return value(option).has_value(); }
    /// The value of an option, the last one where it was given more than once.
    [[nodiscard]] std::optional<std::string_view> value(std::string_view option) const {
        const auto found =
            std::ranges::find(options_.rbegin(), options_.rend(), option, &Given::first);
        if (found == options_.rend()) return std::nullopt;
        return found->second;
    }

    /// What a program that cannot go on says: what --help or --version asks for, or why it is no
    /// use. Gives the exit status.
    [[nodiscard]] int refuse(std::string_view why = {}) const {
        if (has("--help")) return help();
        const std::string name = usage_.line.substr(0, usage_.line.find(' '));
        if (has("--version")) {
            std::printf("%s (Files PDF) %s\n", name.c_str(),
                        Libraries::Files::PDF::libraryVersion());
            return finishOutput();
        }
        std::string reason = "wrong number of arguments: " + std::to_string(size());
        if (!why.empty()) reason = why;
        if (!fault_.empty()) reason = fault_;
        std::fprintf(stderr, "%s: %s\nusage: %s\n", name.c_str(), reason.c_str(), line().c_str());
        return misused;
    }

private:
    using Given = std::pair<std::string, std::string_view>;

    /// Takes an option in; true where `next` was its value.
    bool takeOption(std::string_view text, const char* next) {
        const std::size_t equals = text.starts_with("--") ? text.find('=') : text.npos;
        const std::string name(text.substr(0, equals));
        const auto known = std::ranges::find(usage_.options, name, &Option::name);
        const bool general = name == "--help" || name == "--version";
        const bool wantsValue = known != usage_.options.end() && !known->value.empty();
        if (known == usage_.options.end() && !general) {
            fault_ = "there is no option " + name + near(name);
        } else if (!wantsValue) {
            if (equals != text.npos) fault_ = name + " takes no value";
            options_.emplace_back(name, "");
        } else if (equals != text.npos) {
            options_.emplace_back(name, text.substr(equals + 1));
        } else if (next == nullptr) {
            fault_ = name + " takes a value";
        } else {
            options_.emplace_back(name, next);
            return true;
        }
        return false;
    }

    [[nodiscard]] std::string near(const std::string& name) const {
        std::vector<std::string> names{"--help", "--version"};
        for (const Option& option : usage_.options)
            names.push_back(option.name);
        const std::string found = joined(nearest(name, names));
        return found.empty() ? "" : "; near to it: " + found;
    }

    [[nodiscard]] std::string line() const {
        const std::size_t end = std::min(usage_.line.find(' '), usage_.line.size());
        const std::string options = usage_.options.empty() ? "" : " [OPTION]...";
        return usage_.line.substr(0, end) + options + usage_.line.substr(end);
    }

    [[nodiscard]] int help() const {
        std::printf("usage: %s\n%s\n\n", line().c_str(), usage_.about.c_str());
        std::vector<Option> options = usage_.options;
        options.push_back({"--help", "", "prints this"});
        options.push_back({"--version", "", "prints the version of Files PDF"});
        for (const Option& option : options) {
            const std::string left = option.name + (option.value.empty() ? "" : " ") + option.value;
            std::printf("  %-22s  %s\n", left.c_str(), option.does.c_str());
        }
        std::printf("\nOptions stand at any place; behind -- there are none. Exit status: 0 done, "
                    "1 failed,\n"
                    "2 wrong usage, 3 the result would be no sound document.\n");
        return finishOutput();
    }

    Usage usage_;
    std::vector<std::string_view> arguments_;
    std::vector<Given> options_;
    std::string fault_;
};

/// The decimal number that `text` is, or nothing where it is none or does not fit.
template <class Number>
std::optional<Number> number(std::string_view text) {
    Number result{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, result);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return result;
}

} // namespace Program
