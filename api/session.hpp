#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "api/records.hpp"
#include "core/session.hpp"
#include "core/trail.hpp"
#include "decode/trace_lines.hpp"
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
    zt_line_kind begin(ztdecode::Line line);
    void begin_trace_line();
    void find_message();
    // What the line of a message says of it.
    struct InLine {
        std::uint64_t padded = 0;
        std::uint64_t left_over = 0;
    };
    const zt_record* record(const ztdecode::Message& m, std::uint64_t place, InLine in_line);

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

    ztdecode::TraceReader reader_;
    bool reader_is_old_ = false;  // options have changed since it was made
    std::string line_text_;
    ztdecode::Text reason_;
    zt_line line_{};
    bool pending_ = false;  // the reader has found the next message
    bool goes_on_ = false;  // ... and may find another one behind it
    bool refused_ = false;  // the line is, and that has not been told
};
