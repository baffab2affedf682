#include "VCardReader.h"

#include <algorithm>
#include <utility>

#include "PlainText.h"

namespace Tool {

namespace {

constexpr std::string_view agent = "AGENT";

/// "AGENT:BEGIN:VCARD": the card of another person begins in the line of its property.
bool beginsNested(std::string_view line) {
    const std::string_view front = frontOf(line);
    if (front.size() == line.size() || !beginsCard(line.substr(front.size() + 1))) return false;
    const auto property = propertyOf(line);
    return property && property->name == agent;
}

/// Whether the property that was read last is one whose card begins in the next line.
bool awaitsNested(const VCard& card) {
    return !card.properties.empty() && card.properties.back().name == agent &&
           trimmed(card.properties.back().value).empty();
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
    while (nextLine(card.version)) {
        if (endsCard(line_)) return;
        if (beginsNested(line_)) {
            passOverNested(card);
        } else if (!beginsCard(line_)) {
            take(card);
        } else if (awaitsNested(card)) {
            card.properties.pop_back();  // one property awaits one card
            passOverNested(card);
        } else {
            isAtBegin_ = true;
            break;
        }
    }
    card.problem = "it is cut off: its END:VCARD is missing";
}

void VCardReader::passOverNested(VCard& card) {
    card.nested.emplace_back(agent);
    int depth = 1;
    while (depth > 0 && nextLine(VCardVersion::v30)) {
        const bool begins = beginsCard(line_) || beginsNested(line_);
        depth += begins ? 1 : endsCard(line_) ? -1 : 0;
    }
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
