#include <algorithm>
#include <iterator>
#include <string_view>

#include "core/phrase.hpp"
#include "ip/items.hpp"
#include "ip/messages.hpp"
#include "ip/values.hpp"

// The item lists of reset and of the application parameters.

namespace ztdecode::ip {

namespace {

constexpr std::uint32_t name_limit = 32;  // names have less bytes than that

template <class F>
void name(Decoding& d, std::string_view label, const F& too_long) {
    if (d.length() < name_limit) {
        d.add(label);
        characters(d);
    } else {
        d.print(too_long, d.stated_length());
    }
}

void cust_name(Decoding& d) { name(d, "cust_name: ", "cust_name: FIELD TOO LONG: {length} bytes"_cf); }

void l10n_name(Decoding& d) { name(d, "l10n_name: ", "l10n_name: FIELD TOO LONG: {length} bytes"_cf); }

// Only the SIP name says that it is empty.
void sip_name(Decoding& d) {
    if (d.length() == 0) {
        const Word empty{"sip_name: <empty>", 0, true, d.stated_length().place};
        add_phrase(d, row_field, empty, "sip_name: ");
    } else {
        name(d, "sip_name: ", "sip_name: FIELD TOO LONG: {length} bytes"_cf);
    }
}

constexpr std::string_view updates[] = {" BOOT", " DATA", " CUST", " L10N", " CRYM", " CSIP"};  // bits 0-5

void update_mode(Decoding& d) {
    const Byte bits = d[0];
    const bool known = bits.number >> std::size(updates) == 0;
    d.value(row_field, {Kind::word, known, 0, bits.number, bits.place}, [&] {
        if (bits.number == 0) d.add(" NONE");
        for (unsigned bit = 0; bit < std::size(updates); ++bit) {
            if (bits.bit(bit).holds) d.add(updates[bit]);
        }
    });
}

void application_mode(Decoding& d) {
    static constexpr auto application_modes = names({{0, " RYM"}, {1, " SIP"}}, "");
    d.value(row_field, application_modes[d[0]]);
}

constexpr auto reset_items = items({{0x00, "update_mode:", update_mode},
                                    {0x01, "cause: BAD SECURITY MODE"},
                                    {0x02, "", "cust_name", cust_name},
                                    {0x03, "", "l10n_name", l10n_name},
                                    {0x04, "appl_mode:", "application_mode", application_mode},
                                    {0x05, "", "sip_name", sip_name}},
                                   "???");

constexpr std::uint32_t application_name_limit = 100;

void application_name(Decoding& d) {
    {
        const Decoding::Piece shown(d);
        d.text(row_field, 0, std::min(d.length(), application_name_limit));
    }
    if (d.length() == 1) d.add_if(d[0] == '*', " (all)");
}

void unknown_item(Decoding& d) { d.print(" unknown: {-}"_cf, d.code()); }

constexpr auto application_items = items({{0x00, " appli: ", "application", application_name},
                                          {0x01, " enable: ", "application_enabled", yes_or_no},
                                          {0x02, " url: ", characters}},
                                         unknown_item);

}  // namespace

void reset_list(Decoding& d, std::uint32_t first) {
    write_list(d, first, [](Decoding& item, const Byte& id) { reset_items.write(item, id); });
}

void application_list(Decoding& d, std::uint32_t first) {
    write_list(d, first, [](Decoding& item, const Byte& id) { application_items.write(item, id); });
}

}  // namespace ztdecode::ip
