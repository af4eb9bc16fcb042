#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/record.hpp"
#include "core/session.hpp"
#include "decode/catalog.hpp"
#include "object/tables.hpp"
#include "support/process.hpp"
#include "support/traces.hpp"

// docs/fields.md tells of every field that messages have: what the catalogue finds, and what the golden
// traces hold besides. `scripts/fields` writes it anew.

namespace ztdecode::testing {

namespace {

constexpr auto document = ZTDECODE_SOURCE_DIR "/docs/fields.md";

// Fields that are given as several kinds of value, and why. Digits need no reason: as many as fit are a
// number, more are bytes.
const std::map<std::string_view, std::string_view> several_kinds = {
    {"anomaly", "bases and computer links give numbers, bus modules names"},
    {"application", "HE sets give numbers or names, IP sets texts"},
    {"channel_number", "tickets give numbers"},
    {"codec", "tickets give numbers"},
    {"default_codec", "answers of the set give digits"},
    {"digit", "without a table it is its code"},
    {"distant_id", "tickets give texts, stream messages bytes"},
    {"dmode", "each class has a type of its own"},
    {"download_identifier", "hubs give numbers"},
    {"dstate", "each class has a type of its own"},
    {"dvalue", "each class has a type of its own"},
    {"format", "each class has a type of its own"},
    {"integrity_checking", "names with a recorder, numbers otherwise"},
    {"integrity_method", "names with a recorder, numbers otherwise"},
    {"local_id", "tickets give texts, stream messages bytes"},
    {"mmi_password", "a name where it is none"},
    {"self_test", "hubs and Z modules give numbers"},
    {"sip_name", "a name where it is empty"},
    {"software_version", "tickets give digits"},
    {"state", "each class has a type of its own"},
    {"value", "each class has a type of its own"},
    {"voice_mode", "tickets give numbers"},
};

constexpr std::uint32_t bit(Kind kind) { return 1U << static_cast<unsigned>(kind); }
constexpr std::uint32_t digits = bit(Kind::number) | bit(Kind::bytes);

struct Given {
    std::uint32_t kinds = 0;
    // By link and direction: the messages, or the classes whose objects have it.
    std::map<std::pair<std::string, std::uint32_t>, std::set<std::string>> messages;
};
using AllGiven = std::map<std::string_view, Given>;

bool is_server(std::string_view link) { return link == "call_server" || link == "presentation_server"; }

AllGiven gather() {
    AllGiven given;
    std::set<std::vector<std::string>> known;
    const auto key = [](std::string_view field, std::string_view link, std::uint32_t direction,
                        std::string_view message) {
        return std::vector<std::string>{std::string(field), std::string(link), std::to_string(direction),
                                        std::string(message)};
    };
    for (const CatalogRow& row : catalog()) {
        std::string message(row.message);
        if (!row.of.empty())
            message = is_server(row.link) ? "class " + row.of : message + " (" + row.of + ")";
        for (const CatalogField& f : row.fields) {
            Given& g = given[f.field->name];
            g.kinds |= f.kinds;
            g.messages[{std::string(row.link), row.direction}].insert(message);
            known.insert(key(f.field->name, row.link, row.direction, row.message));
        }
    }
    Session session;
    Trail trail;
    session.trail = &trail;
    for (const Captured& captured : golden_messages()) {
        Message m(captured.bytes);
        m.direction = captured.direction;
        Text text;
        decode(session, m, text);
        for (const NotedValue& v : trail.values()) {
            if (v.field == nullptr) continue;
            const NotedMessage& message = trail.messages()[v.message];
            Given& g = given[v.field->name];
            g.kinds |= bit(v.meaning.kind);
            if (message.name.empty()) continue;
            if (!known.insert(key(v.field->name, message.link, message.direction, message.name)).second)
                continue;
            g.messages[{std::string(message.link), message.direction}].emplace(message.name);
        }
    }
    return given;
}

// Gathered once: sanitized, the catalogue takes its time.
const AllGiven& all_given() {
    static const AllGiven given = gather();
    return given;
}

std::string kinds_of(std::uint32_t kinds) {
    constexpr const char* names[] = {"number", "word", "address", "text", "version", "flag", "bytes"};
    std::string list;
    for (std::size_t k = 0; k < std::size(names); ++k) {
        if ((kinds >> k & 1) != 0) list.append(list.empty() ? "" : ", ").append(names[k]);
    }
    return list;
}

std::string words_of(Sensitivity sensitivity) {
    switch (sensitivity) {
        case Sensitivity::none:
            return "";
        case Sensitivity::call_number:
            return "call number";
        case Sensitivity::person:
            return "person";
        case Sensitivity::network_address:
            return "network address";
        case Sensitivity::hardware_address:
            return "hardware address";
        case Sensitivity::secret:
            return "secret";
    }
    return "";
}

std::string joined(const std::set<std::string>& words) {
    std::string list;
    for (const std::string& word : words) list.append(list.empty() ? "" : ", ").append(word);
    return list;
}

// Messages, and classes of objects whose messages have it.
std::string listed(const std::set<std::string>& messages) {
    constexpr std::string_view mark = "class ";
    std::set<std::string> names;
    std::set<std::string> classes;
    for (const std::string& message : messages) {
        if (message.starts_with(mark)) {
            classes.insert(message.substr(mark.size()));
        } else {
            names.insert(message);
        }
    }
    std::string text = joined(names);
    if (classes.empty()) return text;
    if (!text.empty()) text += "; ";
    return text +
           "of objects: " + (classes.size() + 1 == std::size(Tab_Classes_Opcodes) ? "all" : joined(classes));
}

// Links and directions whose messages are the same ones stand together.
std::string messages_of(const Given& given) {
    std::map<std::set<std::string>, std::map<std::string, std::string>> places;
    for (const auto& [place, messages] : given.messages) {
        std::string& ways = places[messages][place.first];
        ways.append(ways.empty() ? "" : "/").append(place.second == to_dhs ? "to" : "from");
    }
    std::set<std::string> parts;
    for (const auto& [messages, ways_of] : places) {
        std::map<std::string, std::string> links;
        for (const auto& [link, ways] : ways_of)
            links[ways].append(links[ways].empty() ? "" : ", ").append(link);
        std::string part;
        for (const auto& [ways, list] : links)
            part.append(part.empty() ? "" : ", ").append(list).append(" ").append(ways);
        parts.insert("**" + part + "**: " + listed(messages));
    }
    std::string text;
    for (const std::string& part : parts) text.append(text.empty() ? "" : "<br>").append(part);
    return text;
}

std::string written(const AllGiven& given) {
    std::string text =
        "# Fields\n\n"
        "Every value that a text shows, by the name that it has in records (`--format ndjson`) and in "
        "`--catalog`. Written by\n"
        "`scripts/fields` from what the decoders give; a test keeps it true.\n\n"
        "Kinds: a *number* counts or numbers something, a *word* stands for a code, a *flag* is the case or "
        "is "
        "not, the others are\n"
        "what they are called. Digits that fit are a number, more are bytes. Messages stand behind their "
        "link, "
        "*from* the system\n"
        "or *to* it; *of objects* stands before the classes whose objects' messages have the field.\n\n"
        "| Field | Meaning | Kind | Unit | Sensitivity | Messages |\n"
        "|---|---|---|---|---|---|\n";
    std::vector<const Field*> fields;
    for (const Field& field : all_fields) fields.push_back(&field);
    std::ranges::sort(fields, {}, &Field::name);
    for (const Field* field : fields) {
        const auto found = given.find(field->name);
        if (found == given.end()) continue;
        text.append("| `").append(field->name).append("` | ").append(field->meaning);
        text.append(" | ").append(kinds_of(found->second.kinds));
        text.append(" | ").append(field->unit).append(" | ").append(words_of(field->sensitivity));
        text.append(" | ").append(messages_of(found->second)).append(" |\n");
    }
    text += "\n## Fields of several kinds\n\n| Field | Why |\n|---|---|\n";
    for (const auto& [field, why] : several_kinds) {
        text.append("| `").append(field).append("` | ").append(why).append(" |\n");
    }
    return text;
}

TEST(Fields, TheDocumentIsTrue) {
    const std::string now = written(all_given());
    if (std::getenv("ZTDECODE_WRITE_FIELDS") != nullptr) {
        std::ofstream(document, std::ios::binary) << now;
    }
    EXPECT_TRUE(contents(document) == now)
        << "docs/fields.md differs: run scripts/fields, then check what changed";
}

TEST(Fields, EachIsGivenBySomeMessage) {
    const AllGiven& given = all_given();
    for (const Field& field : all_fields) {
        EXPECT_TRUE(given.contains(field.name))
            << field.name << " is in core/fields.hpp, and nobody gives it";
    }
    EXPECT_GT(std::size(all_fields), 400U);
}

TEST(Fields, EachIsInTheListOnce) {
    std::set<std::string_view> names;
    for (const Field& field : all_fields) EXPECT_TRUE(names.insert(field.name).second) << field.name;
}

TEST(Fields, SeveralKindsHaveAReason) {
    const AllGiven& given = all_given();
    for (const auto& [name, g] : given) {
        const bool several = (g.kinds & (g.kinds - 1)) != 0 && (g.kinds & ~digits) != 0;
        EXPECT_EQ(several, several_kinds.contains(name)) << name << ": " << kinds_of(g.kinds);
    }
}

}  // namespace

}  // namespace ztdecode::testing
