#include "benchmarks/People.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace benchmarks {

namespace {

constexpr std::array<std::u16string_view, 10> familyNames = {u"김", u"이", u"박", u"최", u"정",
                                                             u"강", u"조", u"윤", u"장", u"임"};
constexpr std::array<std::u16string_view, 8> syllables = {u"민", u"수", u"지", u"영", u"현", u"서", u"준", u"경"};
constexpr std::array<std::u16string_view, 10> latinFamilies = {u"Smith",  u"Jones", u"Brown",  u"Novak",  u"Kowalski",
                                                               u"Garcia", u"Rossi", u"Dubois", u"Larsen", u"Weber"};
constexpr std::array<std::u16string_view, 8> latinGiven = {u"Anna",  u"Boris", u"Clara", u"David",
                                                           u"Elena", u"Felix", u"Greta", u"Hugo"};

std::u16string digits(int value, std::size_t width) {
    std::u16string text(width, u'0');
    for (std::size_t place = width; place > 0; value /= 10)
        text[--place] = static_cast<char16_t>(u'0' + value % 10);
    return text;
}

template <class Names>
std::u16string_view pick(const Names& names, int number) {
    return names[static_cast<std::size_t>(number) % names.size()];
}

}  // namespace

std::u16string nameOf(int person) {
    const int n = person / 2;
    std::u16string name;
    if (person % 2 == 0) {
        return name.append(pick(familyNames, n)).append(pick(syllables, n / 10)).append(pick(syllables, n / 80));
    }
    return name.append(pick(latinGiven, n)).append(u" ").append(pick(latinFamilies, n / 8));
}

std::u16string reducedMobileOf(int person) {
    return u"010" + digits(person / 10'000 + 2'000, 4) + digits(person % 10'000, 4);
}

Person personOf(const People& people, int number) {
    Person person{.name = nameOf(number), .reducedMobile = reducedMobileOf(number)};
    person.mobile = person.reducedMobile;
    person.mobile.insert(7, 1, u'-').insert(3, 1, u'-');
    if (number % 3 == 0) {
        const std::u16string exchange = digits(number % 1'000, 3);
        const std::u16string line = digits(number / 1'000, 4);
        person.home = u"02-" + exchange + u"-" + line;
        person.reducedHome = u"02" + exchange + line;
        if (people.extended) person.group = theGroup;
    }
    return person;
}

std::string fileNameOf(const People& people) {
    return std::to_string(people.count) + (people.extended ? "" : "-contacts-only");
}

std::vector<Person> listOf(const People& people) {
    std::vector<Person> list;
    list.reserve(static_cast<std::size_t>(people.count));
    for (int i = 0; i < people.count; ++i)
        list.push_back(personOf(people, i));
    return list;
}

}  // namespace benchmarks
