#include "PlainText.h"

namespace Tool {

namespace {

template <class Char>
using View = std::basic_string_view<Char>;

template <class Char>
View<Char> withoutBlanksAround(View<Char> text) {
    constexpr Char blanks[] = {' ', '\t', '\0'};
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

template <class Char>
std::basic_string<Char> withOneKindOfEnd(View<Char> text) {
    constexpr Char feed = '\n';
    std::basic_string<Char> plain;
    plain.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isFeedNext = i + 1 < text.size() && text[i + 1] == feed;
        if (text[i] == '\r' && isFeedNext) continue;
        plain += text[i] == '\r' ? feed : text[i];
    }
    return plain;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
    return withoutBlanksAround(text);
}

WStringView trimmed(WStringView text) {
    return withoutBlanksAround(text);
}

std::string withLineFeeds(std::string_view text) {
    return withOneKindOfEnd(text);
}

WString withLineFeeds(WStringView text) {
    return withOneKindOfEnd(text);
}

}  // namespace Tool
