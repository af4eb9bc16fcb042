#include "tool/input/traces.hpp"

#include "tool/input/archive.hpp"
#include "tool/input/encodings.hpp"

namespace ztdecode::tool {

namespace {

constexpr int deepest = 4;

class Unpacking {
  public:
    Unpacking(bool text, const TraceAction& action) : text_(text), action_(action) {}

    Damage take(const std::string& name, Source& source, int level) {
        PeekedSource peeked(source);
        const std::string_view first =
            peeked.peek([](std::string_view bytes) { return is_packed(bytes) == Packed::unsure; });
        if (is_packed(first) == Packed::yes) return unpack(name, peeked, level);
        const Encoding encoding = text_ ? encoding_of(first) : Encoding::bytes;
        if (encoding == Encoding::bytes) {
            action_(name, level > 0, peeked);
        } else {
            Utf16Source utf8(peeked, encoding);
            action_(name, level > 0, utf8);
        }
        return {};
    }

  private:
    Damage unpack(const std::string& name, Source& source, int level) {
        if (level == deepest) return {name, "too many archives inside each other"};
        Archive archive(source);
        Damage damage;
        bool any = false;
        while (Source* const member = archive.next()) {
            any = true;
            const std::string member_name = archive.name().empty() ? name : name + "/" + archive.name();
            Damage inside = take(member_name, *member, level + 1);
            if (!inside.why.empty() && damage.why.empty()) damage = std::move(inside);
            if (member->failed()) return damage;  // said of the trace
        }
        if (!archive.error().empty() && damage.why.empty()) damage = {name, archive.error()};
        if (!any && damage.why.empty()) damage = {name, "no file in it"};
        return damage;
    }

    bool text_;
    const TraceAction& action_;
};

}  // namespace

Damage each_trace(const std::string& name, Source& source, bool text, const TraceAction& action) {
    return Unpacking(text, action).take(name, source, 0);
}

}  // namespace ztdecode::tool
