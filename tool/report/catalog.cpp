#include "tool/report/catalog.hpp"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

#include "core/message.hpp"

namespace ztdecode::tool {

namespace {

using Rows = std::span<const CatalogRow>;

bool same_fields(const CatalogRow& a, const CatalogRow& b) {
    return std::ranges::equal(a.fields, b.fields, {}, &CatalogField::field, &CatalogField::field);
}

// The first rows that `belongs` says belong to the first one.
template <class Belongs>
Rows take(Rows& rows, Belongs belongs) {
    std::size_t n = 1;
    while (n < rows.size() && belongs(rows[n])) ++n;
    const Rows taken = rows.first(n);
    rows = rows.subspan(n);
    return taken;
}

Rows take_link(Rows& rows) {
    const CatalogRow& first = rows.front();
    return take(rows, [&first](const CatalogRow& row) {
        return row.link == first.link && row.direction == first.direction;
    });
}

// Those of one module or class; those that are nobody's own, or the only one of theirs, go together.
Rows take_group(Rows& rows) {
    const auto of_many = [&rows](const CatalogRow& row) {
        const auto same = [&row](const CatalogRow& other) { return other.of == row.of; };
        return !row.of.empty() && std::ranges::count_if(rows, same) > 1;
    };
    const CatalogRow& first = rows.front();
    const bool many = of_many(first);
    return take(rows, [&](const CatalogRow& row) { return many ? row.of == first.of : !of_many(row); });
}

// Whether the two say the same, but for the first byte of the codes.
bool alike(Rows a, Rows b) {
    return std::ranges::equal(a, b, [](const CatalogRow& x, const CatalogRow& y) {
        return x.code.substr(2) == y.code.substr(2) && x.message == y.message && x.of == y.of &&
               same_fields(x, y);
    });
}

class Writer {
  public:
    Writer(std::size_t width, bool color, Text& out) : width_(width), color_(color), out_(out) {}

    void run(Rows rows) {
        std::vector<Rows> written;
        while (!rows.empty()) {
            const Rows link = take_link(rows);
            const auto twin = std::ranges::find_if(written, [&link](Rows other) {
                return other.front().direction == link.front().direction && link.size() > 2 &&
                       other.front().link != link.front().link && alike(other, link);
            });
            if (!written.empty()) out_.add("\n");
            if (twin != written.end()) {
                heading(link.front(), {});
                wrapped("  ", 2,
                        "as " + std::string(twin->front().link) + ", with " + link.front().code.substr(0, 2) +
                            " for " + twin->front().code.substr(0, 2));
            } else {
                groups(link);
            }
            written.push_back(link);
        }
    }

  private:
    static constexpr std::size_t longest_repeated = 24;

    void heading(const CatalogRow& row, std::string_view of) {
        const bool to = row.direction == to_dhs;
        if (color_) out_.add(to ? "\033[0;31m" : "\033[0;32m");
        std::string words(row.link);
        words += to ? ", to the system" : ", from the system";
        if (!of.empty()) words.append(": ").append(of);
        wrapped("", 2, words);
        if (color_) {
            out_.cut(out_.size() - 1);
            out_.add("\033[0m\n");
        }
    }

    void groups(Rows link) {
        code_width_ = message_width_ = 0;
        for (const CatalogRow& row : link) {
            code_width_ = std::max(code_width_, row.code.size());
            message_width_ = std::max(message_width_, row.message.size());
        }
        message_width_ = std::min<std::size_t>(message_width_, 32);
        bool first = true;
        for (Rows rest = link; !rest.empty(); first = false) {
            const Rows group = take_group(rest);
            const bool own = group.size() > 1 && !group.front().of.empty() && group.front().of == group[1].of;
            if (!first) out_.add("\n");
            heading(group.front(), own ? group.front().of : std::string_view());
            this->group(group, own);
        }
    }

    void group(Rows group, bool own) {
        common_.clear();
        if (own) {
            for (const CatalogField& field : group.front().fields) {
                const auto has = [&field](const CatalogRow& row) {
                    return std::ranges::find(row.fields, field.field, &CatalogField::field) !=
                           row.fields.end();
                };
                if (std::ranges::all_of(group, has)) common_.push_back(field.field);
            }
            if (!common_.empty()) wrapped("  each: ", 8, listed(group.front(), true));
        }
        for (const CatalogRow& row : group) {
            std::string fields = listed(row, false);
            const auto same = [&row](const CatalogRow& other) { return same_fields(other, row); };
            const CatalogRow& first = *std::ranges::find_if(group, same);
            if (&first != &row && (own || row.of.empty()) && fields.size() > longest_repeated) {
                fields = "as " + std::string(first.message) + " " + first.code;
            }
            line(row, own, fields);
        }
    }

    std::string listed(const CatalogRow& row, bool common) const {
        std::string list;
        for (const CatalogField& field : row.fields) {
            if ((std::ranges::find(common_, field.field) != common_.end()) != common) continue;
            list.append(list.empty() ? "" : ", ").append(field.field->name);
        }
        return list;
    }

    void line(const CatalogRow& row, bool own, const std::string& fields) {
        std::string begin = "  " + row.code;
        begin.append(code_width_ - row.code.size() + 2, ' ').append(row.message);
        if (!own && !row.of.empty()) begin.append(" of ").append(row.of);
        const std::size_t column = 2 + code_width_ + 2 + message_width_ + 2;
        if (fields.empty()) {
            out_.add(begin);
            out_.add("\n");
            return;
        }
        const std::size_t indent = column < width_ ? std::min(column, width_ - width_ / 3) : 4;
        if (width_ != 0 && begin.size() + 2 > indent) {
            out_.add(begin);
            out_.add("\n");
            begin.assign(indent, ' ');
        } else {
            begin.append(begin.size() + 2 > column ? 2 : column - begin.size(), ' ');
        }
        wrapped(begin, indent, fields);
    }

    // Words behind `begin`, further lines from column `indent` on.
    void wrapped(const std::string& begin, std::size_t indent, std::string_view words) {
        out_.add(begin);
        std::size_t at = begin.size();
        bool first = true;
        while (!words.empty()) {
            const std::size_t n = std::min(words.find(' '), words.size());
            const std::size_t blank = first ? 0 : 1;
            if (width_ != 0 && at + blank + n > width_ && (!first || at > indent)) {
                out_.add("\n");
                out_.add(std::string(indent, ' '));
                at = indent;
            } else if (!first) {
                out_.add(" ");
                ++at;
            }
            out_.add(words.substr(0, n));
            at += n;
            first = false;
            words.remove_prefix(std::min(n + 1, words.size()));
        }
        out_.add("\n");
    }

    std::size_t width_;
    bool color_;
    Text& out_;
    std::size_t code_width_ = 0;
    std::size_t message_width_ = 0;
    std::vector<const Field*> common_;
};

}  // namespace

void write_catalog(const std::vector<CatalogRow>& rows, std::size_t width, bool color, Text& out) {
    Writer(width, color, out).run(rows);
}

void write_catalog_as_ndjson(const std::vector<CatalogRow>& rows, Text& out) {
    rapidjson::StringBuffer buffer;
    for (const CatalogRow& row : rows) {
        buffer.Clear();
        rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
        const auto string = [&writer](std::string_view s) {
            writer.String(s.data(), static_cast<rapidjson::SizeType>(s.size()));
        };
        const auto member = [&](const char* key, std::string_view value) {
            writer.Key(key);
            string(value);
        };
        writer.StartObject();
        member("kind", "catalog");
        member("link", row.link);
        member("direction", row.direction == from_dhs ? "from" : "to");
        member("code", row.code);
        member("message", row.message);
        writer.Key("of");
        if (row.of.empty()) {
            writer.Null();
        } else {
            string(row.of);
        }
        writer.Key("fields");
        writer.StartArray();
        for (const CatalogField& field : row.fields) string(field.field->name);
        writer.EndArray();
        writer.EndObject();
        out.add({buffer.GetString(), buffer.GetSize()});
        out.add("\n");
    }
}

}  // namespace ztdecode::tool
