#include "tool/input/prefix_pattern.hpp"

#include <re2/re2.h>

#include <algorithm>
#include <array>
#include <vector>

#include "core/message.hpp"

namespace ztdecode::tool {

namespace {

struct Way {
    std::string_view word;
    std::uint32_t direction;
};
constexpr auto ways = std::to_array<Way>({{"s", from_dhs},
                                          {"from", from_dhs},
                                          {"out", from_dhs},
                                          {"tx", from_dhs},
                                          {">", from_dhs},
                                          {"r", to_dhs},
                                          {"to", to_dhs},
                                          {"in", to_dhs},
                                          {"rx", to_dhs},
                                          {"<", to_dhs}});

std::optional<std::uint32_t> direction_of(std::string_view word) {
    for (const Way& way : ways) {
        const bool same =
            std::equal(word.begin(), word.end(), way.word.begin(), way.word.end(),
                       [](char a, char b) { return a == b || (a >= 'A' && a <= 'Z' && (a | 0x20) == b); });
        if (same) return way.direction;
    }
    return std::nullopt;
}

RE2::Options quiet() {
    RE2::Options options;
    options.set_log_errors(false);
    options.set_encoding(RE2::Options::EncodingLatin1);
    return options;
}

class PrefixPattern final : public PrefixFinder {
  public:
    explicit PrefixPattern(const std::string& expression)
        : expression_(expression, quiet()),
          time_(group("time")),
          terminal_(group("terminal")),
          direction_(group("direction")) {}

    std::string error() const { return expression_.ok() ? std::string() : expression_.error(); }

    bool find(std::string_view line, LinePrefix& prefix) const override {
        std::vector<re2::StringPiece> groups(1 +
                                             static_cast<std::size_t>(expression_.NumberOfCapturingGroups()));
        const re2::StringPiece words(line.data(), line.size());
        if (!expression_.Match(words, 0, line.size(), RE2::ANCHOR_START, groups.data(),
                               static_cast<int>(groups.size())))
            return false;
        const auto words_of = [&](int k) {
            if (k <= 0) return std::string_view();
            const re2::StringPiece& group = groups[static_cast<std::size_t>(k)];
            return group.data() == nullptr ? std::string_view()
                                           : std::string_view(group.data(), group.size());
        };
        prefix.length = groups[0].size();
        prefix.text = line.substr(0, prefix.length);
        while (!prefix.text.empty() && prefix.text.back() == ' ') prefix.text.remove_suffix(1);
        while (prefix.length < line.size() && (line[prefix.length] == ' ' || line[prefix.length] == '\t'))
            ++prefix.length;
        prefix.time = words_of(time_);
        prefix.terminal = words_of(terminal_);
        prefix.direction = direction_of(words_of(direction_));
        return prefix.length > 0;
    }

  private:
    int group(const char* name) const {
        const auto& groups = expression_.NamedCapturingGroups();
        const auto found = groups.find(name);
        return found == groups.end() ? 0 : found->second;
    }

    RE2 expression_;
    int time_;
    int terminal_;
    int direction_;
};

}  // namespace

std::shared_ptr<const PrefixFinder> prefix_pattern(const std::string& expression, std::string& why) {
    auto pattern = std::make_shared<PrefixPattern>(expression);
    why = pattern->error();
    if (!why.empty()) return nullptr;
    return pattern;
}

}  // namespace ztdecode::tool
