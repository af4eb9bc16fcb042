#pragma once

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/trail.hpp"
#include "support/support.hpp"

namespace ztdecode::testing {

// Messages decoded one after the other in a session with a trail, and in one without, where their texts have
// to be the same. What is said is said of the last one.
class Observed {
  public:
    explicit Observed(std::uint32_t direction) : direction_(direction) { session_.session().trail = &trail_; }
    Observed(std::uint32_t direction, std::string_view hex) : Observed(direction) { decode(hex); }

    void decode(std::string_view hex) {
        text_ = session_.decode(hex, direction_);
        EXPECT_EQ(text_, plain_.decode(hex, direction_)) << hex;
        expect_whole();
    }

    const std::string& text() const { return text_; }
    const Trail& trail() const { return trail_; }

    // The names of the messages from the outermost to the inmost, a blank between them.
    std::string names() const {
        std::string result;
        for (const NotedMessage& m : trail_.messages()) {
            if (&m != trail_.messages().data()) result += ' ';
            result += m.name;
        }
        return result;
    }

    // "name = text, bytes first-last"; "none" where it has no bytes.
    std::vector<std::string> values() const {
        std::vector<std::string> result;
        for (const NotedValue& v : trail_.values()) {
            result.push_back(std::string(v.name) + " = " + text_.substr(v.begin, v.end - v.begin) + ", " +
                             shown(trail_.bytes_of(v)));
        }
        return result;
    }

    // The bytes that chose the words that begin with these.
    std::string bytes_of_words(std::string_view words) const {
        for (const Stretch& s : trail_.stretches()) {
            const bool same = text_.substr(s.begin, s.end - s.begin).starts_with(words);
            if (same && s.value == Stretch::no_value) return shown(trail_.bytes_of(s));
        }
        return "no such words";
    }

    const NotedValue& value(std::string_view name) const {
        static const NotedValue none;
        for (const NotedValue& v : trail_.values()) {
            if (v.name == name) return v;
        }
        ADD_FAILURE() << "no value " << name;
        return none;
    }
    Sensitivity sensitivity(std::string_view name) const {
        const NotedValue& v = value(name);
        return v.field != nullptr ? v.field->sensitivity : Sensitivity::none;
    }

  private:
    // The stretches are the text, one behind the other.
    void expect_whole() const {
        std::uint32_t at = 0;
        for (const Stretch& s : trail_.stretches()) {
            EXPECT_EQ(s.begin, at) << text_;
            EXPECT_LT(s.begin, s.end) << text_;
            at = s.end;
        }
        EXPECT_EQ(at, text_.size()) << text_;
    }

    static std::string shown(std::span<const ByteRange> ranges) {
        std::string result;
        for (const ByteRange& r : ranges) {
            if (!result.empty()) result += ' ';
            result += std::to_string(r.first) + "-" + std::to_string(r.last);
        }
        return result.empty() ? "none" : result;
    }

    std::uint32_t direction_;
    TestSession session_;
    TestSession plain_;
    Trail trail_;
    std::string text_;
};

using Values = std::vector<std::string>;

}  // namespace ztdecode::testing
