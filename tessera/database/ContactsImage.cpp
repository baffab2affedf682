#include "tessera/database/ContactsImage.h"

#include <algorithm>
#include <span>
#include <type_traits>

#include "tessera/database/PackedSearch.h"
#include "tessera/database/UnicodeHandler.h"

namespace Database {

namespace {

constexpr WCHAR firstCompatibilityConsonant = 0x3131;
constexpr WCHAR lastCompatibilityConsonant = 0x314E;
constexpr WCHAR firstInitial = 0x1100;
constexpr WCHAR lastInitial = 0x1159;

bool isCompatibilityConsonant(WCHAR ch) {
    return ch >= firstCompatibilityConsonant && ch <= lastCompatibilityConsonant;
}

bool isInitial(WCHAR ch) {
    return ch >= firstInitial && ch <= lastInitial;
}

bool isWhiteSpace(int ch) {
    return (ch >= 0x09 && ch <= 0x0D) || ch == 0x20 || ch == 0x85 || ch == 0xA0 || ch == 0x1680 ||
           (ch >= 0x2000 && ch <= 0x200A) || ch == 0x2028 || ch == 0x2029 || ch == 0x202F || ch == 0x205F ||
           ch == 0x3000;
}

/// The initials that compatibility consonants stand for; whatever stands for none is dropped.
CString initialsOf(const CString& key) {
    CString initials;
    for (const WCHAR ch : key.view()) {
        if (!isCompatibilityConsonant(ch)) continue;
        if (const int initial = UnicodeHandler::getLIndex(ch); initial != ch) initials += static_cast<WCHAR>(initial);
    }
    return initials;
}

/// What a search by initials compares of a character; nothing for those that it passes over.
std::optional<int> initialOf(WCHAR ch) {
    const int initial = UnicodeHandler::getLIndex(ch);
    if (isWhiteSpace(initial) || initial == u',') return std::nullopt;
    return initial;
}

/// An initial of a key: a plain consonant finds its tense partner too.
class SoughtInitial {
public:
    explicit SoughtInitial(WCHAR ch) : plain_(ch), tense_(UnicodeHandler::getRelatedJa(ch)) {}
    bool finds(int initial) const { return initial == plain_ || initial == tense_; }

private:
    int plain_;
    int tense_;
};

/// Whether the name begins with these initials, blanks and commas passed over.
bool beginsWith(WStringView lowerName, std::span<const SoughtInitial> initials) {
    for (const WCHAR ch : lowerName) {
        if (initials.empty()) break;
        const auto initial = initialOf(ch);
        if (!initial) continue;
        if (!initials.front().finds(*initial)) return false;
        initials = initials.subspan(1);
    }
    return initials.empty();
}

std::array<WCHAR, 2> firstInitialsOf(WStringView lowerName) {
    std::array<WCHAR, 2> initials{};
    std::size_t found = 0;
    for (std::size_t i = 0; i < lowerName.size() && found < initials.size(); ++i) {
        if (const auto initial = initialOf(lowerName[i])) initials[found++] = static_cast<WCHAR>(*initial);
    }
    return initials;
}

/// The key as bytes; nothing when it has a character that no reduced number has.
bool narrowed(const CString& key, std::string& bytes) {
    for (const WCHAR ch : key.view()) {
        if (ch == 0 || ch > 0x7E) return false;
        bytes += static_cast<char>(ch);
    }
    return true;
}

}  // namespace

ContactsImage::Slot ContactsImage::addSlot(const ScannedContact& contact) {
    const auto slot = static_cast<Slot>(contacts_.size());
    const auto nameStart = static_cast<std::uint32_t>(names_.size());
    const auto numbersStart = static_cast<std::uint32_t>(numbers_.size());
    const auto keyStart = static_cast<std::uint32_t>(keys_.size());

    CString lower(WStringView(contact.name));
    lower.MakeLower();
    names_.append(contact.name).push_back(u'\0');
    lowerNames_.append(lower.view()).push_back(u'\0');
    firstInitials_.push_back(firstInitialsOf(lower.view()));
    for (const std::string& number : contact.numbers)
        numbers_.append(number).push_back('\0');
    keys_ += contact.sortKey;

    contacts_.push_back({.oid = contact.oid,
                         .nameStart = nameStart,
                         .nameLength = static_cast<std::uint32_t>(contact.name.size()),
                         .numbersStart = numbersStart,
                         .numbersEnd = static_cast<std::uint32_t>(numbers_.size()),
                         .keyStart = keyStart,
                         .keyEnd = static_cast<std::uint32_t>(keys_.size()),
                         .categories = numberOf(contact.categories),
                         .numbersBeforeName = static_cast<std::uint16_t>(contact.numbersBeforeName),
                         .live = true});
    return slot;
}

ContactsImage::CategoriesNumber ContactsImage::numberOf(const std::optional<WString>& categories) {
    if (!categories) return noCategories;
    const auto next = static_cast<CategoriesNumber>(categories_.size() + 1);
    return categories_.try_emplace(*categories, next).first->second;
}

void ContactsImage::append(const ScannedContact& contact) {
    const Slot slot = addSlot(contact);
    order_.push_back(slot);
    // Sorted when they are first wanted: name order is no order of identifiers.
    identifiersSorted_ = identifiersSorted_ && (identifiers_.empty() || identifiers_.back().oid < contact.oid);
    identifiers_.push_back({contact.oid, slot});
}

void ContactsImage::put(const ScannedContact& contact) {
    remove(contact.oid);
    const Slot slot = addSlot(contact);
    const auto place =
        std::ranges::upper_bound(order_, slot, [&](Slot left, Slot right) { return standsBefore(left, right); });
    slotsInOrder_ = slotsInOrder_ && place == order_.end();
    order_.insert(place, slot);
    identifiers_.insert(std::ranges::lower_bound(identifiers_, contact.oid, {}, &Identifier::oid), {contact.oid, slot});
}

void ContactsImage::remove(DWORD oid) {
    if (!identifiersSorted_) std::ranges::sort(identifiers_, {}, &Identifier::oid);
    identifiersSorted_ = true;
    const auto first = std::ranges::lower_bound(identifiers_, oid, {}, &Identifier::oid);
    const auto last = std::ranges::upper_bound(identifiers_, oid, {}, &Identifier::oid);
    for (auto entry = first; entry != last; ++entry) {
        contacts_[entry->slot].live = false;
        order_.erase(std::ranges::find(order_, entry->slot));
    }
    identifiers_.erase(first, last);
}

void ContactsImage::fit() {
    const auto refit = [](auto& container) {
        std::remove_reference_t<decltype(container)> fitting;
        fitting.reserve(container.size() + container.size() / 8);
        fitting.assign(container.begin(), container.end());
        container.swap(fitting);
    };
    refit(contacts_);
    refit(identifiers_);
    refit(order_);
    refit(names_);
    refit(lowerNames_);
    refit(numbers_);
    refit(keys_);
    refit(firstInitials_);
}

bool ContactsImage::wasteful() const {
    constexpr std::size_t worthwhile = 1'000;
    return contacts_.size() > worthwhile && contacts_.size() > order_.size() + order_.size() / 4;
}

WStringView ContactsImage::nameOf(const Contact& contact) const {
    return WStringView(names_).substr(contact.nameStart, contact.nameLength);
}

WStringView ContactsImage::lowerNameOf(const Contact& contact) const {
    return WStringView(lowerNames_).substr(contact.nameStart, contact.nameLength);
}

std::string_view ContactsImage::keyOf(const Contact& contact) const {
    return std::string_view(keys_).substr(contact.keyStart, contact.keyEnd - contact.keyStart);
}

bool ContactsImage::standsBefore(Slot left, Slot right) const {
    const int order = keyOf(contacts_[left]).compare(keyOf(contacts_[right]));
    return order != 0 ? order < 0 : contacts_[left].oid < contacts_[right].oid;
}

std::vector<ScanMatch> ContactsImage::matchingName(const CString& key) const {
    CString lowerKey = key;
    lowerKey.MakeLower();
    const WCHAR first = key.IsEmpty() ? u'\0' : key[0];
    if (isCompatibilityConsonant(first)) lowerKey = initialsOf(key);
    const bool byInitials = isCompatibilityConsonant(first) || isInitial(first);

    const std::vector<Slot> slots = byInitials ? slotsWithInitials(lowerKey.view()) : slotsWithName(lowerKey.view());
    std::vector<ScanMatch> matches;
    matches.reserve(slots.size());
    for (const Slot slot : slots)
        matches.push_back(matchOf(slot));
    return matches;
}

ScanMatch ContactsImage::matchOf(Slot slot) const {
    return {.oid = contacts_[slot].oid, .name = CString(nameOf(contacts_[slot]))};
}

std::vector<ContactsImage::Slot> ContactsImage::slotsWithInitials(WStringView initials) const {
    if (initials.empty()) return order_;
    const std::vector<SoughtInitial> sought(initials.begin(), initials.end());
    std::vector<Slot> slots;
    for (Slot slot = 0; slot < contacts_.size(); ++slot) {
        // Nearly all are told apart by these, without their names being looked at.
        const auto [first, second] = firstInitials_[slot];
        if (!sought[0].finds(first) || (sought.size() > 1 && !sought[1].finds(second))) continue;
        if (contacts_[slot].live && beginsWith(lowerNameOf(contacts_[slot]), sought)) slots.push_back(slot);
    }
    return inNameOrder(std::move(slots));
}

ContactsImage::Slot ContactsImage::slotAt(std::uint32_t Contact::*start, std::size_t place, Slot from) const {
    const auto beginsBehind = [&](std::size_t slot) {
        return slot >= contacts_.size() || contacts_[slot].*start > place;
    };
    std::size_t known = from;
    std::size_t step = 1;
    for (; !beginsBehind(known + step); step *= 2)
        known += step;
    while (step > 1) {
        step /= 2;
        if (!beginsBehind(known + step)) known += step;
    }
    return static_cast<Slot>(known);
}

std::vector<ContactsImage::Slot> ContactsImage::slotsWithName(WStringView lowerKey) const {
    if (lowerKey.empty()) return order_;
    std::vector<Slot> slots;
    if (lowerKey.find(u'\0') != WStringView::npos) return slots;  // zeros stand between names, in none
    const WStringView names = lowerNames_;
    Slot slot = 0;
    for (std::size_t hit = findInPacked(names, lowerKey); hit != WStringView::npos;) {
        // The contact whose name the hit begins in; a zero behind each name keeps a hit within one.
        slot = slotAt(&Contact::nameStart, hit, slot);
        const Contact& contact = contacts_[slot];
        if (contact.live) slots.push_back(slot);
        hit = findInPacked(names, lowerKey, contact.nameStart + contact.nameLength);
    }
    return inNameOrder(std::move(slots));
}

std::vector<ScanMatch> ContactsImage::matchingNumber(const CString& key) const {
    std::vector<ScanMatch> matches;
    std::string digits;
    if (!narrowed(key, digits)) return matches;
    for (const Slot slot : slotsWithNumber(digits)) {
        const Contact& contact = contacts_[slot];
        const bool named = firstHitStandsBehindName(contact, digits);
        matches.push_back({.oid = contact.oid, .name = named ? CString(nameOf(contact)) : CString()});
    }
    return matches;
}

std::vector<ContactsImage::Slot> ContactsImage::slotsWithNumber(std::string_view digits) const {
    std::vector<Slot> slots;
    const std::string_view numbers = numbers_;
    Slot slot = 0;
    for (std::size_t hit = findInPacked(numbers, digits); hit < numbers.size();) {
        // The contact whose number the hit begins in; a zero behind each number keeps a hit within one.
        slot = slotAt(&Contact::numbersStart, hit, slot);
        const Contact& contact = contacts_[slot];
        if (contact.live) slots.push_back(slot);
        hit = findInPacked(numbers, digits, contact.numbersEnd);
    }
    return inNameOrder(std::move(slots));
}

bool ContactsImage::firstHitStandsBehindName(const Contact& contact, std::string_view digits) const {
    if (contact.numbersBeforeName == 0) return true;
    const std::string_view numbers =
        std::string_view(numbers_).substr(contact.numbersStart, contact.numbersEnd - contact.numbersStart);
    const std::string_view before = numbers.substr(0, numbers.find(digits));
    return std::ranges::count(before, '\0') >= contact.numbersBeforeName;
}

std::vector<ScanMatch> ContactsImage::withCategories(const CString& categories) const {
    const auto known = categories_.find(WString(categories.view()));
    return known == categories_.end() ? std::vector<ScanMatch>() : categorized(known->second);
}

std::vector<ScanMatch> ContactsImage::withoutCategories() const {
    return categorized(noCategories);
}

std::vector<ScanMatch> ContactsImage::categorized(CategoriesNumber categories) const {
    std::vector<ScanMatch> matches;
    for (const Slot slot : order_) {
        if (contacts_[slot].categories == categories) matches.push_back(matchOf(slot));
    }
    return matches;
}

std::vector<ContactsImage::Slot> ContactsImage::inNameOrder(std::vector<Slot> slots) const {
    if (slotsInOrder_ || slots.size() < 2) return slots;
    std::vector<bool> wanted(contacts_.size());
    for (const Slot slot : slots)
        wanted[slot] = true;
    slots.clear();
    std::ranges::copy_if(order_, std::back_inserter(slots), [&](Slot slot) { return wanted[slot]; });
    return slots;
}

}  // namespace Database
