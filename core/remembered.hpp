#pragma once

#include <cstdint>
#include <utility>

namespace ztdecode {

// What was done first to a thing that is remembered, since somebody asked.
enum class FirstUse : std::uint8_t { none, looked_at, set };

// One thing that a message teaches later ones. A message that cannot be decoded to its end for want of memory
// leaves no trace: what it changed becomes again what it was.
//
// It knows whether it was looked at before it was set: what was decoded from another state is right as well
// where the two agree in the things that were.
template <class T>
class Remembered {
  public:
    Remembered() = default;
    // Between messages: the value and its first use.
    Remembered(const Remembered& other) : value_(other.value_), first_use_(other.first_use_) {}
    Remembered& operator=(const Remembered& other) {
        value_ = other.value_;
        first_use_ = other.first_use_;
        return *this;
    }
    ~Remembered() = default;

    const T& operator*() const noexcept {
        use(FirstUse::looked_at);
        return value_;
    }
    const T* operator->() const noexcept { return &**this; }

    // To be changed by the message that is being decoded. (Session::change lets the session know.)
    T& change() {
        use(FirstUse::looked_at);
        return open();
    }
    // The same where nothing of what it was is left or looked at.
    T& set_anew() {
        use(FirstUse::set);
        return open();
    }

    // To be changed by somebody else, for good.
    T& now() noexcept { return value_; }
    // For somebody who is no message.
    const T& value() const noexcept { return value_; }

    // The message is done, or has not been.
    void keep() noexcept { changed_ = false; }
    void undo() noexcept {
        if (std::exchange(changed_, false)) std::swap(value_, before_);
    }

    FirstUse first_use() const noexcept { return first_use_; }
    void forget_use() noexcept { first_use_ = FirstUse::none; }

  private:
    void use(FirstUse how) const noexcept {
        if (first_use_ == FirstUse::none) first_use_ = how;
    }
    T& open() {
        if (!changed_) before_ = value_;
        changed_ = true;
        return value_;
    }

    T value_{};
    T before_{};  // its room is used again
    bool changed_ = false;
    mutable FirstUse first_use_ = FirstUse::none;
};

}  // namespace ztdecode
