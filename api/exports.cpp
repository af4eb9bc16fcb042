#include <algorithm>
#include <cstring>
#include <new>

#include "api/session.hpp"
#include "core/data.hpp"
#include "decode/line_texts.hpp"

using namespace ztdecode;
using namespace ztdecode::api;

static_assert(std::string_view(ZT_VERSION) == ZTDECODE_VERSION, "the header's version is the project's");

namespace {

constexpr std::uint32_t all_flags = ZT_COLOR | ZT_AUDIO_ONLY | ZT_DEBUG | ZT_PAD;
// No structure of options was smaller, and none will be larger.
constexpr std::size_t smallest_options = sizeof(zt_options);
constexpr std::size_t largest_options = 4096;

bool among(int value, int last) { return value >= 0 && value <= last; }

// The options as this library knows them.
zt_status take_options(const zt_options* given, zt_options& taken) noexcept {
    taken = ZT_OPTIONS_INIT;
    if (given == nullptr) return ZT_OK;
    if (given->size < smallest_options || given->size > largest_options) return ZT_BAD_SIZE;
    taken = *given;
    const auto* const behind = reinterpret_cast<const unsigned char*>(given);  // NOLINT: what we do not know
    const bool unknown =
        std::any_of(behind + sizeof taken, behind + given->size, [](auto c) { return c != 0; });
    const bool known = (taken.flags & ~all_flags) == 0 && among(taken.detail, ZT_WORDS) &&
                       among(taken.layout, ZT_LAYOUT_SPZT_LNG2) && among(taken.direction, ZT_TO_SYSTEM);
    return known && !unknown ? ZT_OK : ZT_BAD_OPTIONS;
}

// What `work` gives goes to the host; where it throws, there was no memory.
template <class Result, class Work>
zt_status given(zt_session* session, const Result** result, Work work) noexcept {
    if (result != nullptr) *result = nullptr;
    if (session == nullptr) return ZT_BAD_ARGUMENT;
    try {
        const Result* const made = work();
        if (result != nullptr) *result = made;
        return ZT_OK;
    } catch (...) {
        session->release();
        return ZT_NO_MEMORY;
    }
}

const HostRecord& own(const zt_record* record) noexcept { return static_cast<const HostRecord&>(*record); }

}  // namespace

extern "C" {

const char* zt_version(void) { return ZT_VERSION; }

const char* zt_status_text(zt_status status) {
    switch (status) {
        case ZT_OK:
            return "done as asked";
        case ZT_DONE:
            return "the line has no further message";
        case ZT_REFUSED:
            return "the line cannot be read any further";
        case ZT_NO_MEMORY:
            return "there is no memory for this";
        case ZT_BAD_ARGUMENT:
            return "an argument is null or not one of its values";
        case ZT_BAD_OPTIONS:
            return "an option is not known";
        case ZT_BAD_SIZE:
            return "the options have no size that there was";
    }
    return "unknown status";
}

zt_status zt_session_create(const zt_options* options, zt_session** session) {
    if (session == nullptr) return ZT_BAD_ARGUMENT;
    *session = nullptr;
    zt_options taken;
    const zt_status status = take_options(options, taken);
    if (status != ZT_OK) return status;
    *session = new (std::nothrow) zt_session(taken);
    return *session != nullptr ? ZT_OK : ZT_NO_MEMORY;
}

void zt_session_destroy(zt_session* session) { delete session; }

zt_status zt_session_set_options(zt_session* session, const zt_options* options) {
    if (session == nullptr) return ZT_BAD_ARGUMENT;
    zt_options taken;
    const zt_status status = take_options(options, taken);
    if (status == ZT_OK) session->set(taken);
    return status;
}

zt_status zt_decode(zt_session* session, const std::uint8_t* bytes, std::size_t length,
                    zt_direction direction, const zt_record** record) {
    if (record == nullptr) return ZT_BAD_ARGUMENT;
    *record = nullptr;
    if ((bytes == nullptr && length != 0) || !among(direction, ZT_TO_SYSTEM)) return ZT_BAD_ARGUMENT;
    return given(session, record, [&] { return session->decode({bytes, length}, direction); });
}

zt_status zt_feed_line(zt_session* session, const char* text, std::size_t length, const zt_line** line) {
    if (line != nullptr) *line = nullptr;
    if (text == nullptr && length != 0) return ZT_BAD_ARGUMENT;
    return given(session, line, [&] {
        return session->feed(length == 0 ? std::string_view() : std::string_view(text, length));
    });
}

zt_status zt_next_message(zt_session* session, const zt_record** record) {
    if (record == nullptr) return ZT_BAD_ARGUMENT;
    const zt_status status = given(session, record, [&] { return session->next(); });
    if (status != ZT_OK || *record != nullptr) return status;
    return session->refused() ? ZT_REFUSED : ZT_DONE;
}

const zt_field* zt_field_at(const zt_record* record, std::size_t index) {
    return record != nullptr && index < record->fields ? own(record).first_field + index : nullptr;
}

const zt_word* zt_word_at(const zt_record* record, std::size_t index) {
    return record != nullptr && index < record->words ? own(record).first_word + index : nullptr;
}

const zt_record* zt_part_at(const zt_record* record, std::size_t index) {
    return record != nullptr && index < record->parts ? own(record).first_part[index] : nullptr;
}

const zt_field* zt_find_field(const zt_record* record, const char* name) {
    if (record == nullptr || name == nullptr) return nullptr;
    const std::span<const zt_field> fields(own(record).first_field, record->fields);
    const auto found = std::find_if(fields.begin(), fields.end(), [name](const zt_field& field) {
        return std::string_view(field.name.data, field.name.size) == name;
    });
    return found != fields.end() ? &*found : nullptr;
}

std::uint64_t zt_segment_at(const zt_record* record, std::size_t index) {
    return record != nullptr && index < record->segments ? own(record).first_segment[index] : 0;
}

const char* zt_outcome_name(zt_outcome outcome) {
    switch (outcome) {
        case ZT_DECODED:
            return "decoded";
        case ZT_UNKNOWN_MESSAGE:
            return "unknown";
        case ZT_UNKNOWN_CLASS:
            return "refused";
        case ZT_LEFT_OUT:
            return "left_out";
    }
    return nullptr;
}

// (Kinds and sensitivities have the same numbers inside.)
const char* zt_kind_name(zt_kind kind) {
    return among(kind, ZT_BYTES) ? data::name_of(static_cast<Kind>(kind)).data() : nullptr;
}

const char* zt_sensitivity_name(zt_sensitivity sensitivity) {
    return among(sensitivity, ZT_SECRET) ? data::name_of(static_cast<Sensitivity>(sensitivity)).data()
                                         : nullptr;
}

const char* zt_refusal_name(zt_refusal refusal) {
    switch (refusal) {
        case ZT_NOT_REFUSED:
            return name_of(Refusal::Reason::none).data();
        case ZT_REFUSED_NO_LENGTH:
            return name_of(Refusal::Reason::no_length_byte).data();
        case ZT_REFUSED_TOO_LONG:
            return name_of(Refusal::Reason::length_above_256).data();
        case ZT_REFUSED_TOO_SHORT:
            return name_of(Refusal::Reason::too_short).data();
        case ZT_REFUSED_NO_HEXADECIMAL:
            return name_of(Refusal::Reason::no_hexadecimal).data();
        case ZT_REFUSED_NO_TAG:
            return name_of(Refusal::Reason::no_tag).data();
        case ZT_REFUSED_NO_DIRECTION:
            return name_of(Refusal::Reason::no_sr_column).data();
    }
    return nullptr;
}

}  // extern "C"
