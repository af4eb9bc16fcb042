#include "abi/kept.hpp"

#include <utility>

#ifdef ZTDECODE_STATIC_RUNTIME
namespace __gnu_cxx {
void __freeres();  // NOLINT: the runtime's own name
}
#endif

namespace ztdecode::abi {

namespace {

KeptState* youngest = nullptr;

}  // namespace

KeptState::KeptState(void (*destroy)(KeptState&) noexcept) noexcept
    : destroy_(destroy), older_(std::exchange(youngest, this)) {}

void KeptState::release_all() noexcept {
    while (youngest != nullptr) {
        KeptState& state = *youngest;
        youngest = state.older_;
        state.destroy_(state);
    }
}

namespace {

// The loader runs this when the library is unloaded: with dlclose, or behind the last exit handler.
[[gnu::destructor]] void unloaded() noexcept {
    KeptState::release_all();
#ifdef ZTDECODE_STATIC_RUNTIME
    // The runtime inside keeps room for exceptions that are thrown when memory has run out.
    __gnu_cxx::__freeres();
#endif
}

}  // namespace

}  // namespace ztdecode::abi
