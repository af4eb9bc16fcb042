#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/record.hpp"
#include "tool/report/report.hpp"
#include "tool/select/regex.hpp"
#include "tool/select/where.hpp"

namespace ztdecode::tool {

// Which messages are asked for, and how many of them are shown. Every condition has to hold.
struct SelectionOptions {
    static constexpr std::size_t all = std::numeric_limits<std::size_t>::max();

    std::vector<std::string> where;     // SQL expressions
    std::vector<std::string> grep;      // regular expressions, for the text
    std::vector<std::string> links;     // one of them
    std::vector<std::string> messages;  // one of them
    bool from_system = false;
    bool to_system = false;
    bool unknown = false;  // something in it that no table knows
    bool missing = false;  // bytes that it lacks
    bool refused = false;  // trace lines and messages that cannot be decoded
    bool invert = false;
    bool count = false;  // show how many there are, nothing else
    // Messages of context.
    std::size_t before = 0;
    std::size_t after = 0;
    std::size_t around = 0;  // where neither of them says more
    std::size_t most = all;

    // Whether anything is asked at all.
    bool any() const noexcept;
    // A condition on what a message says: a line that cannot be decoded says nothing.
    bool of_messages() const noexcept;
};

// Conditions that are fulfilled by one and the same message, captured or carried.
class Selection {
  public:
    // `file` is what expressions call the file.
    Selection(std::string_view file, const SelectionOptions& options);

    // What has to be noted to tell, if anything.
    std::optional<Trail::What> notes() const noexcept;
    // Whether the message, or one that it carries, is asked for; `record` is made of what was said.
    bool holds(const Said& said, Record& record);

  private:
    bool holds(const Said& said, const Record& record, std::size_t k);
    bool whole_holds(const Said& said);
    bool header_holds(const NotedMessage& noted) const;
    bool text_holds(std::string_view text);

    const SelectionOptions& options_;
    std::vector<std::unique_ptr<const re2::RE2>> grep_;
    std::optional<Where> where_;
    Text uncoloured_;
};

// A selection that cannot be made: which option, and why, with the place in its value, where there is one.
class WrongSelection : public std::runtime_error {
  public:
    WrongSelection(std::string_view option, const std::string& why, std::string value = {},
                   std::optional<std::size_t> place = std::nullopt)
        : std::runtime_error(std::string(option) + ": " + why), value_(std::move(value)), place_(place) {}

    // The line of the value that is wrong and a caret below it, a newline behind each; or nothing.
    std::string pointer() const;

  private:
    std::string value_;
    std::optional<std::size_t> place_;
};

// Before any file is read. Throws WrongSelection; gives what is odd about it.
std::vector<std::string> check_selection(const SelectionOptions& options);

}  // namespace ztdecode::tool
