#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "api/records.hpp"
#include "core/session.hpp"
#include "core/trail.hpp"
#include "decode/readers.hpp"
#include "ztdecode_session.h"

// A host's session. What throws is std::bad_alloc, and then it is as if nothing had been asked.
struct zt_session final : private ztdecode::SideChannel {
  public:
    explicit zt_session(const zt_options& options) noexcept;

    void set(const zt_options& options) noexcept;
    const zt_record* decode(std::span<const std::uint8_t> bytes, zt_direction direction);
    const zt_line* feed(std::string_view line);
    // Null behind the last message of the line.
    const zt_record* next();
    // Of the line, when `next` has given null: whether it is refused there; told once.
    bool refused() noexcept;

    // The room of the last message is given back.
    void release() noexcept;

  private:
    bool shows_output() const override { return (options_.flags & ZT_DEBUG) != 0; }
    void standard_output(std::string_view text) override;
    void standard_error(std::string_view text) override { complaints_ += text; }

    ztdecode::Trail new_trail() const noexcept;
    void begin_line();
    zt_layout layout_of(ztdecode::Line line) const;
    void note_refusal(ztdecode::Line line);
    const zt_record* record(const ztdecode::Message& m, std::uint64_t place, std::uint64_t padded);

    zt_options options_;
    ztdecode::Session session_;
    ztdecode::Trail trail_;
    ztdecode::Record record_;
    ztdecode::api::Records records_;
    ztdecode::Text text_;
    std::string traced_;
    std::string complaints_;
    std::array<std::uint8_t, ztdecode::message_capacity> bytes_;  // what a host's pointer led to
    std::uint64_t place_ = 0;                                     // calls so far

    ztdecode::LineReader reader_{ztdecode::LineReader::Behind::zeros};
    std::string line_text_;
    ztdecode::Text reason_;
    zt_line line_{};
    const ztdecode::Message* pending_ = nullptr;  // the line's next message, where it was looked for
    bool line_open_ = false;
    bool refused_ = false;
};
