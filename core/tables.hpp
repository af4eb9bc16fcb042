#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "core/decoding.hpp"

// Tables are written as rows {code, ...} in ascending order, with what stands for every other code behind
// them, and looked up directly: the compiler lays an index of all codes beside the rows. A table whose rows
// are out of order, double or too many does not compile.

namespace ztdecode {

namespace table_detail {

// Named so that the compiler's complaint about calling it says what is wrong.
void a_table_has_its_codes_ascending_once_and_below_256();

}  // namespace table_detail

// Rows and where each code's stands.
template <class Row, std::size_t N>
class Table {
  public:
    consteval explicit Table(const Row (&rows)[N]) : rows_(std::to_array(rows)) {  // NOLINT: a braced list
        static_assert(N < no_row);
        index_.fill(no_row);
        for (std::size_t i = 0; i < N; ++i) {
            if (rows_[i].code > 255 || (i > 0 && rows_[i].code <= rows_[i - 1].code)) {
                table_detail::a_table_has_its_codes_ascending_once_and_below_256();
            }
            index_[rows_[i].code] = static_cast<std::uint8_t>(i);
        }
    }

    // Null where there is none.
    constexpr const Row* find(std::uint32_t code) const noexcept {
        if (code > 255 || index_[code] == no_row) return nullptr;
        return &rows_[index_[code]];
    }
    constexpr std::span<const Row> rows() const noexcept { return rows_; }

  private:
    static constexpr std::uint8_t no_row = 255;

    std::array<Row, N> rows_;
    std::array<std::uint8_t, 256> index_{};
};

// --- codes and their words

struct Name {
    std::uint32_t code;
    std::string_view text;
};

template <std::size_t N>
class Names {
  public:
    consteval Names(const Name (&rows)[N], std::string_view other)  // NOLINT: a braced list
        : table_(rows), other_(other) {}

    template <std::integral T>
    constexpr Word operator[](const Value<T>& value) const noexcept {
        const Name* const row = table_.find(static_cast<std::uint32_t>(value.number));
        const auto code = static_cast<std::uint32_t>(value.number);
        return {row != nullptr ? row->text : other_, code, row != nullptr, value.place};
    }
    constexpr std::string_view operator[](std::uint32_t code) const noexcept {
        const Name* const row = table_.find(code);
        return row != nullptr ? row->text : other_;
    }

  private:
    Table<Name, N> table_;
    std::string_view other_;
};

template <std::size_t N>
consteval Names<N> names(const Name (&rows)[N], std::string_view other) {  // NOLINT: a braced list
    return Names<N>(rows, other);
}

// --- codes and what they write

using Decoder = void (*)(Decoding&);

// What a row writes: plain words, and what a decoder writes behind them.
struct Action {
    std::string_view words{};
    Decoder decoder = nullptr;

    constexpr Action(const char* w) : words(w) {}       // NOLINT: stands in rows
    constexpr Action(std::string_view w) : words(w) {}  // NOLINT: stands in rows
    template <std::convertible_to<Decoder> D>
    constexpr Action(D d) : decoder(d) {}  // NOLINT: stands in rows
    template <std::convertible_to<Decoder> D>
    constexpr Action(std::string_view w, D d) : words(w), decoder(d) {}

    void operator()(Decoding& d) const {
        d.add(words);
        if (decoder != nullptr) decoder(d);
    }
};

// A message: what it is called, and what it writes. Without a name it is called as what led to it.
struct Opcode {
    std::uint32_t code;
    std::string_view name;
    Action action;

    constexpr Opcode(std::uint32_t c, std::string_view n, Action a) : code(c), name(n), action(a) {}
};

template <std::size_t N>
class Opcodes {
  public:
    consteval Opcodes(const Opcode (&rows)[N], Action other)
        : table_(rows), other_(other) {}                                             // NOLINT: as above
    consteval Opcodes(const Opcode (&rows)[N], std::string_view name, Action other)  // NOLINT: as above
        : table_(rows), other_name_(name), other_(other) {}

    // Writes what the row of the code says; false when there is none, and the words for such codes.
    bool write(Decoding& d, const Number& code) const {
        const Opcode* const row = table_.find(code.number);
        if (d.trail() == nullptr) [[likely]] {
            const Decoding::LedHere led_here(d, code);
            (row != nullptr ? row->action : other_)(d);
        } else {
            observed_write(d, code, row);
        }
        return row != nullptr;
    }
    bool write(Decoding& d, const Byte& code) const { return write(d, Number{code.number, code.place}); }
    constexpr std::span<const Opcode> rows() const noexcept { return table_.rows(); }

  private:
    [[gnu::noinline, gnu::cold]] void observed_write(Decoding& d, const Number& code,
                                                     const Opcode* row) const {
        const auto run = [this, row, &d] {
            if (row != nullptr) {
                d.name(row->name, d.code());
                row->action(d);
            } else if (!other_name_.empty()) {
                d.name(other_name_, d.code());
                other_(d);
            } else {
                d.name("", d.code());
                d.unknown(d.code(), [this, &d] { other_(d); });
            }
        };
        d.row(code, row_field, run, [this, row, &code, &d](Trail& trail) {
            const TableRows asked{.opcodes = rows().data(), .count = N, .other = other_name_};
            trail.asked(d.message(), asked, code.number, row != nullptr, code.place);
        });
    }

    Table<Opcode, N> table_;
    std::string_view other_name_{};
    Action other_;
};

template <std::size_t N>
consteval Opcodes<N> opcodes(const Opcode (&rows)[N], Action other) {  // NOLINT: a braced list
    return Opcodes<N>(rows, other);
}
// Every other code is a message, too, and this one.
template <std::size_t N>
consteval Opcodes<N> opcodes(const Opcode (&rows)[N], std::string_view name,
                             Action other) {  // NOLINT: as above
    return Opcodes<N>(rows, name, other);
}

// An item of a list: its label, what its value is called, and how the value is written behind the label.
struct Item {
    std::uint32_t code;
    std::string_view label;
    FieldName field;
    Decoder value = nullptr;

    // A label that has no value.
    consteval Item(std::uint32_t c, const char* l) : code(c), label(l), field(no_field) {}
    consteval Item(std::uint32_t c, const char* l, const char* f, Decoder v)
        : code(c), label(l), field(f), value(v) {}
    // The label gives the name: "remote IP=" is remote_ip.
    consteval Item(std::uint32_t c, const char* l, Decoder v)
        : code(c), label(l), field(field_of_label(l)), value(v) {}
    // One that writes its label, too.
    consteval Item(std::uint32_t c, Decoder v) : code(c), field(row_field), value(v) {}
};

template <std::size_t N>
class Items {
  public:
    consteval Items(const Item (&rows)[N], Action other) : table_(rows), other_(other) {}  // NOLINT: as above

    bool write(Decoding& d, const Number& id) const {
        const Item* const row = table_.find(id.number);
        const auto run = [this, row, &d] {
            if (row != nullptr) {
                d.add(row->label);
                if (row->value != nullptr) row->value(d);
            } else {
                d.unknown(d.code(), [this, &d] { other_(d); });
            }
        };
        d.row(id, row != nullptr ? row->field : no_field, run, [this, row, &id, &d](Trail& trail) {
            const TableRows asked{.items = rows().data(), .count = N};
            trail.asked(d.message(), asked, id.number, row != nullptr, id.place);
        });
        return row != nullptr;
    }
    bool write(Decoding& d, const Byte& id) const { return write(d, Number{id.number, id.place}); }
    // The label alone, as a word for the id.
    constexpr Word label(const Number& id) const noexcept {
        const Item* const row = table_.find(id.number);
        return {row != nullptr ? row->label : other_.words, id.number, row != nullptr, id.place};
    }
    constexpr std::span<const Item> rows() const noexcept { return table_.rows(); }

  private:
    Table<Item, N> table_;
    Action other_;
};

template <std::size_t N>
consteval Items<N> items(const Item (&rows)[N], Action other) {  // NOLINT: a braced list
    return Items<N>(rows, other);
}

}  // namespace ztdecode
