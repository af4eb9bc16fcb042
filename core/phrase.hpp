#pragma once

#include <string_view>

#include "core/decoding.hpp"

namespace ztdecode {

// Writes a phrase that stands whole in its table or its `either`, so that who looks for it finds it. Its
// value is what stands between the words `before` and the words `behind`.
inline void add_phrase(Decoding& d, FieldName field, const Word& phrase, std::string_view before,
                       std::string_view behind = {}) {
    const std::size_t end = phrase.text.size() - behind.size();
    Word value = phrase;
    value.text = phrase.text.substr(before.size(), end - before.size());
    d.add(phrase.text.substr(0, before.size()));
    d.value(field, value);
    d.add(phrase.text.substr(end));
}

}  // namespace ztdecode
