#include "VCardValue.h"

#include <cctype>
#include <optional>
#include <utility>

#include "Encoding.h"
#include "PlainText.h"

namespace Tool {

namespace {

constexpr auto npos = WStringView::npos;

int hexDigit(char ch) {
    if (ch >= '0' && ch <= '9') return ch - '0';
    const int letter = std::toupper(static_cast<unsigned char>(ch));
    return letter >= 'A' && letter <= 'F' ? letter - 'A' + 10 : -1;
}

bool isAscii(std::string_view bytes) {
    for (const char ch : bytes) {
        if (static_cast<unsigned char>(ch) >= 0x80) return false;
    }
    return true;
}

std::optional<WString> decodedByItself(std::string_view bytes, const FileEncoding& fileEncoding) {
    if (isAscii(bytes)) return WString(bytes.begin(), bytes.end());
    if (fileEncoding.isSaid) return decodeWhole(bytes, fileEncoding.name);
    if (auto text = decodeWhole(bytes, "UTF-8")) return text;
    if (auto text = decodeWhole(bytes, fileEncoding.name)) return text;
    const auto recognised = recogniseEncoding(bytes);
    return recognised ? decodeWhole(bytes, recognised->name) : std::nullopt;
}

/// The character that an escape stands for; nothing where the backslash stands for itself.
std::optional<WCHAR> escaped(WCHAR behind, VCardVersion version) {
    if (WStringView(TEXT("\\;,:")).find(behind) != npos) return behind;
    const bool knowsLineFeeds = version != VCardVersion::v21;
    return knowsLineFeeds && (behind == u'n' || behind == u'N') ? std::optional(u'\n') : std::nullopt;
}

}  // namespace

bool decodeQuotedPrintable(std::string_view text, std::string& bytes) {
    bytes.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '=') {
            bytes += text[i];
            continue;
        }
        if (i + 1 == text.size()) return true;  // a soft break at the very end
        const int high = hexDigit(text[i + 1]);
        const int low = i + 2 < text.size() ? hexDigit(text[i + 2]) : -1;
        if (high < 0 || low < 0) return false;
        bytes += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return true;
}

VCardText textOf(const VCardProperty& property, const FileEncoding& fileEncoding) {
    if (property.isBase64()) return {{}, "is base64, not text"};
    std::string bytes = property.value;
    if (property.isQuotedPrintable() && !decodeQuotedPrintable(property.value, bytes))
        return {{}, "is broken quoted-printable"};
    const std::string charset(property.parameter("CHARSET"));
    if (!charset.empty() && !isKnownEncoding(charset)) return {{}, "is in the unknown encoding " + charset};
    auto text = charset.empty() ? decodedByItself(bytes, fileEncoding) : decodeWhole(bytes, charset);
    if (!text) {
        return {{}, charset.empty() ? "is in an encoding that --encoding can name" : "is no " + charset + " text"};
    }
    if (text->find(u'\0') != npos) return {{}, "holds a zero character"};
    return {withLineFeeds(*text), {}};
}

WString unescaped(WStringView text, VCardVersion version) {
    WString plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto meant =
            text[i] == u'\\' && i + 1 < text.size() ? escaped(text[i + 1], version) : std::optional<WCHAR>();
        plain += meant.value_or(text[i]);
        if (meant) ++i;
    }
    return plain;
}

std::vector<WString> rawPartsOf(WStringView text, WCHAR separator, VCardVersion version) {
    std::vector<WString> parts;
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] == u'\\' && i + 1 < text.size() && escaped(text[i + 1], version)) {
            ++i;
            continue;
        }
        if (i < text.size() && text[i] != separator) continue;
        parts.emplace_back(text.substr(begin, i - begin));
        begin = i + 1;
    }
    return parts;
}

std::vector<WString> partsOf(WStringView text, WCHAR separator, VCardVersion version) {
    std::vector<WString> parts = rawPartsOf(text, separator, version);
    for (WString& part : parts)
        part = unescaped(part, version);
    return parts;
}

}  // namespace Tool
