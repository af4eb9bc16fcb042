#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ztdecode {

class Text;

// A run of message bytes: offsets first ... last in the message as it was captured (or in the reassembled
// one).
struct ByteRange {
    std::uint32_t first;
    std::uint32_t last;
    bool operator==(const ByteRange&) const = default;
};

// A piece of the decoded text and the bytes that were read to write it.
struct Stretch {
    std::size_t begin = 0;  // offsets in the text
    std::size_t end = 0;
    std::vector<ByteRange> bytes;  // ascending, apart from each other
    bool reassembled = false;      // the offsets count in the message put together from segments
    bool behind_the_end = false;   // a byte was asked for that the message does not have
};

// Which bytes each stretch of a text came from. Messages report what is read of them; between two reads the
// text's size tells whether something was written, so the text sink needs no hook and neither costs anything
// while nobody asks.
class Provenance {
  public:
    static constexpr std::uint32_t behind_the_end = 0xFFFFFFFF;
    // What a text has behind so many stretches is one stretch.
    static constexpr std::size_t most_stretches = 65536;

    // Starts anew for the text that is written to `text` from its present end on.
    void start(const Text& text);
    void read(std::uint32_t offset, bool reassembled) noexcept { read({offset, offset}, reassembled); }
    void read(ByteRange bytes, bool reassembled) noexcept;

    // What `write` writes is no stretch, nor a part of one.
    template <class Write>
    void without(Write write) {
        if (written()) close();
        write();
        pass_over();
    }

    // What is written while it lives is one stretch, whatever is read meanwhile. (Null: nobody asks.)
    class OneStretch {
      public:
        explicit OneStretch(Provenance* provenance) : provenance_(provenance) {
            if (provenance_ == nullptr) return;
            if (provenance_->written()) provenance_->close();
            provenance_->in_one_ = true;
        }
        OneStretch(const OneStretch&) = delete;
        OneStretch& operator=(const OneStretch&) = delete;
        ~OneStretch() {
            if (provenance_ != nullptr) provenance_->in_one_ = false;
        }

      private:
        Provenance* provenance_;
    };

    // Closes the last stretch; std::bad_alloc is thrown when there was no memory for one. Offsets in the
    // stretches count from where the text stood at `start`.
    void finish();

    const std::vector<Stretch>& stretches() const noexcept { return stretches_; }
    // The runs of bytes below `length` that no stretch used.
    std::vector<ByteRange> unused(std::uint32_t length) const;

  private:
    bool written() const noexcept;  // since the last look
    void close();
    void pass_over() noexcept;

    const Text* text_ = nullptr;
    bool in_one_ = false;
    bool without_memory_ = false;
    std::size_t origin_ = 0;
    std::size_t seen_ = 0;  // the text's size at the last look
    Stretch open_;
    std::vector<Stretch> stretches_;
};

}  // namespace ztdecode
