#include "decode/catalog.hpp"

#include <algorithm>
#include <array>
#include <bitset>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <utility>

#include "core/session.hpp"
#include "core/tables.hpp"
#include "object/lookup.hpp"

// Messages are tried on the decoders: the tables that they ask, and the bytes that they ask them with, say
// what to try next.

namespace ztdecode {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t longest = 24;  // of the messages that are tried

// What earlier messages taught.
struct Taught {
    std::uint8_t module_type = 31;
    const ztdecode_property_record* properties = nullptr;
};

// What one message says. On the HE link the message stands behind a header: the two count as one.
class Tried {
  public:
    Tried() { trail_.tables = &asked_; }

    void decode(const Bytes& bytes, std::uint32_t direction, const Taught& taught) {
        session_.emplace();
        session_->trail = &trail_;
        session_->side = &silence_;
        for (auto& type : session_->digital.modules.types) type.now() = taught.module_type;
        session_->object.properties.now() = taught.properties;
        asked_.clear();
        text_.clear();
        Message m(bytes);
        m.direction = direction;
        known_ = ztdecode::decode(*session_, m, text_) == Outcome::decoded;
        const std::vector<NotedMessage>& messages = trail_.messages();
        const bool header = messages.size() > 1 && messages[0].link == "he";
        last_ = header ? 1 : 0;
        opcodes_.clear();
        for (const AskedTable& asked : asked_) {
            if (asked.message == last_ && asked.rows.opcodes != nullptr) opcodes_.push_back(&asked);
            if (!opcodes_.empty() && !opcodes_.back()->known) break;
        }
    }

    bool known() const { return known_; }
    std::string_view link() const { return trail_.messages()[0].link; }
    const NotedMessage& header() const { return trail_.messages()[0]; }
    bool has_header() const { return last_ != 0; }
    std::string_view name() const { return trail_.messages()[last_].name; }
    // One inside the other, up to the first that does not know its code.
    std::span<const AskedTable* const> opcodes() const { return opcodes_; }
    const std::vector<NotedValue>& values() const { return trail_.values(); }
    bool own(std::uint32_t message) const { return message == last_; }
    std::span<const AskedTable> asked() const { return asked_; }
    std::string_view shown(const NotedValue& v) const {
        return text_.view().substr(v.begin, v.end - v.begin);
    }

    // The bytes that decided something.
    void add_tested(std::bitset<longest>& tested) const {
        const auto add = [&tested](const ByteRange& r) {
            for (std::uint32_t k = r.first; k <= r.last && k < longest; ++k) tested.set(k);
        };
        for (const AskedTable& asked : asked_) {
            if (own(asked.message) && asked.some) add(asked.bytes);
        }
        for (const Stretch& s : trail_.stretches()) {
            if (!own(s.message) || s.value != Stretch::no_value) continue;
            for (const ByteRange& r : trail_.bytes_of(s)) add(r);
        }
        // Lengths and counts lead to more of the same.
        for (const Trail::Walked& w : trail_.walked()) {
            for (std::uint32_t k = w.bytes.first; k <= w.bytes.last && k < longest; ++k) tested.reset(k);
        }
    }

  private:
    class Silence : public SideChannel {
        bool shows_output() const override { return false; }
        void standard_output(std::string_view /*text*/) override {}
        void standard_error(std::string_view /*text*/) override {}
    };

    Silence silence_;
    std::optional<Session> session_;
    Trail trail_;
    Text text_;
    std::vector<AskedTable> asked_;
    std::vector<const AskedTable*> opcodes_;
    std::uint32_t last_ = 0;
    bool known_ = false;
};

// A message as far as its code goes.
struct Node {
    std::string_view link;
    std::uint32_t direction;
    std::map<std::uint32_t, std::uint8_t> code{};   // bytes that a trace shows it by
    std::map<std::uint32_t, std::uint8_t> other{};  // bytes that have to be these, and are not shown
    bool any = false;                               // ... and any other byte,
    std::uint32_t any_at = 0;                       // here
    std::vector<std::pair<const Opcode*, std::uint32_t>> tables{};  // that led here, and with which codes
    std::string_view name{};
    bool plain = false;         // nothing but words
    bool told_further = false;  // every code behind it is a message of another name
    std::string of{};
    Taught taught{};

    std::uint32_t length() const {
        std::uint32_t n = 1;
        for (const auto& bytes : {code, other}) {
            if (!bytes.empty()) n = std::max(n, bytes.rbegin()->first + 1);
        }
        return n;
    }
    bool has(std::uint32_t k) const {
        return code.contains(k) || (other.contains(k) && !(any && k == any_at));
    }
    Bytes message(std::uint32_t length, std::uint8_t fill) const {
        Bytes bytes(length, fill);
        for (const auto& fixed : {code, other}) {
            for (const auto& [k, byte] : fixed) {
                if (k < length) bytes[k] = byte;
            }
        }
        return bytes;
    }
    std::string shown() const {
        std::string text;
        std::uint32_t next = 0;
        for (const auto& [k, byte] : code) {
            for (; next < k; ++next) text += ".. ";
            text += formatted("{-:02x} "_cf, byte);
            ++next;
        }
        if (any) return text + "..";
        text.pop_back();
        return text;
    }
};

class Fields {
  public:
    // True when there was something new.
    bool add(const Field* field, Kind kind) {
        std::uint32_t& kinds = kinds_[field];
        const std::uint32_t before = kinds;
        kinds |= 1U << static_cast<unsigned>(kind);
        return kinds != before;
    }
    bool add(const Tried& tried, bool header = false) {
        bool something = false;
        for (const NotedValue& v : tried.values()) {
            if (v.field == nullptr || (header ? v.message != 0 : !tried.own(v.message))) continue;
            something = add(v.field, v.meaning.kind) || something;
        }
        return something;
    }
    void add(const Fields& others) {
        for (const auto& [field, kinds] : others.kinds_) kinds_[field] |= kinds;
    }
    // In the order of their names.
    std::vector<CatalogField> sorted() const {
        std::vector<CatalogField> fields;
        for (const auto& [field, kinds] : kinds_) fields.push_back({field, kinds});
        std::ranges::sort(fields, {}, [](const CatalogField& f) { return f.field->name; });
        return fields;
    }

  private:
    std::map<const Field*, std::uint32_t> kinds_;
};

class Walk {
  public:
    std::vector<CatalogRow> run() {
        for (const std::uint32_t direction : {from_dhs, to_dhs}) {
            for (std::uint32_t type = 0; type < 0x80; ++type) explore_type(direction, type);
        }
        sort();
        return std::move(rows_);
    }

  private:
    const Tried& attempt(const Node& node, const Bytes& bytes) {
        tried_.decode(bytes, node.direction, node.taught);
        return tried_;
    }

    // Whether it is the message that the node stands for, or one that is told by further codes.
    bool is_of(const Node& node) const {
        const auto opcodes = tried_.opcodes();
        if (tried_.link() != node.link || opcodes.size() < node.tables.size()) return false;
        for (std::size_t k = 0; k < node.tables.size(); ++k) {
            const AskedTable& asked = *opcodes[k];
            if (asked.rows.opcodes != node.tables[k].first || !asked.known) return false;
            if (asked.code != node.tables[k].second) return false;
        }
        return true;
    }
    const AskedTable* next_table(const Node& node) const {
        const auto opcodes = tried_.opcodes();
        return opcodes.size() > node.tables.size() ? opcodes[node.tables.size()] : nullptr;
    }

    // byte 0 tells the link. A message of one byte may belong to another one than a longer one.
    void explore_type(std::uint32_t direction, std::uint32_t type) {
        std::string_view before;
        for (const std::uint32_t length : {longest, 1U}) {
            Node node{.link = {}, .direction = direction};
            node.code[0] = static_cast<std::uint8_t>(type);
            const Tried& tried = attempt(node, node.message(length, 0));
            if (tried.link() == before) continue;
            node.link = before = tried.link();
            if (node.link == "call_server" || node.link == "presentation_server") {
                if (length != 1) explore_objects(node);
                continue;
            }
            if (tried.has_header()) {
                Fields fields;
                fields.add(tried, true);
                node.name = tried.header().name;
                emit(node, fields);
                node.name = {};
            }
            const AskedTable* const first = next_table(node);
            if (first != nullptr && first->some && first->bytes.first == 0) {
                if (node.link == "digital") digital_[direction] = first->rows;
                if (!first->known) continue;
                step(node, *first);
            }
            if (first == nullptr) node.name = tried.name();
            explore(node);
        }
    }

    void step(Node& node, const AskedTable& asked) const {
        node.tables.emplace_back(asked.rows.opcodes, asked.code);
        const auto rows = std::span(asked.rows.opcodes, asked.rows.count);
        const auto row = std::ranges::find(rows, asked.code, &Opcode::code);
        node.plain = row->action.decoder == nullptr;
        if (!row->name.empty()) node.name = row->name;
    }

    void explore(Node node) {
        if (node.link == "digital" && node.of.empty() &&
            (node.name == "subdevice_message" || node.name == "subdevice_command")) {
            explore_modules(node);
            return;
        }
        const std::size_t place = rows_.size();
        Fields fields;
        attempt(node, node.message(longest, 0));
        if (const AskedTable* const table = next_table(node))
            node.told_further = !node.any && !table->rows.other.empty();
        explore_into(node, fields);
        emit(node, fields, place);
    }

    // What stands for no message of its own adds to these fields.
    void explore_into(const Node& node, Fields& fields) {
        attempt(node, node.message(longest, 0));
        if (node.plain) {
            if (!is_of(node)) attempt(node, node.message(node.length(), 0));
            fields.add(tried_);
            return;
        }
        std::vector<const Opcode*> met;
        if (const AskedTable* const table = next_table(node)) {
            if (node.any) {
                met.push_back(table->rows.opcodes);
            } else {
                explore_table(node, *table, met, fields);
            }
        }
        if (node.name.empty()) return;
        // Further tables may stand behind bytes that no table was asked with.
        for (const Bytes& found : gather(node, fields, met)) {
            attempt(node, found);
            const AskedTable* const table = next_table(node);
            if (table == nullptr || std::ranges::find(met, table->rows.opcodes) != met.end()) continue;
            Node further = node;
            std::bitset<longest> tested;
            tried_.add_tested(tested);
            for (std::uint32_t k = 0; k < table->bytes.first && k < found.size(); ++k) {
                if (tested[k] && !further.has(k)) further.code[k] = found[k];
            }
            explore_table(further, *table, met, fields);
        }
    }

    void explore_table(const Node& node, const AskedTable& asked, std::vector<const Opcode*>& met,
                       Fields& fields) {
        const AskedTable table = asked;
        met.push_back(table.rows.opcodes);
        if (!table.some) return;
        std::set<std::uint32_t> seen;
        bool other_seen = false;
        const std::uint32_t at = table.bytes.first;
        std::vector<Node> children;
        for (std::uint32_t value = 0; value < 256; ++value) {
            Bytes bytes = node.message(longest, 0);
            bytes[at] = static_cast<std::uint8_t>(value);
            attempt(node, bytes);
            const AskedTable* const next = is_of(node) ? next_table(node) : nullptr;
            if (next == nullptr || next->rows.opcodes != table.rows.opcodes) continue;
            Node child = node;
            child.told_further = false;
            if (next->known) {
                if (!seen.insert(next->code).second) continue;
                child.code[at] = static_cast<std::uint8_t>(value);
                step(child, *next);
            } else {
                if (other_seen || table.rows.other.empty()) continue;
                other_seen = true;
                child.name = table.rows.other;
                child.other[at] = static_cast<std::uint8_t>(value);
                child.any = true;
                child.any_at = at;
                child.plain = false;
            }
            children.push_back(std::move(child));
        }
        for (const Node& child : children) {
            if (child.name == node.name) {
                explore_into(child, fields);
            } else {
                explore(child);
            }
        }
    }

    // Fields that messages of this node have: messages of many lengths and contents are tried, and in those
    // that showed something new each value of each byte that decided something. Gives messages that asked a
    // table that was not met yet.
    std::vector<Bytes> gather(const Node& node, Fields& fields, const std::vector<const Opcode*>& met) {
        constexpr std::array<std::uint8_t, 6> fillings = {0x00, 0x01, 0x04, 0x10, 0xC3, 0xFF};
        std::vector<Bytes> interesting;
        std::vector<Bytes> with_table;
        std::set<const Opcode*> tables(met.begin(), met.end());
        std::bitset<longest> known_tested;
        std::map<const Item*, AskedTable> lists;
        const auto look = [&](const Bytes& bytes) {
            attempt(node, bytes);
            if (!tried_.known() || !is_of(node)) return;
            if (const AskedTable* const table = next_table(node)) {
                if (tables.insert(table->rows.opcodes).second) with_table.push_back(bytes);
            }
            if (tried_.name() != node.name) return;
            for (const AskedTable& asked : tried_.asked()) {
                if (asked.rows.items != nullptr && asked.some) lists.emplace(asked.rows.items, asked);
            }
            std::bitset<longest> tested;
            tried_.add_tested(tested);
            for (std::size_t k = bytes.size(); k < longest; ++k) tested.reset(k);
            const bool new_tested = (tested & ~known_tested).any();
            known_tested |= tested;
            if (fields.add(tried_) || new_tested) interesting.push_back(bytes);
        };
        const std::uint32_t first = node.length();
        for (const std::uint8_t fill : fillings) {
            for (std::uint32_t length = longest; length >= first; --length) look(node.message(length, fill));
        }
        for (const auto& [items, list] : lists) {
            for (const Item& item : std::span(items, list.rows.count)) {
                look_at_item(node, list.bytes.first, item, look);
            }
        }
        // Lists say the same at each place.
        constexpr int most_times = 3;
        constexpr int most_sweeps = 16;
        std::array<int, longest> times{};
        int sweeps = 0;
        // NOLINTNEXTLINE(modernize-loop-convert): it grows meanwhile
        for (std::size_t k = 0; k < interesting.size(); ++k) {
            attempt(node, interesting[k]);
            std::bitset<longest> tested;
            tried_.add_tested(tested);
            for (std::uint32_t at = 0;
                 at < std::min<std::size_t>(interesting[k].size(), longest) && sweeps < most_sweeps; ++at) {
                if (!tested[at] || node.has(at) || times[at] == most_times) continue;
                ++times[at];
                ++sweeps;
                for (std::uint32_t value = 0; value < 256; ++value) {
                    Bytes bytes = interesting[k];
                    bytes[at] = static_cast<std::uint8_t>(value);
                    look(bytes);
                }
            }
        }
        return with_table;
    }

    // An item of a list as its only one: behind its id stands its length, in one byte or in two.
    template <class Look>
    void look_at_item(const Node& node, std::uint32_t at, const Item& item, Look look) {
        constexpr std::array<std::uint8_t, 8> lengths = {0, 1, 2, 4, 5, 8, 16, 20};
        for (const std::uint8_t fill : {std::uint8_t{0}, std::uint8_t{0x31}}) {
            for (const std::uint8_t length : lengths) {
                for (const std::uint32_t before : {0U, 1U}) {
                    Bytes bytes = node.message(at + 2 + before + length, fill);
                    bytes[at] = static_cast<std::uint8_t>(item.code);
                    bytes[at + 1] = 0;
                    bytes[at + 1 + before] = length;
                    look(bytes);
                }
            }
        }
    }

    // byte 1: address and type of the module. From the system the type is the one that was taught. Modules
    // that ask the same tables are one.
    void explore_modules(const Node& node) {
        struct Family {
            const Opcode* table;
            Node node;
        };
        std::vector<Family> families;
        for (std::uint8_t type = 0; type < 32; ++type) {
            Node module = node;
            module.taught.module_type = type;
            module.other[1] = static_cast<std::uint8_t>(node.direction == to_dhs ? type << 3 : 0);
            const Tried& tried = attempt(module, module.message(longest, 0));
            const AskedTable* const table = next_table(module);
            const Opcode* const rows = table != nullptr ? table->rows.opcodes : nullptr;
            for (const NotedValue& v : tried.values()) {
                if (v.name == "module" && v.meaning.known) module.of = tried.shown(v);
            }
            if (module.of.empty()) continue;
            const auto family = std::ranges::find(families, rows, &Family::table);
            if (family == families.end()) {
                families.push_back({rows, std::move(module)});
            } else {
                family->node.of.append(", ").append(module.of);
            }
        }
        const std::size_t place = rows_.size();
        Fields fields;
        for (const Family& family : families) explore_into(family.node, fields);
        emit(node, fields, place);
    }

    // byte 1: method   byte 2: class or event
    void explore_objects(const Node& server) {
        constexpr std::uint8_t notify = 4;
        constexpr std::uint8_t last_method = 6;
        constexpr std::uint8_t end = 0xFF;
        if (server.direction == to_dhs) {
            for (const ztdecode_name_record& event : Tab_Events_Opcodes) {
                if (event.code == end) continue;
                Node node = server;
                node.code[1] = notify;
                node.code[2] = event.code;
                node.name = object::notification_name(event.code);
                if (node.name == "get_property_result") {
                    explore_answers(node);
                } else {
                    explore(node);
                }
            }
            return;
        }
        for (const ztdecode_class_record& object_class : Tab_Classes_Opcodes) {
            if (object_class.properties == nullptr) continue;
            for (std::uint8_t method = 0; method <= last_method; ++method) {
                if (method == notify) continue;
                Node node = server;
                node.code[1] = method;
                node.code[2] = object_class.opcode;
                node.name = object::command_name(method);
                node.of = object_class.name;
                Fields fields;
                add_properties(node, object_class, fields);
                emit(node, fields);
            }
        }
    }

    // The class is told by byte 4, or it is the one that was spoken of before.
    void explore_answers(const Node& event) {
        for (const ztdecode_class_record& object_class : Tab_Classes_Opcodes) {
            if (object_class.properties == nullptr) continue;
            Node node = event;
            node.of = object_class.name;
            const bool told = object_class.opcode < 15;
            node.other[3] = told ? 0 : 1;
            if (told) node.other[4] = object_class.opcode;
            node.taught.properties = object_class.properties;
            Fields fields;
            add_properties(node, object_class, fields);
            emit(node, fields);
        }
    }

    // Each property as the first one, which begins at byte 3, 5 or 6, with a value of two bytes.
    void add_properties(const Node& node, const ztdecode_class_record& object_class, Fields& fields) {
        constexpr std::array<std::uint8_t, 3> value_of_two = {0x02, 0xC3, 0xA9};  // a letter as text
        const auto look = [&](const Bytes& bytes) {
            attempt(node, bytes);
            if (tried_.known() && tried_.name() == node.name) fields.add(tried_);
        };
        const std::uint32_t first = first_property(node, object_class.opcode);
        look(node.message(first, 0));
        Bytes acknowledged = node.message(first, 0);
        acknowledged[1] |= 0x80;
        look(acknowledged);
        for (const ztdecode_property_record* p = object_class.properties; p->id != 0xFF; ++p) {
            Bytes value = {p->id};
            if ((p->id & 0x80) != 0) value.push_back(1);
            value.insert(value.end(), value_of_two.begin(), value_of_two.end());
            Bytes bytes = node.message(first, 0);
            bytes.insert(bytes.end(), value.begin(), value.end());
            look(bytes);
        }
    }
    static std::uint32_t first_property(const Node& node, std::uint8_t object_class) {
        constexpr std::uint8_t insert_item = 6;
        constexpr std::uint8_t delete_item = 5;
        const std::uint8_t method = node.code.at(1);
        if (node.direction == to_dhs) return 5;
        if (method == insert_item || method == delete_item) return 6;
        return object_class >= 0x80 ? 5 : 3;
    }

    void emit(const Node& node, const Fields& fields) { emit(node, fields, rows_.size()); }
    // In front of those that were found since.
    void emit(const Node& node, const Fields& fields, std::size_t place) {
        if (node.name.empty() || node.told_further) return;
        rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(place),
                     {node.link, node.direction, node.shown(), node.name, node.of, fields.sorted()});
    }

    void sort() {
        add_emulated();
        std::map<std::string_view, std::size_t> order;
        for (const CatalogRow& row : rows_) order.emplace(row.link, order.size());
        std::ranges::stable_sort(rows_, [&](const CatalogRow& a, const CatalogRow& b) {
            if (a.link != b.link) return order[a.link] < order[b.link];
            if (a.direction != b.direction) return a.direction < b.direction;
            return a.of.empty() && !b.of.empty();
        });
    }

    // Messages of a digital set that its link does not carry as they are: within the emulation of a set by a
    // computer-link module they are.
    void add_emulated() {
        for (const auto& [direction, table] : digital_) {
            for (const Opcode& row : std::span(table.opcodes, table.count)) {
                Node node{.link = "digital", .direction = direction};
                node.code[0] = static_cast<std::uint8_t>(row.code);
                const std::string code = node.shown();
                const auto same = [&](const CatalogRow& r) {
                    return r.link == node.link && r.direction == node.direction && r.code == code;
                };
                if (std::ranges::any_of(rows_, same)) continue;
                const auto next = std::ranges::find_if(rows_, [&](const CatalogRow& r) {
                    return r.link == node.link && r.direction == node.direction && r.code > code;
                });
                rows_.insert(next, {node.link, direction, code, row.name});
            }
        }
    }

    Tried tried_;
    std::vector<CatalogRow> rows_;
    std::map<std::uint32_t, TableRows> digital_;  // by direction
};

}  // namespace

std::vector<CatalogRow> catalog() { return Walk().run(); }

}  // namespace ztdecode
