#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "core/session.hpp"

namespace ztdecode::tool {

// What messages of a trace teach later ones: those of one terminal nothing for another, where terminals are
// told apart. They last as long as the trace, which may be several files.
class Sessions {
  public:
    Session& main() noexcept { return main_; }

    // Behind the first thousands of terminals all others are one. `begin` is told of a new one.
    template <class Begin>
    Session& of_terminal(std::string_view name, Begin begin) {
        constexpr std::size_t most = 4096;
        const auto found = of_terminal_.find(name);
        if (found != of_terminal_.end()) return *found->second;
        if (name.empty() || of_terminal_.size() >= most) return main_;
        Session& session =
            *of_terminal_.emplace(std::string(name), std::make_unique<Session>()).first->second;
        begin(session);
        return session;
    }

    template <class Action>
    void each(Action action) {
        action(main_);
        for (auto& [name, session] : of_terminal_) action(*session);
    }

  private:
    Session main_;
    std::map<std::string, std::unique_ptr<Session>, std::less<>> of_terminal_;
};

}  // namespace ztdecode::tool
