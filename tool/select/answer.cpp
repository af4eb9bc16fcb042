#include "tool/select/answer.hpp"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "tool/output/control.hpp"
#include "tool/output/utf8.hpp"
#include "tool/report/ndjson.hpp"

namespace ztdecode::tool {

namespace {

// The value of a column in words; valid until the next one is asked for.
std::string_view words_of(const sqlite::Statement& query, int column, Text& room) {
    if (query.type(column) != SQLITE_BLOB) return query.text(column);
    room.clear();
    for (const std::uint8_t byte : query.bytes(column)) room.hex(byte);
    return room.view();
}

bool is_number(int type) { return type == SQLITE_INTEGER || type == SQLITE_FLOAT; }

// As RFC 4180 has it. An empty text is quoted: nothing at all is null.
void add_cell(std::string_view words, bool null, Output& out) {
    if (null) return;
    if (!words.empty() && words.find_first_of(",\"\r\n") == std::string_view::npos) {
        out.add_foreign(words);
        return;
    }
    std::string quoted = "\"";
    for (const char c : words) quoted.append(c == '"' ? 2 : 1, c);
    quoted += '"';
    out.add_foreign(quoted);
}

void write_csv(sqlite::Statement& query, Output& out) {
    Text room;
    const auto row = [&](auto cell) {
        for (int column = 0; column < query.columns(); ++column) {
            if (column > 0) out.text.add(",");
            cell(column);
        }
        out.text.add("\r\n");
        out.flush_when_full();
    };
    row([&](int column) { add_cell(query.name(column), false, out); });
    while (out.error() == 0 && query.step()) {
        row([&](int column) {
            add_cell(words_of(query, column, room), query.type(column) == SQLITE_NULL, out);
        });
    }
}

void write_ndjson(sqlite::Statement& query, Output& out) {
    Text room;
    std::vector<std::string> keys;
    for (int column = 0; column < query.columns(); ++column) {
        Text key;
        key.add(column == 0 ? "{" : ",");
        add_json_string(query.name(column), out.escapes(), key);
        keys.emplace_back(std::string(key.view()) + ":");
    }
    while (out.error() == 0 && query.step()) {
        for (int column = 0; column < query.columns(); ++column) {
            out.text.add(keys[static_cast<std::size_t>(column)]);
            const int type = query.type(column);
            const std::string_view words = words_of(query, column, room);
            if (type == SQLITE_NULL) {
                out.text.add("null");
            } else if (is_number(type) && words.find("nf") == std::string_view::npos) {
                out.text.add(words);
            } else {
                add_json_string(words, out.escapes(), out.text);
            }
        }
        out.text.add("}\n");
        out.flush_when_full();
    }
}

// How many characters stand there: bytes that begin one.
std::size_t length_of(std::string_view words) {
    return static_cast<std::size_t>(
        std::count_if(words.begin(), words.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

// The first n characters.
std::string_view first_characters(std::string_view words, std::size_t n) {
    std::size_t end = 0;
    while (end < words.size() && n > 0) {
        end += std::max<std::size_t>(character_length(words.substr(end)), 1);
        --n;
    }
    return words.substr(0, end);
}

// Columns are as wide as their names and their first rows want it, less where that is more than there is room
// for; the widest give way first.
class Table {
  public:
    Table(sqlite::Statement& query, std::size_t width, Output& out)
        : query_(query),
          width_(width),
          out_(out),
          widths_(static_cast<std::size_t>(query.columns())),
          numbers_(widths_.size(), true) {}

    void write() {
        std::vector<Row> rows;
        while (rows.size() < looked_at && query_.step()) rows.push_back(row());
        const bool more = rows.size() == looked_at;
        lay_out(rows);
        Row line;
        for (const std::size_t width : widths_) line.emplace_back(width, '-');
        add(names());
        add(line);
        for (const Row& row : rows) add(row);
        while (more && out_.error() == 0 && query_.step()) add(row());
    }

  private:
    using Row = std::vector<std::string>;
    static constexpr std::size_t looked_at = 1000;
    static constexpr std::size_t least_width = 4;
    static constexpr std::string_view between = "  ";

    static std::string escaped(std::string_view words) {
        Text text;
        add_escaped_name(words, text);
        return std::string(text.view());
    }
    Row names() const {
        Row row;
        for (int k = 0; k < query_.columns(); ++k) row.push_back(escaped(query_.name(k)));
        return row;
    }
    Row row() {
        Row row;
        for (int k = 0; k < query_.columns(); ++k) {
            const int type = query_.type(k);
            if (!is_number(type) && type != SQLITE_NULL) numbers_[static_cast<std::size_t>(k)] = false;
            row.push_back(escaped(words_of(query_, k, room_)));
        }
        return row;
    }

    void lay_out(const std::vector<Row>& rows) {
        const auto widen = [this](const Row& row) {
            for (std::size_t k = 0; k < row.size(); ++k) widths_[k] = std::max(widths_[k], length_of(row[k]));
        };
        widen(names());
        for (const Row& row : rows) widen(row);
        if (width_ == 0) return;
        const std::size_t besides = between.size() * (widths_.size() - 1);
        for (auto all = std::accumulate(widths_.begin(), widths_.end(), besides); all > width_; --all) {
            const auto widest = std::max_element(widths_.begin(), widths_.end());
            if (*widest <= least_width) break;
            --*widest;
        }
    }

    void add(const Row& row) {
        std::string line;
        for (std::size_t k = 0; k < row.size(); ++k) {
            const std::size_t length = length_of(row[k]);
            const bool cut = width_ != 0 && length > widths_[k];
            const std::string blanks(length < widths_[k] ? widths_[k] - length : 0, ' ');
            if (k > 0) line += between;
            if (numbers_[k]) line += blanks;
            line += cut ? std::string(first_characters(row[k], widths_[k] - 1)) + "…" : row[k];
            if (!numbers_[k]) line += blanks;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out_.text.add(line);
        out_.text.add("\n");
        out_.flush_when_full();
    }

    sqlite::Statement& query_;
    std::size_t width_;
    Output& out_;
    std::vector<std::size_t> widths_;
    std::vector<bool> numbers_;  // of which columns all values are numbers
    Text room_;
};

}  // namespace

void write_answer(sqlite::Statement& query, AnswerForm form, std::size_t width, Output& out) {
    switch (form) {
        case AnswerForm::table:
            return Table(query, width, out).write();
        case AnswerForm::csv:
            return write_csv(query, out);
        case AnswerForm::ndjson:
            return write_ndjson(query, out);
    }
}

}  // namespace ztdecode::tool
