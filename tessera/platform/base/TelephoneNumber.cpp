#include "tessera/platform/base/TelephoneNumber.h"

#include <array>

namespace Platform {
namespace {

// The standard wide classification of digits knows these ten and no others.
bool isKept(WCHAR ch) {
    return (ch >= u'0' && ch <= u'9') || ch == u'P' || ch == u'T' || ch == u'*' || ch == u'#';
}

// The part behind the country code and its separator; the terminator when there is no separator.
const WCHAR* behindCountryCode(const WCHAR* text) {
    while (*text != u'\0' && *text != u' ' && *text != u'-')
        ++text;
    return *text == u'\0' ? text : text + 1;
}

}  // namespace

void reduceNumber(const WCHAR* in, WCHAR* out) {
    WCHAR* const end = out + reducedNumberBuffer - 1;
    if (in == nullptr) in = TEXT("");
    if (*in == u'+') {
        in = behindCountryCode(in);
        *out++ = u'0';
    }
    for (; *in != u'\0' && out != end; ++in) {
        if (isKept(*in)) *out++ = *in;
    }
    *out = u'\0';
}

std::string reducedNumber(const WCHAR* number) {
    std::array<WCHAR, reducedNumberBuffer> reduced;
    reduceNumber(number, reduced.data());
    const WStringView characters(reduced.data());
    return {characters.begin(), characters.end()};
}

}  // namespace Platform
