// Writes the sample phone book, contacts.csv: about two hundred people who do not exist, the same ones each
// time. UTF-16LE with a byte-order mark, a header line first, lines that end with a line feed.
//
//   make_contacts [FILE]

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::u16string_view header =
    u"Name,Group,Categories,Mobile,Home,Business,E-mail,Avatar,Photo,Bell,Birthday,Calling screen,Pager,Fax,Notes,"
    u"Private,Primary\n";

/// A line of the file; the members stand in the order of its columns.
struct Person {
    std::u16string name, group, categories, mobile, home, business, email, avatar, photo, bell, birthday, callingScreen,
        pager, fax, notes, privateSlots, primary;
};

constexpr std::u16string Person::*columns[] = {
    &Person::name,         &Person::group,         &Person::categories, &Person::mobile, &Person::home,
    &Person::business,     &Person::email,         &Person::avatar,     &Person::photo,  &Person::bell,
    &Person::birthday,     &Person::callingScreen, &Person::pager,      &Person::fax,    &Person::notes,
    &Person::privateSlots, &Person::primary};

/// Numbers that look random and are the same on every machine.
class Dice {
public:
    /// From 0 to `sides` - 1.
    std::uint32_t roll(std::uint32_t sides) {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<std::uint32_t>(state_ >> 33) % sides;
    }
    bool oneIn(std::uint32_t sides) { return roll(sides) == 0; }
    template <class List>
    auto pick(const List& list) {
        return list[roll(static_cast<std::uint32_t>(list.size()))];
    }

private:
    std::uint64_t state_ = 20031104;
};

using Names = std::vector<std::u16string_view>;

const Names familyNames = {u"김", u"이", u"박", u"최", u"정", u"강", u"조", u"윤", u"장", u"임", u"한", u"오",
                           u"서", u"신", u"권", u"황", u"안", u"송", u"류", u"홍", u"고", u"문", u"양", u"남궁"};
const Names givenNames = {u"서연", u"지훈", u"하은", u"도윤", u"예준", u"수빈", u"현우", u"지민", u"영호", u"은지",
                          u"태경", u"소희", u"준서", u"가영", u"재석", u"유진", u"동현", u"보라", u"성민", u"다인",
                          u"철수", u"영희", u"상우", u"나래", u"기범", u"한별", u"우진", u"세아", u"정호", u"민아"};
const Names latinFirstNames = {u"Anna",  u"James", u"Mary", u"Peter", u"Laura", u"Kim",    u"Jonas", u"Elena",
                               u"David", u"Sofia", u"Marc", u"Julia", u"Omar",  u"Ingrid", u"Paul",  u"Chloé"};
const Names latinLastNames = {u"Smith", u"Müller", u"Kimura", u"Garcia",  u"Johnson", u"Dubois",
                              u"Rossi", u"Novak",  u"Larsen", u"O'Brien", u"Walker",  u"Zhang"};
const Names groups = {u"가족", u"친구", u"회사", u"학교"};
const Names areaCodes = {u"02", u"031", u"032", u"051", u"053", u"062", u"064"};
const Names bells = {u"bell01.mid", u"bell02.mid", u"morning.mid", u"waltz.mid"};
const Names avatars = {u"avatar01", u"avatar02", u"avatar03"};

std::u16string digits(std::uint32_t number, int width) {
    std::u16string text;
    for (; width > 0; --width, number /= 10)
        text.insert(text.begin(), static_cast<char16_t>(u'0' + number % 10));
    return text;
}

/// Each person has numbers of their own: they hold the person's place in the file.
class Numbers {
public:
    Numbers(Dice& dice, std::uint32_t place) : dice_(dice), place_(place) {}

    /// As people type them: with dashes, bare, or with the country code.
    std::u16string mobile() {
        static const std::array<std::array<std::u16string_view, 2>, 4> spellings = {
            {{u"010-", u"-"}, {u"010-", u"-"}, {u"010", u""}, {u"+82 10-", u"-"}}};
        const auto spelling = dice_.pick(spellings);
        return std::u16string(spelling[0]) + exchange(4) + std::u16string(spelling[1]) + subscriber(0);
    }
    std::u16string landline(std::uint32_t kind) {
        const std::u16string area(dice_.pick(areaCodes));
        const std::u16string areaText = dice_.oneIn(3) ? u"(" + area + u") " : area + u"-";
        return areaText + exchange(3) + u"-" + subscriber(kind);
    }
    std::u16string pager() { return u"015-" + exchange(4) + u"-" + subscriber(4); }

private:
    std::u16string exchange(int width) {
        std::u16string text = digits(dice_.roll(10000), width);
        text[0] = std::max(text[0], u'2');
        return text;
    }
    std::u16string subscriber(std::uint32_t kind) const {
        return digits((place_ * 37 + kind * 1001 + 1000) % 10000, 4);
    }

    Dice& dice_;
    std::uint32_t place_;
};

std::u16string birthday(Dice& dice) {
    const std::u16string year = digits(1945 + dice.roll(58), 4);
    const std::u16string month = digits(1 + dice.roll(12), 2);
    const std::u16string day = digits(1 + dice.roll(28), 2);
    return year + u"-" + month + u"-" + day;
}

/// What anybody may have or lack; what the person has already stays. The dice are thrown one statement at a
/// time: within one, compilers differ in what comes first.
Person withParticulars(Person person, Dice& dice, std::uint32_t place) {
    Numbers numbers(dice, place);
    const auto give = [](std::u16string& field, const std::u16string& value) {
        if (field.empty()) field = value;
    };
    if (!dice.oneIn(12)) give(person.mobile, numbers.mobile());
    if (!dice.oneIn(6)) give(person.group, std::u16string(dice.pick(groups)));
    const bool atWork = person.group == u"회사";
    if (dice.oneIn(3)) give(person.home, numbers.landline(1));
    if (atWork || dice.oneIn(5)) give(person.business, numbers.landline(2));
    if (atWork && dice.oneIn(3)) give(person.fax, numbers.landline(3));
    if (dice.oneIn(15)) give(person.pager, numbers.pager());
    if (!dice.oneIn(3)) give(person.birthday, birthday(dice));
    if (dice.oneIn(3)) give(person.email, u"person" + digits(place, 3) + u"@example.com");
    if (dice.oneIn(8)) give(person.avatar, std::u16string(dice.pick(avatars)));
    if (dice.oneIn(10)) give(person.photo, u"photo" + digits(place, 3) + u".jpg");
    if (dice.oneIn(4)) give(person.bell, std::u16string(dice.pick(bells)));
    if (dice.oneIn(9)) give(person.callingScreen, digits(1 + dice.roll(9), 1));
    if (!person.business.empty() && dice.oneIn(2)) give(person.primary, u"0x10");
    return person;
}

/// People whom the documentation and the demonstration ask for by name.
std::vector<Person> knownPeople() {
    std::vector<Person> people;
    const auto add = [&](std::u16string_view name, std::u16string_view group, std::u16string_view mobile) {
        Person& person = people.emplace_back();
        person.name = name;
        person.group = group;
        person.mobile = mobile;
    };
    add(u"김민수", u"친구", u"010-2345-6789");
    add(u"김미영", u"가족", u"010-3141-5926");
    add(u"강명호", u"회사", u"010-2718-2818");
    add(u"고민정", u"학교", u"+82 10-1618-0339");
    add(u"권 문식", u"회사", u"010-5772-1566");
    add(u"길만호", u"", u"010-1414-2135");
    add(u"Minsu Kim", u"회사", u"+1 212-555-0123");
    people.front().home = u"02-312-4567";
    people.front().email = u"minsu@example.com";
    people.front().birthday = u"1990-03-05";
    people.front().bell = u"waltz.mid";
    return people;
}

std::vector<Person> everybody() {
    constexpr std::size_t koreans = 150;
    constexpr std::size_t all = 200;
    Dice dice;
    std::vector<Person> people = knownPeople();
    while (people.size() < all) {
        const bool korean = people.size() < koreans;
        const std::u16string family(dice.pick(korean ? familyNames : latinLastNames));
        const std::u16string given(dice.pick(korean ? givenNames : latinFirstNames));
        const std::u16string name = korean ? family + given : given + u" " + family;
        const bool taken = std::any_of(people.begin(), people.end(), [&](const Person& p) { return p.name == name; });
        if (!taken) people.emplace_back().name = name;
    }
    for (std::size_t place = 0; place < people.size(); ++place)
        people[place] = withParticulars(people[place], dice, static_cast<std::uint32_t>(place));
    return people;
}

std::u16string lineOf(const Person& person) {
    std::u16string line;
    for (const auto column : columns)
        line += (line.empty() ? u"" : u",") + person.*column;
    return line + u"\n";
}

void write(std::ostream& out, std::u16string_view text) {
    for (const char16_t unit : text)
        out.put(static_cast<char>(unit & 0xFF)).put(static_cast<char>(unit >> 8));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 2) {
        std::cerr << "usage: make_contacts [FILE]\n";
        return 2;
    }
    std::ofstream file(argc == 2 ? argv[1] : "contacts.csv", std::ios::binary);
    write(file, u"\uFEFF");
    write(file, header);
    for (const Person& person : everybody())
        write(file, lineOf(person));
    return file.flush() ? 0 : 1;
}
