#include "NumberPlaces.h"

#include <algorithm>
#include <array>

#include <unicode/uchar.h>

#include "../Records.h"

namespace Tool {

namespace {

using PhoneBook::PBDBAttrID;

struct Place {
    NumberKind kind;
    PBDBAttrID field;
    const char* label;
};

/// Those for voice first, in the order in which they are filled.
constexpr std::array<Place, 5> places = {{
    {NumberKind::mobile, PhoneBook::PBDBATTR_MOBILETEL, "mobile"},
    {NumberKind::home, PhoneBook::PBDBATTR_HOMETEL, "home"},
    {NumberKind::business, PhoneBook::PBDBATTR_BUSINESSTEL, "business"},
    {NumberKind::pager, PhoneBook::PBDBATTR_PAGER, "pager"},
    {NumberKind::fax, PhoneBook::PBDBATTR_BUSINESSFAX, "fax"},
}};
constexpr std::size_t voicePlaces = 3;

struct KindWord {
    std::u16string_view word;
    NumberKind kind;
};

/// A fax at home is a fax: what the number is for counts more than where it is. So the words stand in this order.
constexpr std::array<KindWord, 29> kindWords = {{
    {u"fax", NumberKind::fax},          {u"팩스", NumberKind::fax},          {u"pager", NumberKind::pager},
    {u"beeper", NumberKind::pager},     {u"호출기", NumberKind::pager},      {u"무선호출", NumberKind::pager},
    {u"삐삐", NumberKind::pager},       {u"mobile", NumberKind::mobile},     {u"cell", NumberKind::mobile},
    {u"iphone", NumberKind::mobile},    {u"handphone", NumberKind::mobile},  {u"smartphone", NumberKind::mobile},
    {u"handy", NumberKind::mobile},     {u"pcs", NumberKind::mobile},        {u"휴대", NumberKind::mobile},
    {u"핸드폰", NumberKind::mobile},    {u"모바일", NumberKind::mobile},     {u"이동전화", NumberKind::mobile},
    {u"work", NumberKind::business},    {u"business", NumberKind::business}, {u"office", NumberKind::business},
    {u"company", NumberKind::business}, {u"회사", NumberKind::business},     {u"직장", NumberKind::business},
    {u"근무", NumberKind::business},    {u"사무실", NumberKind::business},   {u"home", NumberKind::home},
    {u"집", NumberKind::home},          {u"자택", NumberKind::home},
}};

const Place& placeOf(NumberKind kind) {
    return *std::find_if(places.begin(), places.end(), [kind](const Place& place) { return place.kind == kind; });
}

bool isForVoice(NumberKind kind) {
    return kind != NumberKind::fax && kind != NumberKind::pager;
}

class Placing {
public:
    explicit Placing(ContactDraft& draft) : draft_(draft) {}

    bool putWhereItBelongs(const FoundNumber& number) {
        if (number.kind == NumberKind::other) return false;
        const Place& place = placeOf(number.kind);
        if (draft_.has(place.field)) return textAt(place) == number.text;
        draft_.put(place.field, number.text);
        return true;
    }

    void putElsewhere(const FoundNumber& number) {
        if (findPlaceOf(number) != nullptr) return;
        const auto* const end = places.begin() + voicePlaces;
        const auto* const free = std::find_if(isForVoice(number.kind) ? places.begin() : end, end,
                                              [this](const Place& place) { return !draft_.has(place.field); });
        if (free == end) return draft_.remark("its number " + quoted(number.text) + " has no place and is left out");
        draft_.put(free->field, number.text);
        if (number.kind == NumberKind::other) return;
        draft_.remark("its second " + std::string(placeOf(number.kind).label) + " number " + quoted(number.text) +
                      " is kept as its " + free->label + " number");
    }

    /// Of the numbers that are preferred the first that has a place. `numbers` begin with the most preferred.
    void choosePrimary(const std::vector<FoundNumber>& numbers) {
        for (const FoundNumber& number : numbers) {
            const bool isChosen = draft_.has(PhoneBook::PBDBATTR_PRIMARYTELNO);
            if (isChosen || number.preference == FoundNumber::notPreferred) return;
            if (const Place* place = findPlaceOf(number); place != nullptr)
                draft_.put(PhoneBook::PBDBATTR_PRIMARYTELNO, fieldOf(place->field).mask());
        }
    }

private:
    /// Where the number stands, best where numbers of its kind belong; null when nowhere.
    const Place* findPlaceOf(const FoundNumber& number) const {
        const auto isThere = [&](const Place& place) { return textAt(place) == number.text; };
        if (number.kind != NumberKind::other && isThere(placeOf(number.kind))) return &placeOf(number.kind);
        const auto* const found = std::find_if(places.begin(), places.end(), isThere);
        return found == places.end() ? nullptr : found;
    }

    std::u16string_view textAt(const Place& place) const {
        return (draft_.record.*fieldOf(place.field).model().text).view();
    }

    ContactDraft& draft_;
};

}  // namespace

std::u16string spelledPlainly(std::u16string_view word) {
    std::u16string plain;
    for (const char16_t unit : word) {
        if (u_isalnum(unit) != 0) plain += static_cast<char16_t>(u_tolower(unit));
    }
    return plain;
}

std::optional<NumberKind> numberKindOf(std::u16string_view word) {
    const std::u16string plain = spelledPlainly(word);
    const auto* known = std::find_if(kindWords.begin(), kindWords.end(), [&](const KindWord& each) {
        return plain.find(each.word) != std::u16string::npos;
    });
    return known == kindWords.end() ? std::nullopt : std::optional(known->kind);
}

void placeNumbers(ContactDraft& draft, std::vector<FoundNumber> numbers) {
    std::erase_if(numbers, [](const FoundNumber& number) { return isBlank(number.text); });
    std::stable_sort(numbers.begin(), numbers.end(), [](const FoundNumber& left, const FoundNumber& right) {
        return left.preference < right.preference;
    });
    Placing placing(draft);
    std::vector<FoundNumber> homeless;
    for (const FoundNumber& number : numbers) {
        if (!placing.putWhereItBelongs(number)) homeless.push_back(number);
    }
    for (const FoundNumber& number : homeless)
        placing.putElsewhere(number);
    placing.choosePrimary(numbers);
}

}  // namespace Tool
