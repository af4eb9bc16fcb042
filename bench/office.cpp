#include "bench/office.hpp"

#include "bench/office_parts.hpp"

namespace ztdecode::bench {

Office::Office(std::uint64_t seed) : random_(seed) { set_starts(*this); }

Captured Office::next() {
    if (!following_.empty()) {
        Captured captured = std::move(following_.front());
        following_.pop_front();
        return captured;
    }
    std::uint32_t drawn = random_.below(1000);
    for (const auto kinds : {set_kinds(), link_kinds()}) {
        for (const Kind& kind : kinds) {
            if (drawn < kind.share) return {kind.make(*this), kind.direction};
            drawn -= kind.share;
        }
    }
    return next();
}

}  // namespace ztdecode::bench
