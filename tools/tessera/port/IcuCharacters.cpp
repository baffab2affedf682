#include <unicode/uchar.h>
#include <unicode/uscript.h>
#include <unicode/utf16.h>

#include "Characters.h"

namespace Tool::port {

bool isLetterOrDigit(WCHAR unit) {
    return u_isalnum(unit) != 0;
}

WCHAR lowerCase(WCHAR unit) {
    return static_cast<WCHAR>(u_tolower(unit));
}

bool beginsEastAsian(WStringView text) {
    UChar32 character = 0;
    U16_GET(text, 0, 0, static_cast<int>(text.size()), character);
    UErrorCode error = U_ZERO_ERROR;
    const UScriptCode script = uscript_getScript(character, &error);
    return script == USCRIPT_HANGUL || script == USCRIPT_HAN || script == USCRIPT_HIRAGANA ||
           script == USCRIPT_KATAKANA;
}

}  // namespace Tool::port
