#include "abi/process.hpp"

#include <cstdio>
#include <new>

#include "abi/application_buffer.hpp"

extern "C" {
std::uint8_t useColor = 0;
int audioOnly = 0;
int debug = 0;
const char* Version = "5.01";
}

namespace ztdecode::abi {

namespace {

class StandardStreams : public SideChannel {
  public:
    void standard_output(std::string_view text) override { std::fwrite(text.data(), 1, text.size(), stdout); }
    void standard_error(std::string_view text) override { std::fwrite(text.data(), 1, text.size(), stderr); }
};

struct ProcessWide {
    ProcessWide() {
        session.side = &streams;
        session.object.application = &application;
    }
    StandardStreams streams;
    ApplicationBuffer application;
    Session session;
};

}  // namespace

Session& session() noexcept {
    static Kept<ProcessWide> kept;
    Session& process_wide = kept.get().session;
    process_wide.switches = {.color = useColor != 0, .audio_only = audioOnly != 0, .debug = debug != 0};
    return process_wide;
}

Message view(const MessageRecord& record) noexcept {
    Message m(record.data, record.length, message_capacity);
    m.direction = record.direction;
    return m;
}

RecordState::RecordState(const MessageRecord& record) noexcept
    : route(record.route),
      status(static_cast<Status>(record.status)),
      option_type(static_cast<std::uint8_t>(record.reserved >> 8)) {}

void RecordState::run(Decoder decoder, Decoding& d) {
    d.route = route;
    d.status = status;
    d.option_type = option_type;
    decoder(d);
    route = d.route;
    status = d.status;
    option_type = d.option_type;
}

void RecordState::put_back(MessageRecord& record) const noexcept {
    record.route = route;
    record.status = static_cast<std::uint32_t>(status);
    record.reserved = static_cast<std::uint16_t>((record.reserved & 0xFF) | option_type << 8);
}

char* heap_copy(std::string_view text) noexcept {
    auto* copy = static_cast<char*>(std::malloc(text.size() + 1));  // NOLINT: the host frees it
    if (copy == nullptr) return nullptr;
    text.copy(copy, text.size());
    copy[text.size()] = '\0';
    return copy;
}

char* heap_text(std::string_view text) {
    char* copy = heap_copy(text);
    if (copy == nullptr) throw std::bad_alloc();
    return copy;
}

void end_process(int status) noexcept {
    session().let_go();
    std::exit(status);  // NOLINT(concurrency-mt-unsafe): what the hosts expect
}

}  // namespace ztdecode::abi
