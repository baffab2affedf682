#include "VCardWriter.h"

#include <array>
#include <cstdio>
#include <string_view>

#include "Birthday.h"
#include "CategoryTexts.h"
#include "OwnProperties.h"
#include "PersonName.h"
#include "PlainText.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::size_t longestLine = 75;

struct NumberTypes {
    PhoneBook::PBDBAttrID field;
    const char* old;  ///< As version 2.1 has them.
    const char* later;
};

constexpr std::array<NumberTypes, 5> numberTypes = {{
    {PhoneBook::PBDBATTR_MOBILETEL, ";CELL;VOICE", "CELL,VOICE"},
    {PhoneBook::PBDBATTR_HOMETEL, ";HOME;VOICE", "HOME,VOICE"},
    {PhoneBook::PBDBATTR_BUSINESSTEL, ";WORK;VOICE", "WORK,VOICE"},
    {PhoneBook::PBDBATTR_PAGER, ";PAGER", "PAGER"},
    {PhoneBook::PBDBATTR_BUSINESSFAX, ";WORK;FAX", "WORK,FAX"},
}};

bool isContinuation(char ch) {
    return (static_cast<unsigned char>(ch) & 0xC0) == 0x80;
}

/// Where a value of version 2.1 has a backslash, its readers differ in what they make of it: there is one only where
/// it is needed.
std::string escapedAsOld(std::string_view text, std::string_view separator) {
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view behind = i + 1 < text.size() ? text.substr(i + 1, 1) : separator;
        const bool wouldEscape = text[i] == '\\' && !behind.empty() && std::string_view("\\;,:").find(behind) != npos;
        const bool separates = !separator.empty() && text.substr(i, 1) == separator;
        if (wouldEscape || separates) value += '\\';
        value += text[i];
    }
    return value;
}

/// `separator` is what separates the value, when it is one of several, from the others.
std::string escaped(std::string_view text, VCardVersion version, std::string_view separator = {}) {
    if (version == VCardVersion::v21) return escapedAsOld(text, separator);
    std::string value;
    for (const char ch : text) {
        const bool isSpecial = ch == '\\' || ch == ';' || ch == ',' || ch == '\n';
        if (isSpecial) value += '\\';
        value += ch == '\n' ? 'n' : ch;
    }
    return value;
}

bool isPlain(std::string_view value) {
    for (const char ch : value) {
        if (ch < ' ' || ch > '~') return false;
    }
    return value.size() <= longestLine && !value.ends_with(' ') && !value.ends_with('=');
}

std::string hexadecimal(char ch) {
    char piece[4];
    std::snprintf(piece, sizeof piece, "=%02X", static_cast<unsigned>(static_cast<unsigned char>(ch)));
    return piece;
}

/// With ends of lines as version 2.1 wants them, and soft breaks.
std::string quotedPrintable(std::string_view value, std::size_t column) {
    std::string text;
    for (const char ch : value) {
        const bool isPlain = ch > ' ' && ch <= '~' && ch != '=';
        std::string next = ch == '\n' ? "=0D=0A" : isPlain ? std::string(1, ch) : hexadecimal(ch);
        if (column + next.size() > longestLine) {
            text += "=\r\n";
            column = 0;
            // Or a line of the value could be the beginning or the end of a card.
            if (std::string_view("BbEe").find(ch) != npos) next = hexadecimal(ch);
        }
        text += next;
        column += next.size();
    }
    return text;
}

/// Breaks between characters: not every reader joins the lines before it reads them.
std::string folded(std::string_view line) {
    std::string text;
    std::size_t room = longestLine;
    while (line.size() > room) {
        std::size_t end = room;
        while (end > 1 && isContinuation(line[end]))
            --end;
        text += std::string(line.substr(0, end)) + "\r\n ";
        line.remove_prefix(end);
        room = longestLine - 1;
    }
    return text + std::string(line) + "\r\n";
}

class CardWriting {
public:
    CardWriting(const Contact& contact, VCardVersion version) : contact_(contact), version_(version) {}

    std::string card() {
        writeLine("BEGIN", "VCARD");
        writeLine("VERSION", isOld() ? "2.1" : version_ == VCardVersion::v30 ? "3.0" : "4.0");
        writeName();
        for (const NumberTypes& types : numberTypes)
            writeNumber(types);
        if (has(PhoneBook::PBDBATTR_EMAIL)) writeText(emailProperty(), textOf(PhoneBook::PBDBATTR_EMAIL));
        if (has(PhoneBook::PBDBATTR_BIRTHDAY)) writeLine("BDAY", birthday());
        writeCategories();
        if (has(PhoneBook::PBDBATTR_BODY)) writeText("NOTE", textOf(PhoneBook::PBDBATTR_BODY));
        writeOwn();
        writeLine("END", "VCARD");
        return std::move(text_);
    }

private:
    bool isOld() const { return version_ == VCardVersion::v21; }
    bool has(PhoneBook::PBDBAttrID field) const { return contact_.has(fieldOf(field)); }
    std::string textOf(PhoneBook::PBDBAttrID field) const { return withLineFeeds(fieldText(contact_, fieldOf(field))); }

    void writeText(const std::string& property, std::string_view text) { writeLine(property, escaped(text, version_)); }

    /// The value has its escapes already.
    void writeLine(const std::string& property, const std::string& value) {
        if (!isOld()) {
            text_ += folded(property + ':' + value);
        } else if (isPlain(value)) {
            text_ += property + ':' + value + "\r\n";
        } else {
            const std::string front = property + ";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:";
            text_ += front + quotedPrintable(value, front.size()) + "\r\n";
        }
    }

    void writeName() {
        const CString& name = contact_.record.strName;
        const PersonName parts = partsOfName(name.view());
        const auto part = [this](WStringView text) { return escaped(withLineFeeds(utf8Of(text)), version_, ";"); };
        writeLine("N", part(parts.family) + ';' + part(parts.given) + ";;;");
        writeText("FN", textOf(PhoneBook::PBDBATTR_NAME));
    }

    void writeNumber(const NumberTypes& types) {
        if (!has(types.field)) return;
        const bool isPrimary = primary() == fieldOf(types.field).mask();
        std::string property = "TEL";
        if (isOld()) {
            property += (isPrimary ? ";PREF" : "") + std::string(types.old);
        } else if (version_ == VCardVersion::v30) {
            property += ";TYPE=" + std::string(types.later) + (isPrimary ? ",PREF" : "");
        } else {
            property += ";TYPE=\"" + lowerCase(types.later) + '"' + (isPrimary ? ";PREF=1" : "");
        }
        writeText(property, textOf(types.field));
    }

    static std::string lowerCase(std::string_view upper) {
        std::string lower;
        for (const char ch : upper)
            lower += ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch;
        return lower;
    }

    /// The mask of the primary number; 0 when none is named.
    DWORD primary() const {
        return has(PhoneBook::PBDBATTR_PRIMARYTELNO) ? contact_.record.dwPrimaryTelephoneNumber : 0;
    }

    std::string emailProperty() const {
        return isOld() ? "EMAIL;INTERNET" : version_ == VCardVersion::v30 ? "EMAIL;TYPE=INTERNET" : "EMAIL";
    }

    std::string birthday() const {
        std::string day = isoDate(contact_.record.dtBirthday);
        if (version_ == VCardVersion::v40) std::erase(day, '-');
        return day;
    }

    /// The group first; where that alone would not bring back both, each stands in a property of its own too.
    void writeCategories() {
        const PhoneBook::PBRecord& record = contact_.record;
        const std::vector<WString> categories = categoriesIn(record.strCategories);
        std::string list;
        for (const WString& category : categories) {
            list += (list.empty() ? "" : ",") + escaped(withLineFeeds(utf8Of(category)), version_, ",");
        }
        if (!list.empty()) writeLine("CATEGORIES", list);

        ContactDraft back;
        putCategories(back, categories, std::nullopt, std::nullopt);
        const bool groupComesBack = back.record.strGroup == record.strGroup;
        if (!groupComesBack) writeText(std::string(ownGroup), textOf(PhoneBook::PBDBATTR_GROUP));
        const CString text =
            back.has(PhoneBook::PBDBATTR_CATEGORIES) ? back.record.strCategories : asCategory(back.record.strGroup);
        if (text != record.strCategories || !groupComesBack)
            writeText(std::string(ownCategories), textOf(PhoneBook::PBDBATTR_CATEGORIES));
    }

    void writeOwn() {
        for (const OwnProperty& own : ownProperties) {
            const bool goesWithoutSaying = isSaidByPreference(own.field) || isNoSlotsOfMore(own.field);
            if (has(own.field) && !goesWithoutSaying) writeText(std::string(own.name), textOf(own.field));
        }
    }

    /// That none of the numbers has a slot comes with every other field that only our phone books have.
    bool isNoSlotsOfMore(PhoneBook::PBDBAttrID field) const {
        constexpr DWORD others = PhoneBook::ciTypeMaskOfTable(PhoneBook::PBDBTBL_PHONEBOOKEXT) &
                                 ~PhoneBook::aPBAttribute_[PhoneBook::PBDBATTR_PRIVATE].mask;
        return field == PhoneBook::PBDBATTR_PRIVATE && contact_.record.dwPrivate == 0 &&
               (contact_.record.dwCITypeMask & others) != 0;
    }

    bool isSaidByPreference(PhoneBook::PBDBAttrID field) const {
        const Field* number = field == PhoneBook::PBDBATTR_PRIMARYTELNO ? numberField(primary()) : nullptr;
        return number != nullptr && contact_.has(*number);
    }

    const Contact& contact_;
    VCardVersion version_;
    std::string text_;
};

}  // namespace

std::string vcardOf(const Contact& contact, VCardVersion version) {
    return CardWriting(contact, version).card();
}

}  // namespace Tool
