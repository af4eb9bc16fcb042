#include "tool/select/database.hpp"

#include <iterator>

#include "core/data.hpp"
#include "core/fields.hpp"
#include "core/message.hpp"
#include "decode/line_texts.hpp"
#include "tool/output/utf8.hpp"

namespace ztdecode::tool {

namespace {

constexpr std::size_t kinds = 7;

void bind_name(sqlite::Statement& statement, int parameter, std::string_view name) {
    if (name.empty()) {
        statement.bind_null(parameter);
    } else {
        statement.bind(parameter, name);
    }
}

std::int64_t wide(std::uint64_t number) { return static_cast<std::int64_t>(number); }

void write(sqlite::Statement& statement) {
    statement.step();
    statement.reset();
}

}  // namespace

Database::Database(sqlite::Connection& connection)
    : connection_(connection),
      known_file_(connection, "select name from files where sha256 = ? and bytes > 0"),
      begin_file_(connection, "insert into files values(?, ?, ?, ?, 0, 0, 0)"),
      end_file_(connection, "update files set lines = ?, messages = ?, refused = ? where id = ?"),
      message_name_(connection, "insert into message_names values(?, ?, ?, ?, ?)"),
      message_(connection,
               "insert into message_rows values(?1, ?2, ?3, ?4, ?15, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, "
               "?14)"),
      field_name_(connection, "insert into field_names values(?, ?, ?, ?, ?)"),
      field_(connection, "insert into field_rows values(?, ?, ?, ?, ?, ?, ?, ?)"),
      line_(connection, "insert into line_rows values(null, ?, ?, ?, ?, ?, ?, ?, ?)"),
      file_(last_id("files")),
      next_message_(last_id("message_rows") + 1),
      next_message_name_(last_id("message_names") + 1),
      next_field_name_(last_id("field_names") + 1),
      field_names_(std::size(all_fields) * kinds) {
    connection_.run("begin");
}

std::int64_t Database::last_id(const char* table) {
    sqlite::Statement last(connection_, "select max(id) from " + std::string(table));
    last.step();
    return last.number(0);
}

std::optional<std::string> Database::name_of(std::string_view sha256) {
    known_file_.bind(1, sha256);
    std::optional<std::string> name;
    if (known_file_.step()) name = known_file_.text(0);
    known_file_.reset();
    return name;
}

void Database::begin_file(std::string_view name, std::string_view sha256, std::uint64_t bytes) {
    messages_ = refused_ = 0;
    begin_file_.bind(1, ++file_);
    begin_file_.bind(2, as_utf8(name, text_));
    begin_file_.bind(3, sha256);
    begin_file_.bind(4, wide(bytes));
    write(begin_file_);
}

void Database::end_file(std::uint64_t lines) {
    end_file_.bind(1, wide(lines));
    end_file_.bind(2, messages_);
    end_file_.bind(3, refused_);
    end_file_.bind(4, file_);
    write(end_file_);
}

void Database::message(const CapturedMessage& captured, const Record& record) {
    ++messages_;
    const std::int64_t first = next_message_;
    message_.bind(2, file_);
    message_.bind(3, wide(captured.number));
    if (captured.has_columns) {
        message_.bind(4, as_utf8(captured.columns, columns_));
    } else {
        message_.bind_null(4);
    }
    bind_name(message_, 15, as_utf8(captured.time, time_));
    depths_.clear();
    for (std::uint32_t k = 0; k < record.size(); ++k) {
        depths_.push_back(k == 0 ? 0 : depths_[record.part(k).carrier] + 1);
        part(captured, record, k, first);
        values(record, record.part(k), first + k);
    }
    next_message_ += wide(record.size());
}

// A part's file, line and columns are its captured message's.
void Database::part(const CapturedMessage& captured, const Record& record, std::uint32_t index,
                    std::int64_t first) {
    const Record::Part& part = record.part(index);
    message_.bind(1, first + index);
    message_.bind(5, message_name(*part.noted, part.decoded));
    if (part.noted->code == NotedMessage::no_code) {
        message_.bind_null(6);
    } else {
        message_.bind(6, std::int64_t{part.noted->code});
    }
    message_.bind(7, std::int64_t{part.noted->length});
    message_.bind(8, part.bytes);
    message_.bind(9, as_utf8(record.text(part), text_));
    message_.bind(10, std::int64_t{part.unknown});
    message_.bind(11, std::int64_t{part.missing});
    if (captured.padded > 0 && index == 0) {
        message_.bind(12, wide(captured.padded));
    } else {
        message_.bind_null(12);
    }
    message_.bind(13, depths_[index]);
    if (index == 0) {
        message_.bind_null(14);
    } else {
        message_.bind(14, first + part.carrier);
    }
    write(message_);
}

void Database::values(const Record& record, const Record::Part& part, std::int64_t id) {
    field_.bind(1, id);
    for (const std::uint32_t index : record.values(part)) {
        const NotedValue& value = record.value(index);
        const Meaning& meaning = value.meaning;
        field_.bind(2, field_name(value));
        bind_value(record, value);
        if (meaning.kind == Kind::word) {
            field_.bind(4, meaning.number);
        } else {
            field_.bind_null(4);
        }
        bind_bytes(record, part, value);
        field_.bind(7, meaning.known ? std::int64_t{1} : 0);
        field_.bind(8, value.missing ? std::int64_t{1} : 0);
        write(field_);
    }
}

void Database::bind_value(const Record& record, const NotedValue& value) {
    const Meaning& meaning = value.meaning;
    const std::string_view shown = record.shown(value);
    switch (meaning.kind) {
        case Kind::number:
            if (meaning.tenths != 0) {
                field_.bind(3, static_cast<double>(meaning.number) / 10);
            } else {
                field_.bind(3, meaning.number);
            }
            break;
        case Kind::flag:
            field_.bind(3, meaning.number != 0 ? std::int64_t{1} : 0);
            break;
        case Kind::bytes:
        case Kind::word:
        case Kind::address:
        case Kind::text:
        case Kind::version:
            digits_.clear();
            field_.bind(
                3, as_utf8(data::value(meaning, shown, digits_.room(data::room_for_value(meaning, shown))),
                           text_));
            break;
    }
}

// Offsets in the message, where the value stands in its bytes.
void Database::bind_bytes(const Record& record, const Record::Part& part, const NotedValue& value) {
    const auto ranges = record.trail().bytes_of(value);
    const std::uint32_t origin = part.noted->origin;
    const NotedMessage& of = record.trail().messages()[value.message];
    if (ranges.empty() || !record.same_source(part, of) || ranges.front().first < origin ||
        ranges.back().last - origin >= part.bytes.size()) {
        field_.bind_null(5);
        field_.bind_null(6);
        return;
    }
    field_.bind(5, std::int64_t{ranges.front().first - origin});
    field_.bind(6, std::int64_t{ranges.back().last - origin});
}

void Database::line(std::uint64_t number, std::string_view verdict, std::string_view content,
                    const Refusal* refusal) {
    line_.bind(1, file_);
    line_.bind(2, wide(number));
    line_.bind(3, verdict);
    if (refusal != nullptr) {
        ++refused_;
        line_.bind(4, ztdecode::name_of(refusal->reason));
        line_.bind(5, wide(refusal->column + 1));
        line_.bind(6, wide(refusal->expected));
        line_.bind(7, wide(refusal->found));
    } else {
        for (int parameter = 4; parameter <= 7; ++parameter) line_.bind_null(parameter);
    }
    line_.bind(8, as_utf8(content, text_));
    write(line_);
}

// Names live as long as the program does.
std::int64_t Database::message_name(const NotedMessage& noted, Decoded decoded) {
    const auto [row, added] =
        message_names_.try_emplace({noted.link, noted.name, noted.direction, decoded}, next_message_name_);
    if (added) {
        message_name_.bind(1, next_message_name_++);
        bind_name(message_name_, 2, noted.link);
        message_name_.bind(3, std::string_view(noted.direction == from_dhs ? "from" : "to"));
        bind_name(message_name_, 4, noted.name);
        message_name_.bind(5, data::name_of(decoded));
        write(message_name_);
    }
    return row->second;
}

std::int64_t Database::field_name(const NotedValue& value) {
    const auto field = static_cast<std::size_t>(value.field - std::begin(all_fields));
    std::int64_t& row = field_names_[field * kinds + static_cast<std::size_t>(value.meaning.kind)];
    if (row == 0) {
        row = next_field_name_++;
        field_name_.bind(1, row);
        field_name_.bind(2, value.name);
        field_name_.bind(3, data::name_of(value.meaning.kind));
        bind_name(field_name_, 4, value.field->unit);
        field_name_.bind(5, data::name_of(value.field->sensitivity));
        write(field_name_);
    }
    return row;
}

void Database::finish() {
    create_indexes(connection_);
    connection_.run("commit");
}

}  // namespace ztdecode::tool
