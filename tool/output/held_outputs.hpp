#pragma once

#include <cstddef>
#include <limits>
#include <string_view>
#include <vector>

#include "tool/output/output.hpp"

namespace ztdecode::tool {

// The two outputs of a piece of a trace, held in memory until it is their turn, with the order in which they
// would have gone out.
class HeldOutputs {
  public:
    HeldOutputs(bool escapes_output, bool escapes_diagnostics)
        : out_(escapes_output), diagnostics_(*this, escapes_diagnostics) {}

    Output& out() noexcept { return out_; }
    Output& diagnostics() noexcept { return diagnostics_; }

    // How far they have come.
    struct Place {
        std::size_t text = 0;
        std::size_t words = 0;
        std::size_t turns = 0;
    };
    Place place() const noexcept { return {out_.text.size(), words_.size(), turns_.size()}; }
    std::size_t size() const noexcept { return out_.text.size() + words_.size(); }

    void pass_on(const Place& from, const Place& to, Output& out, Output& diagnostics) const;
    void clear();

  private:
    class Held : public Output {
      public:
        explicit Held(bool escapes) noexcept : Output(-1, escapes) { hold_all(); }
        void flush() override {}
    };
    class Diagnostics : public Output {
      public:
        Diagnostics(HeldOutputs& both, bool escapes) noexcept : Output(-1, escapes), both_(both) {}
        void flush() override;

      private:
        HeldOutputs& both_;
    };
    // Words of diagnostics go out behind a text.
    struct Turn {
        std::size_t text;
        std::size_t words;
    };

    Held out_;
    Diagnostics diagnostics_;
    Text words_;
    std::vector<Turn> turns_;
};

}  // namespace ztdecode::tool
