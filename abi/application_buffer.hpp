#pragma once

#include <cstddef>
#include <string_view>

#include "core/session.hpp"

// The application buffer: `app_buf`, `app_buf_size` and `app_idx` of the C interface. A host may write all
// three; nothing here trusts that they fit each other further than that `app_buf_size` bytes stand at
// `app_buf`.

namespace ztdecode::abi {

// What stands in the buffer; "" before the first output.
const char* application_text() noexcept;

// Appends text that was written in small pieces, however long it is as a whole.
void add_application_text(std::string_view text) noexcept;

// Appends one item as `p` does: what is longer than its line is cut, though the write position moves by the
// whole length.
void add_application_item(std::string_view item) noexcept;

// Makes the buffer hold this text and nothing else.
void set_application_text(std::string_view text) noexcept;

// What is appended from here on, or behind the text that the buffer is made to hold meanwhile, is taken back
// when memory runs out halfway.
void begin_application_text() noexcept;
bool application_text_is_whole() noexcept;  // nothing was dropped since then for want of memory
void take_back_application_text() noexcept;

// The buffer as the process-wide session writes it.
class ApplicationBuffer : public ApplicationText {
  public:
    void set(std::string_view text) override { set_application_text(text); }
    void add(std::string_view text) override { add_application_text(text); }
    void add_item(std::string_view item) override { add_application_item(item); }
};

}  // namespace ztdecode::abi
