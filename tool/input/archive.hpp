#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "tool/input/source.hpp"

namespace ztdecode::tool {

// Whether the first bytes of a source are those of something compressed or packed that can be read; `unsure`:
// more of them are needed to tell.
enum class Packed { no, yes, unsure };
Packed is_packed(std::string_view first_bytes);

// What is compressed or packed, as a stream: never more of it is in memory than a block.
class Archive {
  public:
    // `source` stays until the archive is done.
    explicit Archive(Source& source);
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;
    ~Archive();

    // The next file in it, null behind the last one or when something is wrong; valid until the next call.
    Source* next();
    // What the file is called, empty when the archive is one compressed file and nothing else.
    const std::string& name() const noexcept;
    const std::string& error() const noexcept;

  private:
    class Reader;
    std::unique_ptr<Reader> reader_;
};

}  // namespace ztdecode::tool
