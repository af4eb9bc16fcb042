#include "tool/analysis/heard.hpp"

#include <algorithm>

#include "tool/report/times.hpp"

namespace ztdecode::tool {

std::optional<std::int64_t> TraceClock::at(const CapturedMessage& captured) {
    constexpr std::int64_t day = std::int64_t{86400} * 1000000;
    const std::optional<LogTime> time = time_of(captured, unit_);
    if (!time) return std::nullopt;
    std::int64_t delta = last_ ? time->microseconds - *last_ : 0;
    if (time->of_day && delta < -day / 2) delta += day;
    since_first_ += delta;
    last_ = time->microseconds;
    return since_first_;
}

const NotedValue* Values::find(FieldName name) const noexcept {
    for (const std::uint32_t index : record_.values(part_)) {
        const NotedValue& value = record_.value(index);
        if (value.field == name.get()) return &value;
    }
    return nullptr;
}

std::optional<std::int64_t> Values::number(FieldName name) const noexcept {
    const NotedValue* const value = find(name);
    return value == nullptr ? std::nullopt : std::optional(value->meaning.number);
}

std::string_view Values::shown(const NotedValue& value) const noexcept {
    std::string_view words = record_.shown(value);
    if (value.meaning.kind == Kind::word) return without_punctuation(words);
    while (words.starts_with(' ')) words.remove_prefix(1);
    return words;
}

std::string_view Values::shown(FieldName name) const noexcept {
    const NotedValue* const value = find(name);
    return value == nullptr ? std::string_view() : shown(*value);
}

std::string_view Values::shown_of(std::string_view names) const noexcept {
    for (const std::uint32_t index : record_.values(part_)) {
        const NotedValue& value = record_.value(index);
        for (std::string_view rest = names; !rest.empty();) {
            const std::string_view name = rest.substr(0, rest.find(','));
            if (value.name == name) return shown(value);
            rest.remove_prefix(std::min(rest.size(), name.size() + 1));
        }
    }
    return {};
}

bool Values::said_here(FieldName name) const noexcept {
    const NotedValue* const value = find(name);
    return value != nullptr && value->ranges > 0;
}

}  // namespace ztdecode::tool
