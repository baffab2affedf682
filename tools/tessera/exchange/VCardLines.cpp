#include "VCardLines.h"

#include <algorithm>

#include "PlainText.h"

namespace Tool {

namespace {

constexpr auto npos = std::string_view::npos;

bool isFolded(std::string_view line) {
    return line.starts_with(' ') || line.starts_with('\t');
}

/// Ends of lines are those of any system, also those of carriage returns alone, and those that were made of one end
/// twice: a few carriage returns before a line feed.
std::size_t lengthOfEnd(std::string_view bytes, std::size_t end) {
    if (end == bytes.size()) return 0;
    constexpr std::size_t longest = 4;
    const std::string_view front = bytes.substr(end, longest);
    const std::size_t feed = front.find_first_not_of('\r');
    return feed != npos && front[feed] == '\n' ? feed + 1 : 1;
}

std::size_t endOfLine(std::string_view bytes) {
    return std::min(bytes.find_first_of("\r\n"), bytes.size());
}

}  // namespace

std::string_view VCardLines::peekRaw() const {
    return rest_.substr(0, endOfLine(rest_));
}

std::string_view VCardLines::takeRaw() {
    const std::size_t end = endOfLine(rest_);
    const std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end + lengthOfEnd(rest_, end));
    ++taken_;
    return line;
}

bool VCardLines::next(std::string& line, VCardVersion version) {
    do {
        if (rest_.empty()) return false;
        line = takeRaw();
    } while (trimmed(line).empty());
    number_ = taken_;
    const std::string front = upperCase(frontOf(line));
    if (front.find("QUOTED-PRINTABLE") != npos) joinSoftBreaks(line);
    joinFolds(line, version);
    if (front.find("BASE64") != npos || front.find("ENCODING=B") != npos) joinBase64(line);
    return true;
}

void VCardLines::joinSoftBreaks(std::string& line) {
    // A text that was cut short takes no more with it than itself.
    while (line.ends_with('=') && !rest_.empty() && !beginsCard(peekRaw()) && !endsCard(peekRaw())) {
        line.pop_back();
        line += takeRaw();
    }
}

void VCardLines::joinFolds(std::string& line, VCardVersion version) {
    while (!rest_.empty() && isFolded(peekRaw())) {
        const std::string_view folded = takeRaw();
        line += version == VCardVersion::v21 ? folded : folded.substr(1);
    }
}

/// Some phones break pictures into lines without a blank in front.
void VCardLines::joinBase64(std::string& line) {
    while (!rest_.empty() && !trimmed(peekRaw()).empty() && peekRaw().find_first_of(":;") == npos)
        line += takeRaw();
}

}  // namespace Tool
