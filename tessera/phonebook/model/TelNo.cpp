#include "tessera/phonebook/model/TelNo.h"

#include <array>

#include "tessera/platform/base/TelephoneNumber.h"

namespace PhoneBook {
namespace {

std::size_t areaCodeLength(WStringView number) {
    if (number[0] != u'0') return 0;
    return number[1] == u'2' ? 2 : 3;
}

}  // namespace

static_assert(nCNIPBufferLength_ == Platform::reducedNumberBuffer);

void makeCNIP(const WCHAR* in, WCHAR* out) {
    Platform::reduceNumber(in, out);
}

CString makeCNIP(const WCHAR* in) {
    std::array<WCHAR, nCNIPBufferLength_> buffer{};
    makeCNIP(in, buffer.data());
    return {buffer.data()};
}

CString makeTelNoStrFromCID(const WCHAR* cid) {
    const WStringView number = cid == nullptr ? TEXT("") : cid;
    if (number.size() < 5) return CString(number);

    const std::size_t areaCode = areaCodeLength(number);
    const WStringView rest = number.substr(areaCode);
    const std::size_t middle = rest.size() == 7 ? 3 : 4;
    WString text(number.substr(0, areaCode));
    if (areaCode > 0) text += u'-';
    text += rest.substr(0, middle);
    text += u'-';  // stands even when nothing follows
    if (rest.size() > middle) text += rest.substr(middle);
    return CString(text);
}

}  // namespace PhoneBook
