#include "object/command.hpp"

#include "core/phrase.hpp"
#include "object/current_class.hpp"
#include "object/events.hpp"
#include "object/values.hpp"

// byte 0: server   byte 1: bits 0-6 method, bit 7 acknowledgement asked for
// Commands:  byte 2: class   bytes 3-4: object id   byte 5: item index   then properties
// Events:    byte 2: event   bytes 3-4: object id   then the event's body

namespace ztdecode::object {

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

[[gnu::always_inline]] inline Byte method_of(const Decoding& d) { return d[1] & 0x7F; }

// A method that is none of this direction, as two hexadecimal digits.
struct Refused {
    Byte method;

    std::size_t bound() const noexcept { return 2; }
    char* write(char* at) const noexcept { return write_format(at, "{-:02X}"_cf, method); }
    Meaning meaning() const noexcept { return {Kind::word, false, 0, method.number, method.place}; }
};

void print_command_header(Decoding& d, std::string_view class_name) {
    d.print("\n{-}\t{class}"_cf, method(method_of(d)), Word{class_name, d[2].number, true, d[2].place});
    const Condition asked = d.bit(1, 7);
    if (asked.holds) add_phrase(d, "acknowledge", flag(asked, "\tAck", ""), "\t");
    d.print("\n{{\n\tServer\t\t{server}"_cf, server(d[0]));
}

void print_event_header(Decoding& d) {
    if (d.trail() != nullptr) d.name(notification_name(d[2].number), d[2]);
    Word name = event(d[2]);
    if (name.known) {
        d.print("\n{-}\t{-}\n{{\n\tServer\t\t{server}"_cf, method(method_of(d)), name, server(d[0]));
    } else {
        name.kind = Kind::number;
        d.print("\n{-}\t{unknown_code}\n{{\n\tServer\t\t{server}"_cf, method(method_of(d)), name,
                server(d[0]));
    }
    d.on(d[2]);
}

bool refuses_method_of_event(Decoding& d) {
    const Byte method = method_of(d);
    if (d.on(method) == notify) return false;
    d.name("", method);
    d.print("\nInvalid_method 0x{method} (TX->PBX)"_cf, Refused{method});
    return true;
}

// The body counts its bytes in 16 bits.
void print_event_body(Decoding& d, std::uint32_t first) {
    const std::uint32_t length = d.length() > first ? (d.length() - first) & 0xFFFF : 0;
    if (length != 0) {
        const Byte event = d[2];
        const Decoding::Window body(d, first, length);
        event_body(d, event);
    }
    d.add("\n}\n");
}

// byte 3: 0 when byte 4 tells the class whose properties were asked for. Else, and for the widgets, the class
// is the one that was looked up last.
void get_property_answer(Decoding& d) {
    const Condition tells_class = d[3] == 0;
    if (tells_class.holds && d[4].number < first_result_without_class) current_class(d, d[4]);
    if (refuses_method_of_event(d)) return;
    print_event_header(d);
    if (d.on(tells_class)) d.on(d[4]);
    print_event_body(d, 5);
}

}  // namespace

void from_system(Decoding& d) {
    const Byte asked = method_of(d);
    const std::uint8_t method = d.on(asked);
    if (method == notify || method > insert_item) {
        d.name("", asked);
        d.print("\nInvalid_method 0x{method} (PBX->TX)"_cf, Refused{asked});
        return;
    }
    if (d.trail() != nullptr) d.name(command_name(method), asked);
    const ObjectClass target = current_class(d, d[2]);
    print_command_header(d, target.name);
    const std::uint8_t object_class = d.on(d[2]);
    const bool item = method == insert_item || method == delete_item;
    std::uint32_t first_property = 3;
    if (item || object_class >= first_widget_class) {
        d.print("\n\tObjectId\t0x{object_id:04X}"_cf, d.u16(3));
        first_property = 5;
    }
    if (item) {
        d.print("\n\tIndex\t{item_index:02X}"_cf, d[5]);
        first_property = 6;
    }
    if (method == delete_item) {
        d.add("\n}");
        return;
    }
    print_properties(d, first_property, target.properties, LengthField::one_or_two_bytes,
                     method == get_property ? Values::none : Values::carried);
    d.add("\n}\n");
}

void to_system(Decoding& d) {
    if (d[2].number == get_property_result) {
        get_property_answer(d);
        return;
    }
    if (refuses_method_of_event(d)) return;
    print_event_header(d);
    std::uint32_t first = 3;
    if (d[2].number >= first_widget_event) {
        d.print("\n\tobjectId\t0x{object_id:04X}"_cf, d.u16(3));
        first = 5;
    }
    print_event_body(d, first);
}

void for_application(Decoding& d, Decoder decoder) {
    ApplicationText* const application = d.session().object.application;
    if (application == nullptr) {
        decoder(d);
        return;
    }
    const std::size_t begin = d.out().size();
    try {
        decoder(d);
    } catch (const UnknownClass&) {
        application->set(d.out().from(begin));
        throw;
    }
    application->set(d.out().from(begin));
}

}  // namespace ztdecode::object
