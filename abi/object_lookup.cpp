#include "object/lookup.hpp"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "abi/application_buffer.hpp"
#include "abi/process.hpp"

namespace abi = ztdecode::abi;
using ztdecode::Text;

namespace {

constexpr std::size_t help_size = 20000;

// No byte has such a code: it has no row.
std::uint8_t code_or_sentinel(int code) {
    return code >= 0 && code <= 255 ? static_cast<std::uint8_t>(code) : 255;
}

}  // namespace

extern "C" {

char str_help[help_size] = "";
std::uint32_t hlp_idx = 0;

const char* Look(int code, const ztdecode_name_record* table) {
    return table != nullptr ? ztdecode::object::find_name(code_or_sentinel(code), table) : "";
}

const char* Lclass(int code, const ztdecode_class_record* table) {
    if (table == nullptr) return "";
    const ztdecode_class_record& found = ztdecode::object::find_class(code_or_sentinel(code), table);
    abi::session().object.properties.now() = found.properties;
    if (found.properties == nullptr) {
        abi::add_application_text("\nError class lookup table ptr");
        abi::end_for_unknown_class();
    }
    return found.name;
}

const char* Lprop(int id, const ztdecode_property_record* table, std::uint16_t* count_out,
                  std::uint8_t* type_out) {
    if (table == nullptr) return "";
    const ztdecode_property_record& found = ztdecode::object::find_property(code_or_sentinel(id), table);
    if (count_out != nullptr) *count_out = found.count;
    if (type_out != nullptr) *type_out = found.type;
    return found.name;
}

void ph(const char* format, ...) {
    if (hlp_idx >= help_size) return;
    const std::size_t room = help_size - hlp_idx;
    va_list arguments;
    va_start(arguments, format);
    const int formatted = std::vsnprintf(str_help + hlp_idx, room, format, arguments);
    va_end(arguments);
    if (formatted < 0) return;
    hlp_idx += static_cast<std::uint32_t>(std::min(static_cast<std::size_t>(formatted), room - 1));
}

int ClassProp_Help(void) {
    static abi::KeptText kept;
    Text& listing = kept;
    try {
        listing.clear();
        ztdecode::object::list_classes(listing);
    } catch (...) {
        listing.clear();
    }
    hlp_idx = static_cast<std::uint32_t>(listing.view().copy(str_help, help_size - 1));
    str_help[hlp_idx] = '\0';
    // The listing looks every class up, and the last one stays the current one.
    abi::session().object.properties.now() = Tab_ime_context;
    return 0;
}
}
