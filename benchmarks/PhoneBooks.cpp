#include "benchmarks/PhoneBooks.h"

#include <array>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string_view>

#include "tessera/platform/base/Unicode.h"
#include "tessera/platform/objectstore/ObjectStore.h"

namespace benchmarks {

namespace {

constexpr std::array<std::u16string_view, 10> familyNames = {u"김", u"이", u"박", u"최", u"정",
                                                             u"강", u"조", u"윤", u"장", u"임"};
constexpr std::array<std::u16string_view, 8> syllables = {u"민", u"수", u"지", u"영", u"현", u"서", u"준", u"경"};
constexpr std::array<std::u16string_view, 10> latinFamilies = {u"Smith",  u"Jones", u"Brown",  u"Novak",  u"Kowalski",
                                                               u"Garcia", u"Rossi", u"Dubois", u"Larsen", u"Weber"};
constexpr std::array<std::u16string_view, 8> latinGiven = {u"Anna",  u"Boris", u"Clara", u"David",
                                                           u"Elena", u"Felix", u"Greta", u"Hugo"};

struct ScratchFolder {
    ScratchFolder() {
        std::random_device random;
        path = std::filesystem::temp_directory_path() / ("tessera-benchmarks-" + std::to_string(random()));
        std::filesystem::create_directory(path);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    std::filesystem::path path;
};

std::u16string digits(int value, int width) {
    std::u16string text;
    for (int place = 0; place < width; ++place, value /= 10) {
        text.insert(text.begin(), static_cast<char16_t>(u'0' + value % 10));
    }
    return text;
}

template <class Names>
std::u16string_view pick(const Names& names, int number) {
    return names[static_cast<std::size_t>(number) % names.size()];
}

void mount(const std::filesystem::path& store) {
    if (!ObjectStore::mount(store.string())) throw std::runtime_error(ObjectStore::errorText());
}

}  // namespace

const std::filesystem::path& scratchFolder() {
    static const ScratchFolder folder;
    return folder.path;
}

std::u16string nameOf(int person) {
    const int n = person / 2;
    std::u16string name;
    if (person % 2 == 0) {
        return name.append(pick(familyNames, n)).append(pick(syllables, n / 10)).append(pick(syllables, n / 80));
    }
    return name.append(pick(latinGiven, n)).append(u" ").append(pick(latinFamilies, n / 8));
}

std::u16string mobileOf(int person) {
    return u"010-" + digits(person / 10'000 + 2'000, 4) + u"-" + digits(person % 10'000, 4);
}

std::u16string reducedMobileOf(int person) {
    return u"010" + digits(person / 10'000 + 2'000, 4) + digits(person % 10'000, 4);
}

std::filesystem::path importFile(int people) {
    const std::filesystem::path path = scratchFolder() / (std::to_string(people) + ".csv");
    if (std::filesystem::exists(path)) return path;
    std::u16string text = u"name,group,categories,mobile,home\n";
    for (int person = 0; person < people; ++person) {
        const bool grouped = person % 3 == 0;
        text += nameOf(person) + (grouped ? u",친구,," : u",,,") + mobileOf(person);
        if (grouped) text += u",02-" + digits(person % 1'000, 3) + u"-" + digits(person / 1'000, 4);
        text += u'\n';
    }
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(text.data()), static_cast<std::streamsize>(text.size() * sizeof(char16_t)));
    return path;
}

std::filesystem::path PhoneBookOf::storeFile(int people) {
    const std::filesystem::path path = scratchFolder() / (std::to_string(people) + ".db");
    if (std::filesystem::exists(path)) return path;
    mount(path);
    PhoneBook::PhoneBookDBMgr manager;
    CString file = *textOfUtf8(importFile(people).string());
    if (FAILED(manager.initDB(false)) || FAILED(manager.openDB(nullptr)) || FAILED(manager.buildDBFromFile(file, 0))) {
        throw std::runtime_error("the phone book was not made");
    }
    manager.closeDB();
    ObjectStore::unmount();
    return path;
}

PhoneBookOf::PhoneBookOf(int people) {
    mount(storeFile(people));
    if (FAILED(manager_.openDB(nullptr))) throw std::runtime_error("the phone book cannot be opened");
    delete manager_.searchPBRecordOfTelNo(nullptr, u"none");
}

PhoneBookOf::~PhoneBookOf() {
    manager_.closeDB();
    ObjectStore::unmount();
}

}  // namespace benchmarks
