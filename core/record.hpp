#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/message.hpp"
#include "core/session.hpp"
#include "core/trail.hpp"

namespace ztdecode {

// What became of a message.
enum class Decoded {
    decoded,
    unknown,  // no table has its code
    refused,  // it names a class that does not exist: decoded as far as that
};

// What one captured message said, as data: itself, and the messages that it carries. Made from a trail, a
// text and the bytes, which have to outlive it.
//
// Messages carry each other thousands deep where somebody wants them to. Below `deepest` a message is no
// record of its own; what it says counts to the one that carries it.
class Record {
  public:
    static constexpr std::uint32_t deepest = 8;

    // Of the message that was decoded last; makes room from earlier ones serve again.
    void take(const Trail& trail, std::string_view text, const Message& m, Outcome outcome);

    // The messages: 0 is the captured one, carried ones follow their carriers.
    std::size_t size() const noexcept { return parts_.size(); }

    struct Part {
        const NotedMessage* noted = nullptr;
        std::uint32_t carrier = 0;
        std::uint32_t begin = 0;  // of its text in the whole one
        std::uint32_t end = 0;
        std::span<const std::uint8_t> bytes{};
        std::uint32_t first_value = 0;  // in values()
        std::uint32_t values = 0;
        std::uint32_t first_stretch = 0;  // in the trail: all stretches of its text, carried ones included
        std::uint32_t stretches = 0;
        std::uint32_t first_carried = 0;  // in carried()
        std::uint32_t carried = 0;
        std::uint32_t unknown = 0;
        std::uint32_t missing = 0;  // bytes that its text asked for and it does not have
        Decoded decoded = Decoded::decoded;
    };
    const Part& part(std::size_t k) const noexcept { return parts_[k]; }
    std::string_view text(const Part& part) const noexcept {
        return text_.substr(part.begin, part.end - part.begin);
    }
    // Its values, in the order of the text; not those of the messages that it carries.
    std::span<const std::uint32_t> values(const Part& part) const noexcept {
        return {values_.data() + part.first_value, part.values};
    }
    std::span<const Stretch> stretches(const Part& part) const noexcept {
        return {trail_->stretches().data() + part.first_stretch, part.stretches};
    }
    std::span<const std::uint32_t> carried(const Part& part) const noexcept {
        return {carried_.data() + part.first_carried, part.carried};
    }
    // Whether offsets in that message count in the same bytes as in the part.
    bool same_source(const Part& part, const NotedMessage& message) const noexcept;
    const NotedValue& value(std::uint32_t index) const noexcept { return trail_->values()[index]; }
    // Where a value stands in the text of its part. Texts that modules write over each other move: of what is
    // no longer in the part's text nothing is left.
    struct Stand {
        std::uint32_t begin;
        std::uint32_t end;
    };
    static Stand stand(const Part& part, const NotedValue& value) noexcept {
        const auto within = [&](std::uint32_t at) {
            return std::clamp(at, part.begin, part.end) - part.begin;
        };
        return {within(value.begin), within(value.end)};
    }
    const Trail& trail() const noexcept { return *trail_; }
    std::string_view shown(const NotedValue& value) const noexcept {
        return text_.substr(value.begin, value.end - value.begin);
    }

  private:
    void take_single(const Message& m, Outcome outcome);
    void take_messages(const Message& m, Outcome outcome);
    void take_values();
    void take_stretches();

    const Trail* trail_ = nullptr;
    std::string_view text_;
    std::vector<Part> parts_;
    std::vector<std::uint32_t> part_of_;  // of each noted message
    std::vector<std::uint32_t> depth_;
    std::vector<std::uint32_t> values_;
    bool in_order_ = false;  // values_ counts up from 0
    std::vector<std::uint32_t> carried_;
};

// A word as it is called: without the punctuation that its text puts around it.
std::string_view without_punctuation(std::string_view word) noexcept;

}  // namespace ztdecode
