#pragma once

#include <cstddef>
#include <new>
#include <utility>

// State of the C interface that lives until the library is unloaded. Left to C++ it would be destroyed at the
// exit, between the exit handlers of the host, from any of which the host may still look at a text or call
// in.

namespace ztdecode::abi {

class KeptState {
  public:
    KeptState(const KeptState&) = delete;
    KeptState& operator=(const KeptState&) = delete;

    // Destroys all of it, the youngest first. Called once, when nobody can call in any more.
    static void release_all() noexcept;

  protected:
    explicit KeptState(void (*destroy)(KeptState&) noexcept) noexcept;
    ~KeptState() = default;

  private:
    void (*destroy_)(KeptState&) noexcept;
    KeptState* older_;
};

// One such object, as a static variable: a T that is destroyed by release_all.
template <class T>
class Kept : private KeptState {
  public:
    template <class... Args>
    explicit Kept(Args&&... args) noexcept : KeptState(destroy) {
        ::new (static_cast<void*>(storage_)) T(std::forward<Args>(args)...);
    }

    operator T&() noexcept { return get(); }  // NOLINT: stands for the object
    T& get() noexcept { return *std::launder(reinterpret_cast<T*>(storage_)); }

  private:
    static void destroy(KeptState& state) noexcept { static_cast<Kept&>(state).get().~T(); }

    alignas(T) std::byte storage_[sizeof(T)];
};

}  // namespace ztdecode::abi
