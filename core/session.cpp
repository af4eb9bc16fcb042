#include "core/session.hpp"

namespace ztdecode {

Message decale(const Session& session, const Message& m, std::uint32_t n) {
    if (m.length() < n) {
        session.standard_error(
            fmt::format("decalage incorrect: demandé: {}, disponible: {}\n"_cf, n, m.length()));
        return m.with_length(0);
    }
    return m.without_first(n);
}

}  // namespace ztdecode
