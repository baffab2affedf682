#pragma once

#include <cstddef>
#include <string_view>

namespace Database {

/// Where `key` first stands in `text` from `from` on; npos when it does not.
///
/// As text.find, for long texts in which the key is rare: three characters of the key are compared at a whole block
/// of places at once, in a loop without branches that compilers turn into vector instructions.
template <class Char>
std::size_t findInPacked(std::basic_string_view<Char> text, std::basic_string_view<Char> key, std::size_t from = 0) {
    constexpr std::size_t block = 64;
    if (key.empty()) return text.find(key, from);
    // Its last two, and one before them that is not as the last: numbers often have the same digit over and over.
    const std::size_t a = key.size() - 1;
    const std::size_t b = a == 0 ? a : a - 1;
    const std::size_t other = b == 0 ? key.npos : key.find_last_not_of(key[a], b - 1);
    const std::size_t c = other == key.npos ? b : other;
    const Char atA = key[a];
    const Char atB = key[b];
    const Char atC = key[c];
    for (; from + block + key.size() <= text.size(); from += block) {
        const Char* const here = text.data() + from;
        Char any{};
        for (std::size_t i = 0; i < block; ++i) {
            const bool mayBe = (here[i + a] == atA) & (here[i + b] == atB) & (here[i + c] == atC);
            any = static_cast<Char>(any | static_cast<Char>(mayBe));
        }
        for (std::size_t i = 0; any != Char{} && i < block; ++i) {
            const bool mayBe = here[i + a] == atA && here[i + b] == atB && here[i + c] == atC;
            if (mayBe && text.substr(from + i, key.size()) == key) return from + i;
        }
    }
    return text.find(key, from);
}

}  // namespace Database
