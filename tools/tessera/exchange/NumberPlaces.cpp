#include "NumberPlaces.h"

#include <algorithm>
#include <array>

#include "../Records.h"
#include "../port/Characters.h"

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
    WStringView word;
    NumberKind kind;
};

/// A fax at home is a fax: what the number is for counts more than where it is. So the words stand in this order.
constexpr std::array<KindWord, 29> kindWords = {{
    {TEXT("fax"), NumberKind::fax},          {TEXT("팩스"), NumberKind::fax},
    {TEXT("pager"), NumberKind::pager},      {TEXT("beeper"), NumberKind::pager},
    {TEXT("호출기"), NumberKind::pager},     {TEXT("무선호출"), NumberKind::pager},
    {TEXT("삐삐"), NumberKind::pager},       {TEXT("mobile"), NumberKind::mobile},
    {TEXT("cell"), NumberKind::mobile},      {TEXT("iphone"), NumberKind::mobile},
    {TEXT("handphone"), NumberKind::mobile}, {TEXT("smartphone"), NumberKind::mobile},
    {TEXT("handy"), NumberKind::mobile},     {TEXT("pcs"), NumberKind::mobile},
    {TEXT("휴대"), NumberKind::mobile},      {TEXT("핸드폰"), NumberKind::mobile},
    {TEXT("모바일"), NumberKind::mobile},    {TEXT("이동전화"), NumberKind::mobile},
    {TEXT("work"), NumberKind::business},    {TEXT("business"), NumberKind::business},
    {TEXT("office"), NumberKind::business},  {TEXT("company"), NumberKind::business},
    {TEXT("회사"), NumberKind::business},    {TEXT("직장"), NumberKind::business},
    {TEXT("근무"), NumberKind::business},    {TEXT("사무실"), NumberKind::business},
    {TEXT("home"), NumberKind::home},        {TEXT("집"), NumberKind::home},
    {TEXT("자택"), NumberKind::home},
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

    WStringView textAt(const Place& place) const { return (draft_.record.*fieldOf(place.field).model().text).view(); }

    ContactDraft& draft_;
};

}  // namespace

WString spelledPlainly(WStringView word) {
    WString plain;
    for (const WCHAR unit : word) {
        if (port::isLetterOrDigit(unit)) plain += port::lowerCase(unit);
    }
    return plain;
}

std::optional<NumberKind> numberKindOf(WStringView word) {
    const WString plain = spelledPlainly(word);
    const auto* known = std::find_if(kindWords.begin(), kindWords.end(),
                                     [&](const KindWord& each) { return plain.find(each.word) != WString::npos; });
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
