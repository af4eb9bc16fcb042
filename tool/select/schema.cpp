#include "tool/select/schema.hpp"

#include <span>
#include <string_view>

#include "tool/report/identity.hpp"
#include "tool/report/reported.hpp"

namespace ztdecode::tool {

namespace {

constexpr auto tables = R"(
create table files(
    id integer primary key, name text, sha256 text, bytes integer, lines integer, messages integer,
    refused integer);
create table message_names(id integer primary key, link text, direction text, message text, status text);
create table message_rows(
    id integer primary key, file integer, line integer, columns text, time text, name integer, code integer,
    length integer, bytes blob, text text, unknown integer, missing integer, padded integer, depth integer,
    parent integer);
create table field_names(id integer primary key, name text, kind text, unit text, sensitivity text);
create table field_rows(
    message integer, name integer, value, code integer, first_byte integer, last_byte integer, known integer,
    missing integer);
create table line_rows(
    id integer primary key, file integer, line integer, verdict text, reason text, "column" integer,
    expected integer, found integer, content text);
)";

constexpr auto indexes = R"(
create index message_rows_name on message_rows(name);
create index message_rows_parent on message_rows(parent) where parent is not null;
create index field_rows_message on field_rows(message);
create index field_rows_name on field_rows(name);
create index line_rows_verdict on line_rows(verdict);
)";

// A field that a message has several times is an array in the JSON of its fields, where it stands first.
constexpr auto plain_views = R"(
create view messages as select
    m.id, f.name as file, m.line, m.columns, m.time, n.direction, n.link, n.message, m.code, n.status,
    m.length, m.bytes, lower(hex(m.bytes)) as hex, m.text,
    (select json_group_object(name, json(value)) from (
        select name, iif(count(*) = 1, value, '[' || group_concat(value) || ']') as value from (
            select v.rowid as place, n.name, iif(n.kind = 'flag', iif(v.value, 'true', 'false'),
                json_quote(v.value)) as value
            from field_rows v join field_names n on n.id = v.name where v.message = m.id order by v.rowid)
        group by name order by min(place))) as fields,
    m.unknown, m.missing, m.padded, m.depth,
    (select n.message from message_rows p join message_names n on n.id = p.name where p.id = m.parent) as parent,
    m.parent as parent_id, m.file as file_id
from message_rows m
left join message_names n on n.id = m.name
left join files f on f.id = m.file;

create view fields as select
    v.message as message_id, f.name as file, m.line, m.columns, n.direction, n.link, n.message, d.name, d.kind, v.value,
    v.code, d.unit, v.first_byte, v.last_byte, d.sensitivity, v.known, v.missing, v.rowid as place
from field_rows v
left join field_names d on d.id = v.name
left join message_rows m on m.id = v.message
left join message_names n on n.id = m.name
left join files f on f.id = m.file;

create view lines as select
    f.name as file, l.line, l.verdict, l.reason, l."column", l.expected, l.found, l.content, l.file as file_id
from line_rows l left join files f on f.id = l.file;
)";

// A view of some messages with some of their fields: the first value of each, or null.
struct View {
    std::string_view name;
    std::string_view messages;
    // Of several names the one that the message has.
    std::span<const std::string_view> fields;
};

constexpr std::string_view reset_fields[] = {
    "reset_kind",
    "reset_cause",
    "module",
    "module_address",
    "terminal_type,term_type",
    "software_version,softversion,code_version",
    "self_test",
};
constexpr std::string_view ticket_fields[] = {
    "call_end_date",     "call_duration",    "local_id",
    "distant_id",        "source_ip",        "remote_ip",
    "equipment_type",    "channel_number",   "codec",
    "packets_received",  "packets_sent",     "packets_lost",
    "requested_framing", "received_framing", "total_silence",
    "minimum_delay",     "maximum_delay",    "icmp_unreachable",
    "diffserv",          "node_number",
};
constexpr View message_views[] = {
    {"resets",
     "m.message in ('reset', 'init', 'software_reset', 'warm_start', 'subdevice_reset', 'reset_subdevices')",
     reset_fields},
    {"tickets", "m.link = 'ip' and m.message = 'qos_ticket'", ticket_fields},
    {"terminals", "m.direction = 'to' and m.message in ({identity_messages})", identity_fields},
};

// The first value of a field; of a message that `id` names.
std::string field_of(std::string_view id, std::string_view names) {
    std::string quoted = "'";
    for (const char c : names) quoted += c == ',' ? std::string("', '") : std::string(1, c);
    quoted += "'";
    return "(select v.value from field_rows v join field_names d on d.id = v.name where v.message = " +
           std::string(id) + " and d.name in (" + quoted + ") order by v.rowid limit 1)";
}

void put_in(std::string& words, std::string_view place, const std::string& names) {
    if (const std::size_t at = words.find(place); at != std::string::npos)
        words.replace(at, place.size(), names);
}

void add_quoted(std::string_view name, std::string& names) {
    names.append(names.empty() ? "'" : ", '").append(name).append("'");
}

std::string statement_of(const View& view) {
    std::string words = "create view " + std::string(view.name) +
                        " as select m.id as message_id, m.file, m.line, m.columns, m.direction, m.link, " +
                        "m.message, " + field_of("m.parent_id", "set_number") + " as hub_set";
    for (const std::string_view names : view.fields) {
        words += ", " + field_of("m.id", names) + " as " + std::string(names.substr(0, names.find(',')));
    }
    words += ", m.text, m.file_id from messages m where " + std::string(view.messages) + ";\n";
    std::string names;
    for (const std::string_view name : identity_messages) add_quoted(name, names);
    put_in(words, "{identity_messages}", names);
    return words;
}

// A call is an RTP start with the first stop of its channel before the next start there, and the first ticket
// for its address before the next start to that.
std::string calls_view() {
    const auto field = [](std::string_view names) {
        return field_of("m.id", names) + " as " + std::string(names);
    };
    return "create view calls as with rtp as materialized (\n"
           "    select m.id, m.file_id, m.line, m.columns, m.message, m.file,\n        " +
           field("channel_number") + ",\n        " + field("remote_ip") +
           "\n    from messages m where m.link = 'ip' and m.message in ('start_rtp', 'stop_rtp', "
           "'qos_ticket')),\n"
           "numbered as materialized (select *,\n"
           "        count(*) filter (where message = 'start_rtp')\n"
           "            over (partition by file_id, channel_number order by id) as on_channel,\n"
           "        count(*) filter (where message = 'start_rtp')\n"
           "            over (partition by file_id, remote_ip order by id) as to_address\n"
           "    from rtp),\n"
           "stops as materialized (select file_id, channel_number, on_channel, min(id) as id, line, columns\n"
           "    from numbered where message = 'stop_rtp' group by 1, 2, 3),\n"
           "ends as materialized (select file_id, remote_ip, to_address, min(id) as id, line\n"
           "    from numbered where message = 'qos_ticket' and remote_ip is not null group by 1, 2, 3)\n"
           "select m.file, m.line as start_line, stops.line as stop_line, ends.line as ticket_line,\n"
           "    m.columns as started, stops.columns as stopped, m.channel_number, m.remote_ip,\n    " +
           field("remote_udp_port") + ",\n    " + field("local_udp_port") + ",\n    " + field("codec") +
           ",\n    t.local_id, t.distant_id, t.call_duration, t.packets_received, t.packets_sent,\n"
           "    t.packets_lost, t.maximum_delay, m.id as start_id, stops.id as stop_id, ends.id as "
           "ticket_id,\n"
           "    m.file_id\n"
           "from numbered m\n"
           "left join stops on stops.file_id = m.file_id and stops.channel_number is m.channel_number\n"
           "    and stops.on_channel = m.on_channel\n"
           "left join ends on ends.file_id = m.file_id and ends.remote_ip = m.remote_ip\n"
           "    and ends.to_address = m.to_address\n"
           "left join tickets t on t.message_id = ends.id\n"
           "where m.message = 'start_rtp' order by m.id;\n";
}

// What terminals complain of, what could not be decoded, and what is not to be believed.
constexpr std::string_view errors_view = R"(
create view errors as
select 'reported' as what, file, line, columns, link, message, trim(text, char(9, 10) || ' -') as detail,
    id as message_id, file_id
from messages where direction = 'to' and (message in ({reported})
    or (link in ('call_server', 'presentation_server')
        and (message like 'error\_%' escape '\' or message like 'warning\_%' escape '\')))
union all
select 'refused line', file, line, null, null, null, reason, null, file_id from lines where verdict = 'refused'
union all
select status || ' message', file, line, columns, link, message, coalesce('code ' || code, 'no code'), id, file_id
from messages where status <> 'decoded'
union all
select 'unknown value', file, line, columns, link, message, unknown || ' values that no table knows', id, file_id
from messages where unknown > 0 and status = 'decoded'
union all
select 'missing bytes', file, line, columns, link, message, missing || ' missing bytes', id, file_id
from messages where missing > 0
union all
select 'padded', file, line, columns, link, message, padded || ' bytes taken as ff', id, file_id
from messages where padded > 0
order by file_id, line, message_id;
)";

std::string errors_statement() {
    std::string names;
    for (const Reported& one : reported) add_quoted(one.message, names);
    std::string words(errors_view);
    put_in(words, "{reported}", names);
    return words;
}

constexpr std::string_view readable[] = {
    "files",         "messages",    "fields",    "lines",        "resets",     "calls",
    "tickets",       "terminals",   "errors",    "message_rows", "field_rows", "line_rows",
    "message_names", "field_names", "json_each", "json_tree",
};

}  // namespace

void create_tables(sqlite::Connection& database) {
    database.run(tables);
    database.run(("pragma application_id = " + std::to_string(database_identity)).c_str());
    database.run(("pragma user_version = " + std::to_string(database_version)).c_str());
}

void create_views(sqlite::Connection& database) {
    database.run(plain_views);
    for (const View& view : message_views) database.run(statement_of(view).c_str());
    database.run(calls_view().c_str());
    database.run(errors_statement().c_str());
}

void create_indexes(sqlite::Connection& database) { database.run(indexes); }

void drop_indexes(sqlite::Connection& database) {
    database.run(
        "drop index message_rows_name; drop index message_rows_parent; drop index field_rows_message;"
        "drop index field_rows_name; drop index line_rows_verdict;");
}

sqlite::Readable readable_tables() {
    sqlite::Readable all;
    for (const std::string_view name : readable) all.tables.emplace(name);
    return all;
}

}  // namespace ztdecode::tool
