#include "SourceText.h"

#include <algorithm>
#include <utility>

#include "../Failure.h"
#include "Encoding.h"
#include "PlainText.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

constexpr WCHAR byteOrderMark = u'\uFEFF';

/// Whether the characters that cards and tables are built of are written as themselves.
bool keepsAscii(const std::string& encoding) {
    const auto decoded = decodeWhole("BEGIN:VCARD;\"=,\\\r\n", encoding);
    return decoded && *decoded == TEXT("BEGIN:VCARD;\"=,\\\r\n");
}

/// Of the byte-order mark, where UTF-8 begins with one.
std::size_t markLengthOf(const std::string& bytes, const std::string& encoding) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    const bool isMarked = bytes.starts_with(mark) && decodeWhole(mark, encoding) == WString(1, byteOrderMark);
    return isMarked ? mark.size() : 0;
}

std::string lineBehind(WStringView text) {
    const WString lines = withLineFeeds(text);
    return "line " + std::to_string(1 + std::count(lines.begin(), lines.end(), u'\n'));
}

std::string withoutMark(WStringView text) {
    if (text.starts_with(byteOrderMark)) text.remove_prefix(1);
    return utf8Of(text);
}

/// What the user can do about a text that is in no encoding that was tried. `guess` may be empty.
std::string adviceOn(bool wasSaid, const std::string& guess) {
    return std::string("; name ") + (wasSaid ? "another" : "its") + " encoding with --encoding" +
           (guess.empty() ? "" : ", maybe " + guess) +
           ", if it holds cards, a table or an export at all (--format vcard, csv or tessera)";
}

}  // namespace

SourceText::SourceText(std::string path, std::string bytes, const std::string& encoding)
    : path_(std::move(path)), bytes_(std::move(bytes)), encoding_(encoding), wasSaid_(!encoding.empty()) {
    if (wasSaid_) {
        start_ = markLengthOf(bytes_, encoding_);
    } else if (const auto recognised = recogniseEncoding(bytes_)) {
        encoding_ = recognised->name;
        start_ = recognised->markLength;
        isUtf8_ = start_ == 0 && encoding_ == "UTF-8";  // what has a mark was believed to be without a look
    }
    if (bytes_.size() == start_) throw Failure(path_ + ": is empty");
    if (!encoding_.empty() && !keepsAscii(encoding_)) recode();
}

void SourceText::recode() {
    if (encoding_.starts_with("UTF-16") && bytes_.size() % 2 != 0)
        throw Failure(path_ + ": is cut off: UTF-16 text has an even number of bytes, not " +
                      std::to_string(bytes_.size()) + adviceOn(wasSaid_, {}));
    const Decoded decoded = decode(bytes(), encoding_);
    if (!decoded.whole)
        throw Failure(path_ + ": " + lineBehind(decoded.text) + " is no " + encoding_ + " text" +
                      adviceOn(wasSaid_, {}));
    bytes_ = withoutMark(decoded.text);
    start_ = 0;
    encoding_ = "UTF-8";
    isUtf8_ = true;
}

std::string SourceText::utf8() const {
    if (isUtf8_) return std::string(bytes());
    const Decoded decoded = decode(bytes(), encoding_.empty() ? "UTF-8" : encoding_);
    if (decoded.whole) return withoutMark(decoded.text);
    const std::string place = path_ + ": " + lineBehind(decoded.text);
    if (wasSaid_) throw Failure(place + " is no " + encoding_ + " text" + adviceOn(true, {}));
    throw Failure(place + " is neither UTF-8, UTF-16 nor CP949 text" + adviceOn(false, guessEncoding(bytes())));
}

}  // namespace Tool
