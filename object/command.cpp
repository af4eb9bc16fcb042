#include "object/command.hpp"

#include "object/current_class.hpp"
#include "object/events.hpp"
#include "object/values.hpp"

// byte 0: server   byte 1: bits 0-6 method, bit 7 acknowledgement asked for
// Commands:  byte 2: class   bytes 3-4: object id   byte 5: item index   then properties
// Events:    byte 2: event   bytes 3-4: object id   then the event's body

namespace ztdecode {

namespace {

constexpr std::uint8_t get_property = 3;
constexpr std::uint8_t notify = 4;
constexpr std::uint8_t delete_item = 5;
constexpr std::uint8_t insert_item = 6;

constexpr std::uint8_t first_widget_class =
    0x80;  // from here on there are several objects of a class, with ids
constexpr std::uint8_t first_widget_event = 0x80;
constexpr std::uint8_t get_property_result = 0x94;
constexpr std::uint8_t first_result_without_class = 15;

std::uint8_t method_of(const Message& m) { return m[1] & 0x7F; }

void print_server(const Message& m, Text& out) { out.print("\n\tServer\t\t{}"_cf, server_name(m[0])); }

void print_command_header(const Message& m, std::string_view class_name, Text& out) {
    out.print("\n{}\t{}"_cf, method_name(method_of(m)), class_name);
    if (m.bit(1, 7)) out.add("\tAck");
    out.add("\n{");
    print_server(m, out);
}

void print_event_header(const Message& m, Text& out) {
    out.print("\n{}\t{}"_cf, method_name(method_of(m)), event_name(m[2]));
    out.add("\n{");
    print_server(m, out);
}

bool refuses_method_of_event(const Message& m, Text& out) {
    const std::uint8_t method = method_of(m);
    if (method == notify) return false;
    out.print("\nInvalid_method 0x{:02X} (TX->PBX)"_cf, method);
    return true;
}

// The body counts its bytes in 16 bits.
void print_event_body(Session& session, const Message& m, std::uint32_t first, Text& out) {
    const std::uint32_t length = m.length() > first ? (m.length() - first) & 0xFFFF : 0;
    if (length != 0) vDecodeEvent(session, m[2], Bytes{m, first, length}, out);
    out.add("\n}\n");
}

// byte 3: 0 when byte 4 tells the class whose properties were asked for. Else, and for the widgets, the class
// is the one that was looked up last.
void get_property_answer(Session& session, const Message& m, Text& out) {
    if (m[3] == 0 && m[4] < first_result_without_class) current_class(session, m[4], out);
    if (refuses_method_of_event(m, out)) return;
    print_event_header(m, out);
    print_event_body(session, m, 5, out);
}

}  // namespace

void analyse_cmd_pbx(Session& session, const Message& m, Text& out) {
    const std::uint8_t method = method_of(m);
    if (method == notify || method > insert_item) {
        out.print("\nInvalid_method 0x{:02X} (PBX->TX)"_cf, method);
        return;
    }
    const ObjectClass target = current_class(session, m[2], out);
    print_command_header(m, target.name, out);
    const bool item = method == insert_item || method == delete_item;
    std::uint32_t first_property = 3;
    if (item || m[2] >= first_widget_class) {
        out.print("\n\tObjectId\t0x{:02X}{:02X}"_cf, m[3], m[4]);
        first_property = 5;
    }
    if (item) {
        out.print("\n\tIndex\t{:02X}"_cf, m[5]);
        first_property = 6;
    }
    if (method == delete_item) {
        out.add("\n}");
        return;
    }
    print_properties(Bytes{m, 0, m.length()}, first_property, target.properties,
                     LengthField::one_or_two_bytes, method == get_property ? Values::none : Values::carried,
                     out);
    out.add("\n}\n");
}

void analyse_cmd_term(Session& session, const Message& m, Text& out) {
    if (m[2] == get_property_result) {
        get_property_answer(session, m, out);
        return;
    }
    if (refuses_method_of_event(m, out)) return;
    print_event_header(m, out);
    std::uint32_t first = 3;
    if (m[2] >= first_widget_event) {
        out.print("\n\tobjectId\t0x{:02X}{:02X}"_cf, m[3], m[4]);
        first = 5;
    }
    print_event_body(session, m, first, out);
}

void analyse_for_application(Session& session, Analyser analyse, const Message& m, Text& out) {
    const std::size_t begin = out.size();
    const auto show = [&] {
        if (session.object.application != nullptr) session.object.application->set(out.from(begin));
    };
    try {
        analyse(session, m, out);
    } catch (const UnknownClass&) {
        show();
        throw;
    }
    show();
}

}  // namespace ztdecode
