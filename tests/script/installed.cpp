// A C++ host of the installed library.

#include <algorithm>
#include <ztdecode.hpp>

int main() {
    zt::Session session;
    session.feed("081211S 03 21 04 03");
    int messages = 0;
    for (const zt::Record record : session.messages()) {
        if (record.text() != "\t- green led 3 ON" || record.fields().size() != 1) return 1;
        const auto led = std::ranges::find(record.fields(), "led", &zt::Field::name);
        if (led == record.fields().end() || (*led).number() != 3) return 3;
        ++messages;
    }
    return messages == 1 ? 0 : 2;
}
