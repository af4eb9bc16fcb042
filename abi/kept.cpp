#include "abi/kept.hpp"

#include <utility>

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
[[gnu::destructor]] void unloaded() noexcept { KeptState::release_all(); }

}  // namespace

}  // namespace ztdecode::abi
