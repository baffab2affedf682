#include "VCardReader.h"

#include <algorithm>
#include <utility>

#include "PlainText.h"

namespace Tool {

namespace {

constexpr std::string_view agent = "AGENT";

bool isAgent(std::string_view line) {
    const auto property = propertyOf(line);
    return property && property->name == agent;
}

std::string_view valueOf(std::string_view line) {
    return line.substr(std::min(frontOf(line).size() + 1, line.size()));
}

/// "AGENT:BEGIN:VCARD": the card of another person begins in the line of its property.
bool beginsNested(std::string_view line) {
    return beginsCard(valueOf(line)) && isAgent(line);
}

/// "AGENT:": it begins in the next line.
bool awaitsNested(std::string_view line) {
    return trimmed(valueOf(line)).empty() && isAgent(line);
}

VCardVersion versionOf(std::string_view text) {
    if (text.starts_with('2')) return VCardVersion::v21;
    return text.starts_with('4') ? VCardVersion::v40 : VCardVersion::v30;
}

}  // namespace

bool VCardReader::nextLine(VCardVersion version) {
    return lines_.next(line_, version);
}

bool VCardReader::findBegin() {
    if (std::exchange(isAtBegin_, false)) return true;
    while (nextLine(VCardVersion::v30)) {
        if (beginsCard(line_)) return true;
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
    int depth = 1;  // of cards within cards, of which only the outermost is taken
    bool isAwaited = false;
    while (nextLine(card.version)) {
        const bool begins = beginsCard(line_);
        if (beginsNested(line_) || (begins && isAwaited)) {
            if (++depth == 2) card.nested.emplace_back(agent);
        } else if (begins) {
            isAtBegin_ = true;
            break;
        } else if (endsCard(line_)) {
            if (--depth == 0) return;
        } else if (depth == 1) {
            take(card);
        }
        isAwaited = awaitsNested(line_);
    }
    card.problem = "it is cut off: its END:VCARD is missing";
}

void VCardReader::take(VCard& card) {
    auto property = propertyOf(line_);
    if (!property) {
        card.unreadableLines.push_back(lines_.number());
        return;
    }
    property->line = lines_.number();
    if (property->name == "VERSION") card.version = versionOf(trimmed(property->value));
    card.properties.push_back(std::move(*property));
}

bool beginWithVCard(std::string_view bytes, int lines) {
    VCardLines all(bytes);
    std::string line;
    for (int i = 0; i < lines && all.next(line, VCardVersion::v30); ++i) {
        if (beginsCard(line)) return true;
    }
    return false;
}

}  // namespace Tool
