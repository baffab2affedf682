#include "VCardReader.h"

#include <algorithm>
#include <utility>

namespace Tool {

namespace {

/// A line such as "BEGIN:VCARD", in any case and with any blanks.
bool isMark(std::string_view line, std::string_view name) {
    constexpr std::size_t longest = 64;
    const auto property = line.size() <= longest ? propertyOf(line) : std::nullopt;
    if (!property || property->name != name) return false;
    std::string value = upperCase(property->value);
    std::erase_if(value, [](char ch) { return ch == ' ' || ch == '\t'; });
    return value == "VCARD";
}

bool isBegin(std::string_view line) {
    return isMark(line, "BEGIN");
}

bool isEnd(std::string_view line) {
    return isMark(line, "END");
}

VCardVersion versionOf(std::string_view text) {
    if (text.starts_with('2')) return VCardVersion::v21;
    return text.starts_with('4') ? VCardVersion::v40 : VCardVersion::v30;
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t") == std::string_view::npos;
}

}  // namespace

bool VCardReader::nextLine(VCardVersion version) {
    return lines_.next(line_, version);
}

bool VCardReader::findBegin() {
    if (std::exchange(isAtBegin_, false)) return true;
    while (nextLine(VCardVersion::v30)) {
        if (isBegin(line_)) return true;
        const int number = lines_.number();
        if (stray_.empty() || stray_.back().last + 1 != number) {
            stray_.push_back({number, number});
        } else {
            stray_.back().last = number;
        }
    }
    return false;
}

bool VCardReader::next(VCard& card) {
    if (!findBegin()) return false;
    card = VCard();
    card.number = ++cards_;
    card.line = lines_.number();
    read(card);
    return true;
}

void VCardReader::read(VCard& card) {
    while (nextLine(card.version)) {
        if (isEnd(line_)) return;
        if (!isBegin(line_)) {
            take(card);
            continue;
        }
        const bool isNested =
            !card.properties.empty() && card.properties.back().name == "AGENT" && isBlank(card.properties.back().value);
        if (!isNested) {
            isAtBegin_ = true;
            break;
        }
        card.nested.push_back(card.properties.back().name);
        passOverNested();
    }
    card.problem = "it is cut off: its END:VCARD is missing";
}

void VCardReader::passOverNested() {
    int depth = 1;
    while (depth > 0 && nextLine(VCardVersion::v30))
        depth += isBegin(line_) ? 1 : isEnd(line_) ? -1 : 0;
}

void VCardReader::take(VCard& card) {
    auto property = propertyOf(line_);
    if (!property) {
        card.unreadableLines.push_back(lines_.number());
        return;
    }
    property->line = lines_.number();
    if (property->name == "VERSION") card.version = versionOf(property->value);
    card.properties.push_back(std::move(*property));
}

bool beginWithVCard(std::string_view bytes, int lines) {
    VCardLines all(bytes);
    std::string line;
    for (int i = 0; i < lines && all.next(line, VCardVersion::v30); ++i) {
        if (isBegin(line)) return true;
    }
    return false;
}

}  // namespace Tool
