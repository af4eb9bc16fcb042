#include "tool/select/selection.hpp"

#include <algorithm>
#include <span>

#include "core/message.hpp"
#include "tool/output/control.hpp"
#include "tool/select/names.hpp"

namespace ztdecode::tool {

namespace {

bool one_of(const std::vector<std::string>& names, std::string_view name) {
    return names.empty() || std::ranges::find(names, name) != names.end();
}

void check_names(std::string_view option, std::string_view what, const std::vector<std::string>& words,
                 std::span<const std::string_view> names) {
    for (const std::string& word : words) {
        if (std::ranges::find(names, word) != names.end()) continue;
        throw WrongSelection(option,
                             "no " + std::string(what) + " is called " + word + did_you_mean(word, names));
    }
}

}  // namespace

bool SelectionOptions::of_messages() const noexcept {
    return !where.empty() || !grep.empty() || !links.empty() || !messages.empty() || from_system ||
           to_system || unknown || missing;
}

bool SelectionOptions::any() const noexcept {
    return of_messages() || refused || invert || count || before > 0 || after > 0 || around > 0 ||
           most != all;
}

Selection::Selection(std::string_view file, const SelectionOptions& options) : options_(options) {
    for (const std::string& words : options.grep) {
        std::string why;
        grep_.push_back(compile_regex(words, why));
        if (grep_.back() == nullptr) throw WrongSelection("--grep", why);
    }
    if (!options.where.empty()) where_.emplace(file, options.where);
}

std::optional<Trail::What> Selection::notes() const noexcept {
    if (options_.unknown || options_.missing) return Trail::What::values;
    if (where_) return where_->notes();
    const bool of_whole_message =
        options_.links.empty() && options_.messages.empty() && !options_.from_system && !options_.to_system;
    return of_whole_message ? std::nullopt : std::optional(Trail::What::messages);
}

bool Selection::holds(const Said& said, Record& record) {
    if (!notes()) return whole_holds(said);
    const auto& messages = said.trail.messages();
    if (messages.size() == 1 && !header_holds(messages.front())) return false;
    record.take(said.trail, said.text, *said.captured.message, said.outcome);
    for (std::size_t part = 0; part < record.size(); ++part) {
        if (holds(said, record, part)) return true;
    }
    return false;
}

// The text of a message has those of the messages that it carries.
bool Selection::whole_holds(const Said& said) {
    if (options_.refused && said.outcome != Outcome::unknown_class) return false;
    return grep_.empty() || text_holds(said.text);
}

bool Selection::header_holds(const NotedMessage& noted) const {
    const bool from_system = noted.direction == from_dhs;
    if (options_.from_system && !from_system) return false;
    if (options_.to_system && from_system) return false;
    return one_of(options_.links, noted.link) && one_of(options_.messages, noted.name);
}

// What costs least decides first.
bool Selection::holds(const Said& said, const Record& record, std::size_t k) {
    const Record::Part& part = record.part(k);
    if (!header_holds(*part.noted)) return false;
    if (options_.unknown && part.unknown == 0 && part.decoded != Decoded::unknown) return false;
    if (options_.missing && part.missing == 0) return false;
    if (options_.refused && part.decoded != Decoded::refused) return false;
    if (!grep_.empty() && !text_holds(record.text(part))) return false;
    return !where_ || where_->holds(said.captured, record, k);
}

// Colours, which begin with a zero, are no part of it.
bool Selection::text_holds(std::string_view text) {
    if (text.find('\0') != std::string_view::npos) {
        uncoloured_.clear();
        add_uncoloured(text, uncoloured_);
        text = uncoloured_.view();
    }
    const re2::StringPiece words(text.data(), text.size());
    return std::ranges::all_of(grep_, [words](const auto& regex) {
        return regex->Match(words, 0, words.size(), re2::RE2::UNANCHORED, nullptr, 0);
    });
}

std::string WrongSelection::pointer() const {
    constexpr std::size_t most_before = 60;
    constexpr std::size_t most_behind = 40;
    if (!place_) return {};
    const std::size_t place = std::min(*place_, value_.size());
    const std::size_t line = place == 0 ? 0 : value_.rfind('\n', place - 1) + 1;
    const std::size_t line_end = std::min(value_.find('\n', place), value_.size());
    const std::size_t begin = place - std::min(place - line, most_before);
    const std::size_t end = place + std::min(line_end - place, most_behind);
    Text shown;
    shown.add("    ");
    add_escaped_name(std::string_view(value_).substr(begin, place - begin), shown);
    // A column is a character: of its bytes one does not look like 10xxxxxx.
    const auto columns = std::ranges::count_if(
        shown.view(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
    add_escaped_name(std::string_view(value_).substr(place, end - place), shown);
    return std::string(shown.view()) + "\n" + std::string(static_cast<std::size_t>(columns), ' ') + "^\n";
}

std::vector<std::string> check_selection(const SelectionOptions& options) {
    if (options.from_system && options.to_system) {
        throw WrongSelection("--to-system",
                             "no message goes both ways, and --from-system is asked for as well");
    }
    check_names("--link", "link", options.links, link_names());
    check_names("--message", "message", options.messages, message_names());
    for (const std::string& words : options.grep) {
        std::string why;
        if (compile_regex(words, why) == nullptr) throw WrongSelection("--grep", why);
    }
    std::vector<std::string> odd;
    for (const std::string& expression : options.where) {
        try {
            for (const std::string& why : check_expression(expression)) odd.push_back("--where: " + why);
        } catch (const WrongExpression& wrong) {
            throw WrongSelection("--where", wrong.what(), expression, wrong.place());
        }
    }
    return odd;
}

}  // namespace ztdecode::tool
