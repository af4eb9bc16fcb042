#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace ztdecode::tool {

// Bytes that come one after the other: of a descriptor, of what is packed in another source.
class Source {
  public:
    Source() = default;
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    virtual ~Source() = default;

    // Reads at most n bytes, as many as are there; 0 at the end, or when something is wrong.
    virtual std::size_t read(char* to, std::size_t n) = 0;
    // Reading may wait for what is not there yet.
    virtual bool may_wait() const = 0;

    // What is wrong, empty when nothing is.
    const std::string& error() const noexcept { return error_; }
    bool failed() const noexcept { return !error_.empty(); }

  protected:
    void fail(std::string_view why) { error_ = why; }

  private:
    std::string error_;
};

class DescriptorSource : public Source {
  public:
    explicit DescriptorSource(int descriptor);

    std::size_t read(char* to, std::size_t n) override;
    bool may_wait() const override { return may_wait_; }

  private:
    int descriptor_;
    bool may_wait_;
};

// A source whose first bytes have been looked at.
class PeekedSource final : public Source {
  public:
    explicit PeekedSource(Source& source) noexcept : source_(source) {}

    // The first bytes as they came, and more of them up to n when `wants_more` says so of those.
    template <class WantsMore>
    std::string_view peek(WantsMore wants_more) {
        while (size_ < bytes_.size() && (size_ == 0 || wants_more(view()))) {
            const std::size_t n = source_.read(bytes_.data() + size_, bytes_.size() - size_);
            if (n == 0) break;
            size_ += n;
        }
        return view();
    }

    std::size_t read(char* to, std::size_t n) override;
    bool may_wait() const override { return source_.may_wait(); }

  private:
    std::string_view view() const noexcept { return {bytes_.data(), size_}; }

    Source& source_;
    std::array<char, 4096> bytes_;
    std::size_t size_ = 0;
    std::size_t given_ = 0;
};

}  // namespace ztdecode::tool
