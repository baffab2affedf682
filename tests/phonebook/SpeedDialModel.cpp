#include "tests/phonebook/SpeedDialModel.h"

#include <algorithm>
#include <tuple>
#include <vector>

namespace speed_dial {

namespace {

constexpr DWORD rowFlags = 7;
constexpr DWORD dirty = 0x10;
constexpr std::array<DWORD, 3> types = {0x4, 0x8, 0x10};

int slotOf(DWORD id) {
    return static_cast<std::int16_t>(id);
}

int byteOf(DWORD telType) {
    const auto found = std::ranges::find(types, telType);
    return static_cast<int>(found - types.begin());  // 3 for any other
}

DWORD wordWith(DWORD word, DWORD id, DWORD telType) {
    std::array<DWORD, 4> bytes = {word & 0xFF, word >> 8 & 0xFF, word >> 16 & 0xFF, word >> 24};
    bytes[static_cast<std::size_t>(byteOf(telType))] = id & 0xFF;
    return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | bytes[3] << 24;
}

void put(Cache& cache, DWORD id, const Entry& entry) {
    if (id < cache.size()) cache[id] = entry;
}

ModelRow rowOf(DWORD id, const Entry& entry) {
    return {slotOf(id), entry.telType, withoutDashes(entry.number)};
}

WString numberOf(const ModelContact& contact, DWORD telType) {
    const int index = byteOf(telType);
    return index < 3 ? contact.numbers[static_cast<std::size_t>(index)] : WString();
}

}  // namespace

WString withoutDashes(const WString& number) {
    WString reduced = number;
    std::erase(reduced, u'-');
    return reduced;
}

std::map<int, ModelRow>::iterator Model::firstRowOf(DWORD id) {
    return std::ranges::find_if(rows, [&](const auto& row) { return row.second.slot == slotOf(id); });
}

Model::Caller Model::callerWith(const WString& number) const {
    if (number.empty()) return {E_INVALIDARG};
    bool isWithinSome = false;
    std::vector<std::tuple<WString, int>> holders;
    for (const auto& [key, contact] : contacts) {
        for (const WString& typed : contact.numbers) {
            const WString reduced = withoutDashes(typed);
            isWithinSome = isWithinSome || reduced.find(number) != WString::npos;
            if (reduced == number) holders.emplace_back(contact.name, key);
        }
    }
    if (!holders.empty()) return {S_OK, std::get<1>(*std::ranges::min_element(holders))};
    return {isWithinSome ? S_OK : E_FAIL};
}

HRESULT Model::link(DWORD id, int contact, DWORD telType) {
    const auto found = contacts.find(contact);
    if (found == contacts.end()) return E_FAIL;
    found->second.word = wordWith(found->second.word.value_or(0), id, telType);
    return S_OK;
}

HRESULT Model::link(DWORD id, const WString& number, DWORD telType) {
    const Caller caller = callerWith(number);
    if (FAILED(caller.result)) return caller.result;
    if (caller.contact != 0) return link(id, caller.contact, telType);
    nobodysWord = wordWith(0, id, telType);  // written anew each time, whatever was there
    return S_OK;
}

Answer Model::insert(DWORD id, std::optional<Entry> entry) {
    if (!entry) return {E_POINTER};
    entry->flags = rowFlags;
    rows[nextRow++] = rowOf(id, *entry);
    const HRESULT linked = link(id, entry->contact, entry->telType);
    put(cache, id, *entry);
    return {linked, entry};
}

Answer Model::update(std::optional<int> row, std::optional<Entry> entry) {
    if (!entry) return {E_POINTER};
    entry->flags = rowFlags;
    if (!row) return {E_FAIL, entry};
    rows[*row] = rowOf(entry->slot, *entry);
    link(entry->slot, entry->contact, entry->telType);
    put(cache, entry->slot, *entry);
    return {S_OK, entry};
}

Answer Model::write(DWORD id, std::optional<Entry> entry) {
    if (!entry) return {E_POINTER};
    const auto row = firstRowOf(id);
    return row == rows.end() ? insert(id, entry) : update(row->first, entry);
}

Answer Model::erase(DWORD id, const std::optional<Entry>& entry) {
    const auto row = firstRowOf(id);
    const ModelRow gone = row == rows.end() ? ModelRow() : row->second;
    HRESULT result = row == rows.end() ? S_FALSE : S_OK;
    if (row != rows.end()) rows.erase(row);
    if (!entry) result = link(0, gone.number, gone.telType);
    if (entry && entry->contact != 0) result = link(0, entry->contact, entry->telType);
    put(cache, id, Entry());
    return {result, entry};
}

Answer Model::move(DWORD from, DWORD to, std::optional<Entry> entry) {
    const auto row = firstRowOf(from);
    if (row == rows.end()) return {E_FAIL, entry};
    moveCache(from, to);
    row->second.slot = slotOf(to);
    const ModelRow moved = row->second;
    const HRESULT linked =
        entry && entry->contact != 0 ? link(to, entry->contact, moved.telType) : link(to, moved.number, moved.telType);
    if (entry) entry = query(to, *entry, true).filled;
    return {linked, entry};
}

Answer Model::eraseAll() {
    rows.clear();
    cache.fill(Entry());
    for (auto& [key, contact] : contacts) {
        if (contact.word) contact.word = 0;
    }
    if (nobodysWord) nobodysWord = 0;
    return {};
}

Answer Model::query(DWORD id, Entry entry, bool withContact) const {
    const auto row = std::ranges::find_if(rows, [&](const auto& each) { return each.second.slot == slotOf(id); });
    if (row == rows.end()) return {E_FAIL, entry};
    entry.slot = id;
    entry.telType = row->second.telType;
    entry.number = row->second.number;
    entry.flags = rowFlags;
    if (!withContact) return {S_OK, entry};
    const Caller caller = callerWith(entry.number);
    entry.contact = 0;  // never told
    entry.name.clear();
    if (caller.result != S_OK) return {S_FALSE, entry};
    const ModelContact contact = caller.contact != 0 ? contacts.at(caller.contact) : ModelContact();
    entry.name = contact.name;
    entry.number = numberOf(contact, entry.telType);
    return {S_OK, entry};
}

Answer Model::queryNumber(const WString& number, Entry entry) const {
    const auto row =
        std::ranges::find_if(rows, [&](const auto& each) { return each.second.number == withoutDashes(number); });
    if (row == rows.end()) return {E_FAIL, entry};
    entry.slot = static_cast<DWORD>(row->second.slot) & 0xFFFF;
    entry.contact = 0;
    entry.telType = row->second.telType;
    entry.number = row->second.number;
    entry.flags = rowFlags;
    return {S_OK, entry};
}

DWORD Model::proposedSlot(DWORD start) const {
    const auto holders = std::ranges::count_if(rows, [&](const auto& row) { return row.second.slot == slotOf(start); });
    if (holders == 0) return start;
    return slotOf(start) == 1 && holders > 1 ? 2 : 1;
}

void Model::addContact(const ModelContact& contact) {
    contacts[nextContact++] = contact;
}

Answer Model::eraseContact(int key) {
    const auto found = contacts.find(key);
    const ModelContact gone = found->second;
    contacts.erase(found);
    Answer answer;
    for (std::size_t i = 0; i < 3; ++i) {
        const DWORD slot = gone.word.value_or(0) >> (8 * i) & 0xFF;
        if (slot == 0 || gone.numbers[i].empty()) continue;
        const auto row = firstRowOf(slot);
        answer.result = row == rows.end() ? E_FAIL : S_OK;
        if (row == rows.end() || row->second.number != withoutDashes(gone.numbers[i])) continue;
        rows.erase(row);
        put(cache, slot, Entry());
    }
    return answer;
}

Answer Model::fill() {
    return fill(cache);
}

Answer Model::fill(Cache& other) {
    other.fill(Entry());
    for (const auto& [key, row] : rows) {
        if (row.slot < 0 || row.slot > 99) continue;
        const auto slot = static_cast<DWORD>(row.slot);
        other[slot].slot = slot;
        other[slot].number = row.number;
    }
    complete();
    return {};
}

/// Nobody's row comes first, then those of the contacts in the order in which they were added.
void Model::complete() {
    const auto point = [&](int key, const WString& name, DWORD word) {
        for (std::size_t i = 0; i < 3; ++i) {
            const DWORD slot = word >> (8 * i) & 0xFF;
            if (slot == 0 || slot > 99 || cache[slot].slot != slot) continue;
            cache[slot].contact = key;
            cache[slot].name = name;
            cache[slot].telType = types[i];
        }
    };
    point(0, TEXT(""), nobodysWord.value_or(0));
    for (const auto& [key, contact] : contacts)
        point(key, contact.name, contact.word.value_or(0));
}

std::map<DWORD, WString> Model::names() const {
    std::map<DWORD, WString> named;
    const auto point = [&](const WString& name, DWORD word) {
        for (int i = 0; i < 3; ++i) {
            const DWORD slot = word >> (8 * i) & 0xFF;
            if (slot != 0) named[slot] = name;
        }
    };
    point(TEXT(""), nobodysWord.value_or(0));
    for (const auto& [key, contact] : contacts)
        point(contact.name, contact.word.value_or(0));
    return named;
}

Answer Model::writeCache(DWORD id, std::optional<Entry> entry) {
    if (!entry) return {E_POINTER};
    if (id == 0 || id > 99) return {E_FAIL, entry};
    cache[id] = *entry;
    cache[id].flags |= dirty;
    return {S_OK, entry};
}

Answer Model::eraseCache(DWORD id) {
    if (id == 0 || id > 99) return {E_FAIL};
    cache[id].slot = 0;
    cache[id].flags |= dirty;
    return {};
}

Answer Model::moveCache(DWORD from, DWORD to) {
    if (from > 99) return {};
    Entry moved = cache[from];
    moved.slot = to;
    put(cache, to, moved);
    cache[from] = Entry();
    return {};
}

Answer Model::queryCache(const WString& number) const {
    const auto found =
        std::ranges::find_if(cache, [&](const Entry& entry) { return entry.slot != 0 && entry.number == number; });
    return found == cache.end() ? Answer{E_FAIL, Entry()} : Answer{S_OK, *found};
}

Answer Model::flush() {
    for (DWORD slot = 0; slot < cache.size(); ++slot) {
        if ((cache[slot].flags & dirty) == 0) continue;
        cache[slot].flags &= ~dirty;
        const Entry entry = cache[slot];
        // What the write gives the caller's entry, it gives the cache's own: the flags.
        if (entry.slot == 0) {
            erase(slot, entry);
            continue;
        }
        cache[slot] = *write(slot, entry).filled;
    }
    return {};
}

}  // namespace speed_dial
