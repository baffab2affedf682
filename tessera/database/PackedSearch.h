#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>

namespace Database {

/// Where `key` first stands in `text` from `from` on; npos when it does not.
///
/// As text.find, for long texts in which the key is rare: three characters of the key are compared at a whole block
/// of places at once, in a loop without branches that compilers turn into vector instructions. In a block where they
/// all stand somewhere, smaller ones lead to the place.
template <class Char>
std::size_t findInPacked(std::basic_string_view<Char> text, std::basic_string_view<Char> key, std::size_t from = 0) {
    constexpr std::size_t block = 64;
    constexpr std::size_t part = 16;
    if (key.empty()) return text.find(key, from);
    // Its last two, and one before them that is not as the last: numbers often have the same digit over and over.
    const std::size_t a = key.size() - 1;
    const std::size_t b = a == 0 ? a : a - 1;
    const std::size_t other = b == 0 ? key.npos : key.find_last_not_of(key[a], b - 1);
    const std::size_t c = other == key.npos ? b : other;
    const Char atA = key[a];
    const Char atB = key[b];
    const Char atC = key[c];
    const auto mayBeginAt = [&](const Char* place) {
        return (place[a] == atA) & (place[b] == atB) & (place[c] == atC);
    };
    const auto mayBeginIn = [&]<std::size_t places>(const Char* first, std::integral_constant<std::size_t, places>) {
        Char any{};
        for (std::size_t i = 0; i < places; ++i)
            any = static_cast<Char>(any | static_cast<Char>(mayBeginAt(first + i)));
        return any != Char{};
    };
    for (; from + block + key.size() <= text.size(); from += block) {
        if (!mayBeginIn(text.data() + from, std::integral_constant<std::size_t, block>())) continue;
        for (std::size_t at = from; at < from + block; at += part) {
            if (!mayBeginIn(text.data() + at, std::integral_constant<std::size_t, part>())) continue;
            for (std::size_t i = at; i < at + part; ++i) {
                if (mayBeginAt(text.data() + i) && text.substr(i, key.size()) == key) return i;
            }
        }
    }
    return text.find(key, from);
}

}  // namespace Database
