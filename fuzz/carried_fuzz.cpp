// Messages that carry others, which any bytes would be rarely: the input steers what makes them. Every
// message ends within its bounds, its text is a C string, and sessions agree.

#include <cstdint>
#include <span>

#include "fuzz/carried.hpp"
#include "fuzz/fuzzing.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ztdecode::fuzz::TwoSessions sessions;
    ztdecode::fuzz::Account account;
    for (const auto& message : ztdecode::fuzz::carried_trace(std::span(data, size))) {
        const std::string_view broken = sessions.decode(message);
        ztdecode::fuzz::expect(broken.empty(), broken);
        account.add(sessions.cost());
        if (account.used_up()) break;
    }
    return 0;
}
