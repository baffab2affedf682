#include "benchmarks/Floor.h"

#include <cstring>
#include <memory>

#include "benchmarks/Scratch.h"
#include "tessera/platform/base/CString.h"

namespace benchmarks {

namespace {

std::u16string lowerCaseOf(const std::u16string& text) {
    CString lower(text);
    lower.MakeLower();
    return std::u16string(lower.view());
}

/// The initial consonant of a syllable; any other character is its own.
char16_t initialOf(char16_t character) {
    static constexpr std::u16string_view initials = u"ㄱㄲㄴㄷㄸㄹㅁㅂㅃㅅㅆㅇㅈㅉㅊㅋㅌㅍㅎ";
    constexpr char16_t first = u'가';
    constexpr char16_t last = u'힣';
    constexpr int syllablesPerInitial = 21 * 28;
    if (character < first || character > last) return character;
    return initials[static_cast<std::size_t>((character - first) / syllablesPerInitial)];
}

std::string_view bytesOf(std::u16string_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

/// How often the text stands in what is packed at a place that is a multiple of `unit`.
int timesIn(std::string_view packed, std::string_view text, std::size_t unit) {
    int times = 0;
    const char* rest = packed.data();
    const char* const end = rest + packed.size();
    while (const void* found = ::memmem(rest, static_cast<std::size_t>(end - rest), text.data(), text.size())) {
        rest = static_cast<const char*>(found) + 1;
        if (static_cast<std::size_t>(rest - 1 - packed.data()) % unit == 0) ++times;
    }
    return times;
}

struct OpenFloor {
    std::filesystem::path file;
    std::unique_ptr<ContactsFloor> floor;
};
OpenFloor& opened() {
    static OpenFloor floor;
    return floor;
}

}  // namespace

std::filesystem::path floorOf(const People& people) {
    const std::filesystem::path file = scratchFolder() / (fileNameOf(people) + "-floor.db");
    if (std::filesystem::exists(file)) return file;
    {
        ContactsFloor floor(file);
        floor.database().run("PRAGMA synchronous=OFF");  // it is made durable as a whole
        floor.import(listOf(people));
    }
    settle(file);
    return file;
}

std::filesystem::path floorToChange(const People& people) {
    return people.count < aMillion ? copyToChange(floorOf(people)) : floorOf(people);
}

ContactsFloor& warmFloor(const std::filesystem::path& file) {
    OpenFloor& now = opened();
    if (now.floor == nullptr || now.file != file) {
        now.floor = std::make_unique<ContactsFloor>(file);
        now.file = file;
    }
    return *now.floor;
}

void closeFloor() {
    opened().floor.reset();
}

std::string packedNumbers(const People& people) {
    std::string packed;
    for (int i = 0; i < people.count; ++i) {
        const Person person = personOf(people, i);
        for (const std::u16string* number : {&person.reducedMobile, &person.reducedHome}) {
            if (!number->empty()) packed.append(number->begin(), number->end()).push_back('\0');
        }
    }
    return packed;
}

std::u16string packedNames(const People& people) {
    std::u16string packed;
    for (int i = 0; i < people.count; ++i)
        packed.append(lowerCaseOf(nameOf(i))).push_back(u'\0');
    return packed;
}

std::u16string packedInitials(const People& people) {
    std::u16string packed;
    for (int i = 0; i < people.count; ++i) {
        packed.push_back(u'\0');
        for (const char16_t character : nameOf(i))
            packed.push_back(initialOf(character));
    }
    return packed;
}

int timesIn(std::string_view packed, std::string_view text) {
    return timesIn(packed, text, sizeof(char));
}

int timesIn(std::u16string_view packed, std::u16string_view text) {
    return timesIn(bytesOf(packed), bytesOf(text), sizeof(char16_t));
}

}  // namespace benchmarks
