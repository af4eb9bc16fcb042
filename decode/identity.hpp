#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "core/session.hpp"

// Names that several links share: terminals, cadences, versions, errors, warnings and the audio
// configuration.

namespace ztdecode {

// A text of a few words that is made from numbers; lives as long as the expression that asked for it.
class ShortText {
  public:
    template <class Format, class... Args>
    explicit ShortText(const Format& format, const Args&... args) {
        char* end = format_bound(format, args...) <= text_.size()
                        ? write_format(text_.data(), format, args...)
                        : fmt::format_to_n(text_.data(), text_.size(), format, args...).out;
        size_ = static_cast<std::size_t>(end - text_.data());
    }
    explicit ShortText(std::string_view words) { size_ = words.copy(text_.data(), text_.size()); }
    std::string_view view() const noexcept { return {text_.data(), size_}; }

  private:
    std::array<char, 256> text_;
    std::size_t size_;
};

std::string_view type_poste(std::uint32_t code) noexcept;
std::string_view design_poste(int value) noexcept;
std::string_view ring_cadence(std::uint32_t code) noexcept;

// " LABEL=1.05": a blank, the label, the version. The label has at most 16 characters.
ShortText version_logiciel(std::string_view label, std::uint32_t major, std::uint32_t minor);
ShortText dec_err(std::uint32_t code);
ShortText dec_warn(std::uint32_t code);
void dec_selftest(std::uint32_t bits, Text& out);
void audio_config(Session& session, const Message& m, Text& out);

// Whether a message may be shown: always, or when the session wants audio messages only and it is one.
bool inListAudioOpcodes(const Session& session, std::uint32_t direction, std::uint8_t type) noexcept;

}  // namespace ztdecode
