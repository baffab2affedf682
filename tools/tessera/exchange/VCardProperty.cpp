#include "VCardProperty.h"

#include <algorithm>
#include <array>

#include "PlainText.h"

namespace Tool {

namespace {

constexpr auto npos = std::string_view::npos;

bool isNameCharacter(char ch) {
    return (ch >= 'A' && ch <= 'Z') || (ch >= 'a' && ch <= 'z') || (ch >= '0' && ch <= '9') || ch == '-' || ch == '_';
}

bool isName(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), isNameCharacter);
}

/// The first of these characters outside of quotes.
std::size_t findUnquoted(std::string_view text, std::string_view wanted) {
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') quoted = !quoted;
        if (!quoted && wanted.find(text[i]) != npos) return i;
    }
    return npos;
}

std::string_view takeUpTo(std::string_view& text, char separator) {
    const std::size_t end = findUnquoted(text, std::string_view(&separator, 1));
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(end == npos ? text.size() : end + 1);
    return taken;
}

std::string withoutQuotes(std::string_view text) {
    std::string plain(trimmed(text));
    std::erase(plain, '"');
    return plain;
}

/// Old cards give a parameter's value without its name.
VCardProperty::Parameter parameterOf(std::string_view text) {
    const std::size_t equals = text.find('=');
    if (equals != npos) return {upperCase(trimmed(text.substr(0, equals))), withoutQuotes(text.substr(equals + 1))};
    constexpr std::array encodings = {"QUOTED-PRINTABLE", "BASE64", "B", "8BIT", "7BIT"};
    const std::string word = upperCase(trimmed(text));
    const bool isEncoding = std::find(encodings.begin(), encodings.end(), word) != encodings.end();
    return {isEncoding ? "ENCODING" : "TYPE", word};
}

bool isMark(std::string_view line, std::string_view name) {
    constexpr std::size_t longest = 64;
    const auto property = line.size() <= longest ? propertyOf(line) : std::nullopt;
    const bool isNamed = property && property->name == name && property->group.empty();
    return isNamed && upperCase(trimmed(property->value)) == "VCARD";
}

}  // namespace

std::string upperCase(std::string_view ascii) {
    std::string upper(ascii);
    for (char& ch : upper) {
        if (ch >= 'a' && ch <= 'z') ch = static_cast<char>(ch - 'a' + 'A');
    }
    return upper;
}

std::string_view VCardProperty::parameter(std::string_view wanted) const {
    const auto found = std::find_if(parameters.begin(), parameters.end(),
                                    [wanted](const Parameter& each) { return each.name == wanted; });
    return found == parameters.end() ? std::string_view() : found->value;
}

std::set<std::string> VCardProperty::types() const {
    std::set<std::string> words;
    for (const Parameter& each : parameters) {
        if (each.name != "TYPE") continue;
        std::string_view rest = each.value;
        while (!rest.empty())
            words.insert(upperCase(trimmed(takeUpTo(rest, ','))));
    }
    return words;
}

bool VCardProperty::isQuotedPrintable() const {
    return upperCase(parameter("ENCODING")) == "QUOTED-PRINTABLE";
}

bool VCardProperty::isBase64() const {
    const std::string encoding = upperCase(parameter("ENCODING"));
    return encoding == "B" || encoding == "BASE64";
}

std::string_view frontOf(std::string_view line) {
    const std::size_t colon = findUnquoted(line, ":");
    return line.substr(0, colon != npos ? colon : line.find(':'));  // a quote that is never closed quotes nothing
}

bool beginsCard(std::string_view line) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (line.starts_with(byteOrderMark)) line.remove_prefix(byteOrderMark.size());
    return isMark(line, "BEGIN");
}

bool endsCard(std::string_view line) {
    return isMark(line, "END");
}

std::optional<VCardProperty> propertyOf(std::string_view line) {
    std::string_view front = frontOf(line);
    if (front.size() == line.size()) return std::nullopt;
    const std::string_view value = line.substr(front.size() + 1);
    std::string_view name = trimmed(takeUpTo(front, ';'));
    VCardProperty property;
    if (const std::size_t dot = name.rfind('.'); dot != npos) {
        property.group = upperCase(name.substr(0, dot));
        name.remove_prefix(dot + 1);
    }
    if (!isName(name)) return std::nullopt;
    property.name = upperCase(name);
    while (!front.empty()) {
        const std::string_view text = takeUpTo(front, ';');
        if (!trimmed(text).empty()) property.parameters.push_back(parameterOf(text));
    }
    property.value = value;
    return property;
}

}  // namespace Tool
