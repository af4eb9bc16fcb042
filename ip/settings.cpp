#include <algorithm>

#include "ip/messages.hpp"
#include "ip/values.hpp"

// The item lists of reset and of the application parameters.

namespace ztdecode::ip {

namespace {

constexpr std::uint32_t name_limit = 32;  // names have less bytes than that

void cust_name(const Item& item, Text& out) {
    if (item.length < name_limit) {
        out.add("cust_name: ");
        ip_characters(item, out);
    } else {
        out.print("cust_name: FIELD TOO LONG: {} bytes"_cf, item.length);
    }
}

void l10n_name(const Item& item, Text& out) {
    if (item.length < name_limit) {
        out.add("l10n_name: ");
        ip_characters(item, out);
    } else {
        out.print("l10n_name: FIELD TOO LONG: {} bytes"_cf, item.length);
    }
}

// Only the SIP name says that it is empty.
void sip_name(const Item& item, Text& out) {
    if (item.length == 0) {
        out.add("sip_name: <empty>");
    } else if (item.length < name_limit) {
        out.add("sip_name: ");
        ip_characters(item, out);
    } else {
        out.print("sip_name: FIELD TOO LONG: {} bytes"_cf, item.length);
    }
}

constexpr std::string_view updates[] = {" BOOT", " DATA", " CUST", " L10N", " CRYM", " CSIP"};  // bits 0-5

void update_mode(const Item& item, Text& out) {
    const std::uint32_t bits = item[0];
    if (bits == 0) out.add(" NONE");
    for (std::uint32_t bit = 0; bit < std::size(updates); ++bit) {
        if ((bits >> bit & 1) != 0) out.add(updates[bit]);
    }
}

constexpr auto application_modes = names({{0, " RYM"}, {1, " SIP"}}, "");

void application_mode(const Item& item, Text& out) { out.add(application_modes[item[0]]); }

constexpr auto reset_items = item_texts({{0, "update_mode:", update_mode},
                                         {1, "cause: BAD SECURITY MODE"},
                                         {2, cust_name},
                                         {3, l10n_name},
                                         {4, "appl_mode:", application_mode},
                                         {5, sip_name}});

constexpr std::uint32_t application_name_limit = 100;

void application_name(const Item& item, Text& out) {
    {
        const Text::Piece shown(out);
        out.copy(item.m, item.first, std::min(item.length, application_name_limit));
    }
    if (item.length == 1 && item[0] == '*') out.add(" (all)");
}

void no_or_yes(const Item& item, Text& out) { out.add(item[0] == 0 ? "no" : "yes"); }

constexpr auto application_items = item_texts(
    {{0, " appli: ", application_name}, {1, " enable: ", no_or_yes}, {2, " url: ", ip_characters}});

}  // namespace

void reset_list(const Message& m, std::uint32_t first, Text& out) {
    write_list(m, first, out, [](const Item& item, Text& text) {
        if (!reset_items.write(item, text)) text.add("???");
    });
}

void application_list(const Message& m, std::uint32_t first, Text& out) {
    write_list(m, first, out, [](const Item& item, Text& text) {
        if (!application_items.write(item, text)) text.print(" unknown: {}"_cf, item.id);
    });
}

}  // namespace ztdecode::ip
