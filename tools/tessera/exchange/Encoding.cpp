#include "Encoding.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <memory>

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using namespace std::string_view_literals;

struct EncodingName {
    const char* said;
    const char* meant;
};

/// Who says EUC-KR mostly writes its superset, in which every Korean syllable has a place.
constexpr std::array<EncodingName, 12> meanings = {{
    {"EUCKR", "windows-949"},
    {"KSC56011987", "windows-949"},
    {"KSC5601", "windows-949"},
    {"KSX1001", "windows-949"},
    {"CP949", "windows-949"},
    {"UHC", "windows-949"},
    {"MS949", "windows-949"},
    {"SHIFTJIS", "windows-31j"},
    {"SJIS", "windows-31j"},
    {"GB2312", "GB18030"},
    {"GBK", "GB18030"},
    {"ASCII", "US-ASCII"},
}};

std::string spelledPlainly(const std::string& name) {
    std::string plain;
    for (const char ch : name) {
        if (std::isalnum(static_cast<unsigned char>(ch)) != 0)
            plain += static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    }
    return plain;
}

std::string meaningOf(const std::string& name) {
    const auto* known = std::find_if(meanings.begin(), meanings.end(),
                                     [plain = spelledPlainly(name)](const auto& each) { return plain == each.said; });
    return known != meanings.end() ? known->meant : name;
}

struct ConverterCloser {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

/// Null when there is no such encoding. Stops at what means nothing instead of putting a substitute there.
Converter converterFor(const std::string& encoding) {
    if (encoding.empty()) return nullptr;  // would be the encoding of the user's locale
    UErrorCode error = U_ZERO_ERROR;
    Converter converter(ucnv_open(meaningOf(encoding).c_str(), &error));
    if (U_FAILURE(error)) return nullptr;
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    return U_SUCCESS(error) ? std::move(converter) : nullptr;
}

/// A text in CP949 has Hangul of the old standard set nearly everywhere; Latin letters with accents that happen to
/// make pairs of that encoding do not.
bool looksKorean(std::string_view bytes) {
    std::size_t pairs = 0;
    std::size_t commonHangul = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto lead = static_cast<unsigned char>(bytes[i]);
        if (lead < 0x80 || i + 1 == bytes.size()) continue;
        const auto trail = static_cast<unsigned char>(bytes[++i]);
        ++pairs;
        if (lead >= 0xB0 && lead <= 0xC8 && trail >= 0xA1) ++commonHangul;
    }
    return commonHangul * 4 >= pairs * 3;
}

/// UTF-16 has a zero in each Latin character, and in the first line feed: one stands early, and its place says
/// which half comes first. A zero further on may as well be a stray one in UTF-8.
const char* byteOrderOfHeader(std::string_view bytes) {
    const std::size_t feed = bytes.find('\n');
    const std::size_t header = std::min(bytes.size(), feed + 2);
    bool zeroAtOdd = false;
    for (std::size_t i = 1; i < header; i += 2)
        zeroAtOdd = zeroAtOdd || bytes[i] == '\0';
    if (zeroAtOdd) return "UTF-16LE";
    const bool feedIsBigEndian = feed != std::string_view::npos && feed % 2 == 1 && bytes[feed - 1] == '\0';
    return feedIsBigEndian ? "UTF-16BE" : nullptr;
}

const char* byteOrderByCount(std::string_view bytes) {
    std::array<std::size_t, 2> zeros{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        zeros[i % 2] += bytes[i] == '\0' ? 1 : 0;
    return zeros[0] > zeros[1] ? "UTF-16BE" : "UTF-16LE";
}

}  // namespace

bool isKnownEncoding(const std::string& name) {
    return converterFor(name) != nullptr;
}

Decoded decode(std::string_view bytes, const std::string& encoding) {
    if (spelledPlainly(encoding) == "UTF8") {  // by far the most frequent; its first fault is found the long way
        if (const auto text = textOfUtf8(bytes)) return {WString(text->view()), true};
    }
    const Converter converter = converterFor(encoding);
    if (!converter) return {};
    Decoded decoded;
    const char* source = bytes.data();
    const char* const end = bytes.data() + bytes.size();
    std::array<UChar, 4096> block;
    UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
    while (error == U_BUFFER_OVERFLOW_ERROR) {
        error = U_ZERO_ERROR;
        UChar* target = block.data();
        ucnv_toUnicode(converter.get(), &target, block.data() + block.size(), &source, end, nullptr, true, &error);
        decoded.text.append(block.data(), target);
    }
    decoded.whole = U_SUCCESS(error);
    return decoded;
}

std::optional<WString> decodeWhole(std::string_view bytes, const std::string& encoding) {
    Decoded decoded = decode(bytes, encoding);
    return decoded.whole ? std::optional(std::move(decoded.text)) : std::nullopt;
}

std::optional<RecognisedEncoding> recogniseEncoding(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF"sv)) return RecognisedEncoding{"UTF-8", 3};
    if (bytes.starts_with("\xFF\xFE"sv)) return RecognisedEncoding{"UTF-16LE", 2};
    if (bytes.starts_with("\xFE\xFF"sv)) return RecognisedEncoding{"UTF-16BE", 2};
    const bool holdsZero = bytes.find('\0') != std::string_view::npos;
    if (const char* const order = holdsZero ? byteOrderOfHeader(bytes) : nullptr; order != nullptr)
        return RecognisedEncoding{order};
    if (decode(bytes, "UTF-8").whole) return RecognisedEncoding{"UTF-8"};
    if (holdsZero) return RecognisedEncoding{byteOrderByCount(bytes)};
    if (looksKorean(bytes) && decode(bytes, "CP949").whole) return RecognisedEncoding{"CP949"};
    return std::nullopt;
}

std::string guessEncoding(std::string_view bytes) {
    constexpr std::size_t sample = 1 << 16;
    constexpr int confident = 10;
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UCharsetDetector, decltype(&ucsdet_close)> detector(ucsdet_open(&error), &ucsdet_close);
    const std::string_view front = bytes.substr(0, sample);
    if (U_FAILURE(error)) return {};
    ucsdet_setText(detector.get(), front.data(), static_cast<int32_t>(front.size()), &error);
    const UCharsetMatch* match = U_SUCCESS(error) ? ucsdet_detect(detector.get(), &error) : nullptr;
    if (U_FAILURE(error) || match == nullptr || ucsdet_getConfidence(match, &error) < confident) return {};
    const char* name = ucsdet_getName(match, &error);
    return U_SUCCESS(error) && name != nullptr ? name : std::string();
}

}  // namespace Tool
