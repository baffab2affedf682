#include "tessera/platform/port/DatePattern.h"

#include <array>
#include <cstddef>
#include <optional>

#include "tessera/platform/port/SystemLocale.h"

namespace Platform::port {
namespace {

DatePattern isoPattern() {
    return {DateOrder::yearMonthDay, TEXT(""), {TEXT("-"), TEXT("-")}, TEXT(""), true};
}

/// The fields of a pattern by their letters, and the texts before, between and behind them.
struct PatternParts {
    WString fields;
    std::array<int, 3> widths{};
    std::array<WString, 4> texts;
};

bool isLetter(WCHAR ch) {
    return (ch >= u'a' && ch <= u'z') || (ch >= u'A' && ch <= u'Z');
}

/// Reads a quoted text, `pos` on its opening quote; two quotes are one.
WString quotedText(WStringView pattern, std::size_t& pos) {
    WString text;
    while (++pos < pattern.size()) {
        if (pattern[pos] != u'\'') {
            text += pattern[pos];
        } else if (pos + 1 < pattern.size() && pattern[pos + 1] == u'\'') {
            text += pattern[++pos];
        } else {
            break;
        }
    }
    ++pos;
    return text.empty() ? TEXT("'") : text;
}

/// Of a month or a day, three letters and more are its name.
bool isName(WCHAR field, std::size_t width) {
    return field != u'y' && width > 2;
}

std::optional<PatternParts> partsOf(WStringView pattern) {
    PatternParts parts;
    std::size_t pos = 0;
    while (pos < pattern.size()) {
        const WCHAR ch = pattern[pos];
        WString& text = parts.texts[parts.fields.size()];
        if (ch == u'\'') {
            text += quotedText(pattern, pos);
        } else if (!isLetter(ch)) {
            text += ch;
            ++pos;
        } else {
            if (parts.fields.size() == parts.widths.size()) return std::nullopt;
            std::size_t end = pattern.find_first_not_of(ch, pos);
            if (end == WStringView::npos) end = pattern.size();
            if (isName(ch, end - pos)) return std::nullopt;
            parts.widths[parts.fields.size()] = static_cast<int>(end - pos);
            parts.fields += ch;
            pos = end;
        }
    }
    return parts;
}

struct OrderOfFields {
    WStringView fields;
    DateOrder order;
};

constexpr std::array<OrderOfFields, 3> orders_ = {{
    {TEXT("yMd"), DateOrder::yearMonthDay},
    {TEXT("dMy"), DateOrder::dayMonthYear},
    {TEXT("Mdy"), DateOrder::monthDayYear},
}};

bool isPadded(const PatternParts& parts) {
    for (std::size_t i = 0; i < parts.widths.size(); ++i) {
        if (parts.fields[i] != u'y' && parts.widths[i] != 2) return false;
    }
    return true;
}

}  // namespace

DatePattern datePatternOf(const std::string& locale) {
    const std::optional<WString> pattern = locale.empty() ? std::nullopt : shortDateOf(locale);
    return pattern ? datePatternFrom(*pattern) : isoPattern();
}

DatePattern datePatternFrom(WStringView shortDate) {
    const std::optional<PatternParts> parts = partsOf(shortDate);
    if (!parts) return isoPattern();

    for (const OrderOfFields& known : orders_) {
        if (parts->fields != known.fields) continue;
        return {known.order, parts->texts[0], {parts->texts[1], parts->texts[2]}, parts->texts[3], isPadded(*parts)};
    }
    return isoPattern();
}

}  // namespace Platform::port
