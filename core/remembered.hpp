#pragma once

#include <utility>

namespace ztdecode {

// One thing that a message teaches later ones. A message that cannot be decoded to its end for want of memory
// leaves no trace: what it changed becomes again what it was.
template <class T>
class Remembered {
  public:
    const T& operator*() const noexcept { return value_; }
    const T* operator->() const noexcept { return &value_; }

    // To be changed by the message that is being decoded. (Session::change lets the session know.)
    T& change() {
        if (!changed_) before_ = value_;
        changed_ = true;
        return value_;
    }

    // To be changed by somebody else, for good.
    T& now() noexcept { return value_; }

    // The message is done, or has not been.
    void keep() noexcept { changed_ = false; }
    void undo() noexcept {
        if (std::exchange(changed_, false)) std::swap(value_, before_);
    }

  private:
    T value_{};
    T before_{};  // its room is used again
    bool changed_ = false;
};

}  // namespace ztdecode
