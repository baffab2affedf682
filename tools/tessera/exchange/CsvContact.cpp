#include "CsvContact.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <utility>

#include "../Failure.h"
#include "CategoryTexts.h"
#include "ContactName.h"
#include "OwnProperties.h"
#include "PlainText.h"
#include "TelUri.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

constexpr auto npos = WStringView::npos;

/// No address book has more; of what is no table at all a line can have millions.
constexpr std::size_t mostColumns = 1'000;

std::vector<WString> splitAt(WStringView text, WStringView separator) {
    std::vector<WString> parts;
    for (std::size_t end = 0; end != npos;) {
        end = text.find(separator);
        if (const auto part = trimmed(text.substr(0, end)); !part.empty()) parts.emplace_back(part);
        if (end != npos) text.remove_prefix(end + separator.size());
    }
    return parts;
}

/// Web address books put several values into one of the columns that they number.
std::vector<WString> severalIn(WStringView text) {
    constexpr WStringView separator = TEXT(" ::: ");
    if (text.find(separator) == npos) return {WString(text)};
    return splitAt(text, separator);
}

/// What makes a spreadsheet take digits for a text: "=" and quotes around it, or an apostrophe in front.
WStringView withoutSpreadsheetMarks(WStringView number) {
    if (number.size() > 3 && number.starts_with(TEXT("=\"")) && number.ends_with(u'"'))
        return number.substr(2, number.size() - 3);
    return number.starts_with(u'\'') ? number.substr(1) : number;
}

/// A star alone says that the address is preferred, and some address books name the kind of mail there.
bool saysWhichEmail(WStringView label) {
    static constexpr std::array<WStringView, 4> others = {TEXT("*"), TEXT("SMTP"), TEXT("EX"), TEXT("INTERNET")};
    return std::find(others.begin(), others.end(), trimmed(label)) == others.end();
}

/// "8.21012E+11": the last digits are lost.
bool isRounded(WStringView number) {
    const std::size_t mark = number.find(TEXT("E+"));
    return mark != npos && number.substr(0, mark).find(u'.') != npos &&
           number.find_first_not_of(TEXT("0123456789.E+")) == npos;
}

/// One row on its way to a draft.
class RowReading {
public:
    RowReading(const CsvRow& row, const std::vector<CsvColumn>& columns, ContactDraft& draft)
        : row_(row), columns_(columns), draft_(draft) {}

    void read() {
        hasGroupColumn_ = std::any_of(columns_.begin(), columns_.end(),
                                      [](const CsvColumn& column) { return column.role == CsvRole::group; });
        for (std::size_t i = 0; i < row_.values.size(); ++i)
            takeValue(i);
        name_.takeParts(parts_);
        name_.putInto(draft_);
        putIndexedNumbers();
        placeNumbers(draft_, std::move(numbers_));
        draft_.put(PhoneBook::PBDBATTR_BODY, notes_);
        putBirthdayInParts();
        putGroupAndCategories();
        if (hasEmailLabel_ && draft_.has(PhoneBook::PBDBATTR_EMAIL)) draft_.leftOut.insert(emailLabelText);
    }

private:
    void takeValue(std::size_t index) {
        const auto text = textOfUtf8(row_.values[index]);
        if (!text || text->view().find(u'\0') != npos) return tellUnreadable();
        if (isBlank(text->view())) return;
        if (index >= columns_.size()) {
            draft_.leftOut.insert("values behind the last column");
        } else {
            take(columns_[index], withLineFeeds(text->view()));
        }
    }

    void tellUnreadable() { draft_.problem = "it holds a zero character"; }

    void take(const CsvColumn& column, const WString& text) {
        switch (column.role) {
            case CsvRole::unknown:
                draft_.leftOut.insert("column " + quoted(textOfUtf8(column.heading).value_or(CString()).view()));
                break;
            case CsvRole::passedOver:
                break;
            case CsvRole::number:
                takeNumber(column.kind, text);
                break;
            case CsvRole::numberValue:
                indexed_[column.index].value = text;
                break;
            case CsvRole::numberLabel:
                indexed_[column.index].label = text;
                break;
            case CsvRole::email:
                takeEmails(column.index.empty() ? std::vector{text} : severalIn(text));
                break;
            case CsvRole::emailLabel:
                hasEmailLabel_ = hasEmailLabel_ || saysWhichEmail(text);
                break;
            case CsvRole::birthday:
                draft_.putBirthday(text);
                break;
            case CsvRole::field:
                putText(draft_, column.field, text);
                break;
            default:
                takeText(column.role, text);
        }
    }

    /// The roles whose text is only kept here, to be put together with others.
    void takeText(CsvRole role, const WString& text) {
        struct Place {
            CsvRole role;
            WString RowReading::*text;
        };
        static constexpr std::array<Place, 5> places = {{{CsvRole::birthYear, &RowReading::year_},
                                                         {CsvRole::birthMonth, &RowReading::month_},
                                                         {CsvRole::birthDay, &RowReading::day_},
                                                         {CsvRole::group, &RowReading::group_},
                                                         {CsvRole::categories, &RowReading::categories_}}};
        const auto* place =
            std::find_if(places.begin(), places.end(), [role](const Place& each) { return each.role == role; });
        if (place != places.end()) {
            this->*place->text = text;
        } else if (role == CsvRole::notes) {
            notes_ += (notes_.empty() ? TEXT("") : TEXT("\n")) + text;
        } else if (role == CsvRole::labels) {
            takeLabels(text);
        } else {
            takeName(role, text);
        }
    }

    void takeName(CsvRole role, const WString& text) {
        if (role == CsvRole::wholeName) name_.takeWhole(text);
        if (role == CsvRole::organisation) name_.takeOrganisation({text});
        if (role == CsvRole::nickname) name_.takeNickname(text);
        if (role == CsvRole::familyName) parts_.family = text;
        if (role == CsvRole::givenName) parts_.given = text;
        if (role == CsvRole::middleName) parts_.middle = text;
        if (role == CsvRole::namePrefix) parts_.prefix = text;
        if (role == CsvRole::nameSuffix) parts_.suffix = text;
    }

    void takeNumber(NumberKind kind, WStringView text, int preference = FoundNumber::notPreferred) {
        const WStringView number = withoutSpreadsheetMarks(text);
        if (isRounded(number))
            return draft_.remark("its number " + quoted(number) + " lost digits in a spreadsheet and is left out");
        numbers_.push_back({kind, telephoneNumberOf(number, draft_), preference});
    }

    /// Web address books put a star before the kind that is preferred.
    void putIndexedNumbers() {
        for (const auto& [index, number] : indexed_) {
            const NumberKind kind = numberKindOf(number.label).value_or(NumberKind::other);
            const int preference = number.label.starts_with(u'*') ? 1 : FoundNumber::notPreferred;
            for (const WString& each : severalIn(number.value))
                takeNumber(kind, each, preference);
        }
    }

    void takeEmails(const std::vector<WString>& addresses) {
        for (const WString& address : addresses)
            draft_.putEmail(address);
    }

    /// A star stands before those that the address book made itself; one of them everybody has.
    void takeLabels(WStringView text) {
        for (WString& label : splitAt(text, TEXT(":::"))) {
            if (label.starts_with(TEXT("* "))) label.erase(0, 2);
            if (label != TEXT("myContacts")) labels_.push_back(std::move(label));
        }
    }

    /// Beside a column for the group that for the categories is one of our own, and its text stays as it is.
    void putGroupAndCategories() {
        std::vector<WString> all;
        if (!hasGroupColumn_) {
            std::replace(categories_.begin(), categories_.end(), u';', u',');
            all = splitAt(categories_, TEXT(","));
        } else if (!categories_.empty() || labels_.empty()) {
            const WString ofGroup(asCategory(CString(group_)).view());
            return putCategories(draft_, {}, group_, categories_.empty() ? ofGroup : categories_);
        } else if (!group_.empty()) {
            all.push_back(group_);
        }
        all.insert(all.end(), labels_.begin(), labels_.end());
        putCategories(draft_, all, std::nullopt, std::nullopt);
    }

    void putBirthdayInParts() {
        if (year_.empty() && month_.empty() && day_.empty()) return;
        // A day that has no year is written with a dash in its place.
        draft_.putBirthday((year_.empty() ? TEXT("-") : year_) + TEXT("-") + twoDigits(month_) + TEXT("-") +
                           twoDigits(day_));
    }

    static WString twoDigits(const WString& number) { return number.size() == 1 ? TEXT("0") + number : number; }

    struct Indexed {
        WString value;
        WString label;
    };

    /// The tenth comes behind the second.
    struct ByNumber {
        bool operator()(const std::string& left, const std::string& right) const {
            return left.size() != right.size() ? left.size() < right.size() : left < right;
        }
    };

    const CsvRow& row_;
    const std::vector<CsvColumn>& columns_;
    ContactDraft& draft_;
    ContactName name_;
    PersonName parts_;
    WString year_;
    WString month_;
    WString day_;
    WString notes_;
    WString group_;
    WString categories_;
    std::vector<WString> labels_;
    std::vector<FoundNumber> numbers_;
    std::map<std::string, Indexed, ByNumber> indexed_;
    bool hasGroupColumn_ = false;
    bool hasEmailLabel_ = false;
};

/// Some spreadsheets tell each other the separator in a line "sep=;" of its own.
std::optional<char> namedSeparator(std::string_view line) {
    const bool names = line.size() == 5 && (line.starts_with("sep=") || line.starts_with("SEP="));
    return names ? std::optional(line.back()) : std::nullopt;
}

std::vector<std::string> headingsOf(std::string_view text, char separator) {
    CsvReader reader(text, separator);
    CsvRow row;
    reader.next(row);
    row.values.resize(std::min(row.values.size(), mostColumns));
    return row.values;
}

}  // namespace

ContactDraft draftOfRow(const CsvRow& row, const std::vector<CsvColumn>& columns) {
    ContactDraft draft;
    draft.line = row.line;
    if (row.isUnclosed) {
        draft.problem = "a quote opens in it that nothing closes";
    } else {
        RowReading(row, columns, draft).read();
    }
    if (draft.problem.empty() && draft.record.dwCITypeMask == 0) draft.problem = "it says nothing of anybody";
    return draft;
}

CsvTable csvTableOf(std::string_view text) {
    CsvTable table;
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    if (const auto separator = namedSeparator(text.substr(0, end))) {
        const std::size_t feed = text.substr(end).starts_with("\r\n") ? 2 : 1;
        table = {*separator, std::min(end + feed, text.size()), 1, {}};
        table.headings = headingsOf(text.substr(table.start), table.separator);
        return table;
    }
    std::pair<std::size_t, std::size_t> best;
    for (const char separator : {',', ';', '\t'}) {
        std::vector<std::string> headings = headingsOf(text, separator);
        const std::pair found(countKnown(columnsOf(headings, {})), headings.size());
        if (found <= best) continue;
        best = found;
        table.separator = separator;
        table.headings = std::move(headings);
    }
    return table;
}

DraftedFile draftsOfCsv(const SourceText& source, std::string_view text, const std::vector<ColumnMapping>& mappings) {
    const CsvTable table = csvTableOf(text);
    const std::vector<CsvColumn> columns = columnsOf(table.headings, mappings);
    if (!tellOfPeople(columns))
        throw Failure(source.path() + ": no column of it is known to tell of people; say which do, as in --map \"" +
                      "COLUMN=name\" (it has " + listOfHeadings(table.headings) + ")");
    DraftedFile file;
    file.units = "lines";
    CsvReader reader(text.substr(table.start), table.separator);
    CsvRow row;
    reader.next(row);  // the headings
    while (reader.next(row)) {
        row.line += table.linesBefore;
        file.drafts.push_back(draftOfRow(row, columns));
    }
    if (reader.hasGivenUp())
        file.remarks.push_back("what is behind line " + std::to_string(row.line) +
                               " is left out: too many quotes open and are not closed");
    return file;
}

}  // namespace Tool
