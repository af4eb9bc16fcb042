#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/fields.hpp"
#include "core/record.hpp"
#include "core/text.hpp"
#include "decode/trace_lines.hpp"

namespace ztdecode::tool {

// Fields that are of no account.
class IgnoredFields {
  public:
    // Clocks and counters: two traces of the same never agree on those.
    static std::span<const std::string_view> usual() noexcept;

    // False when no field is called so.
    bool add(std::string_view name) noexcept;
    void add_usual() noexcept;
    bool has(const Field& field) const noexcept { return ignored_[index(field)]; }
    // The hour of a date; elsewhere the field is a height.
    bool has_hours() const noexcept { return hours_; }

    static std::size_t index(const Field& field) noexcept {
        return static_cast<std::size_t>(&field - std::begin(all_fields));
    }

  private:
    std::bitset<std::size(all_fields)> ignored_;
    bool hours_ = false;
};

// A piece of what a message said: which message it is or which one it carries, a value, the words around all
// values, or what is wrong.
struct Term {
    enum class Is : std::uint8_t { message, value, words, missing, bytes, refusal };

    Is is = Is::message;
    std::uint8_t depth = 0;  // of the message that it belongs to; 0: the captured one
    std::string_view name;   // of a message: of its link
    const Field* field = nullptr;
    Meaning meaning{};
    std::string_view words;   // as they stand in the text; of a message its name
    std::string_view of;      // the name of the message that it belongs to
    bool incomplete = false;  // a byte of it is missing
    std::string_view whole;   // all of it: two terms that are the same in this say the same

    // By itself, as in a record. `room` holds it where it is made.
    std::string_view value(std::string& room) const;
};

// What a message said, and where.
struct Statement {
    // In words, a value's place in which is taken by this character.
    static constexpr char value_mark = '\0';

    std::string_view meaning;  // the same bytes mean the same
    std::string_view text;
    const std::string* file = nullptr;
    std::uint64_t line = 0;

    std::uint32_t direction() const noexcept { return static_cast<std::uint8_t>(meaning.front()); }
    Decoded decoded() const noexcept { return static_cast<Decoded>(meaning[1]); }
    bool refused_line() const noexcept;
};

// Goes through the terms of a statement, the message itself first.
class Terms {
  public:
    explicit Terms(const Statement& statement) noexcept : rest_(statement.meaning.substr(2)) {}
    bool next(Term& term) noexcept;

  private:
    std::string_view rest_;
    std::array<std::string_view, Record::deepest> names_;
};

// Statements in a row, with the room that they need.
class Statements {
  public:
    void clear() noexcept;
    void add(const std::string& file, const CapturedMessage& captured, const Record& record,
             const IgnoredFields& ignored);
    // A line that cannot be decoded says why.
    void add(const std::string& file, std::uint64_t line, const Refusal& refusal);

    std::size_t size() const noexcept { return places_.size(); }
    Statement operator[](std::size_t k) const noexcept;

  private:
    struct Place {
        const std::string* file;
        std::uint64_t line;
        std::size_t begin;
        std::size_t text;
    };
    void add_part(const Record& record, const Record::Part& part, std::uint8_t depth,
                  const IgnoredFields& ignored);

    void add_words(const Record& record);

    std::vector<Place> places_;
    Text meanings_;
};

}  // namespace ztdecode::tool
