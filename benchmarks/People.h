#pragma once

#include <string>
#include <vector>

// Who is in the phone books that are measured: the same people each time, Korean and Latin names in turn, each with
// a mobile number of its own, every third with a home number and a group.

namespace benchmarks {

/// From here on people have contacts only.
inline constexpr int aMillion = 1'000'000;

struct People {
    int count = 0;
    /// False: nobody has a group, and so nobody an extension row.
    bool extended = true;

    auto operator<=>(const People&) const = default;
};

struct Person {
    std::u16string name{};
    std::u16string group{};          ///< Empty for none.
    std::u16string mobile{};         ///< As somebody would write it, with dashes.
    std::u16string reducedMobile{};  ///< Its digits alone.
    std::u16string home{};           ///< Empty for none.
    std::u16string reducedHome{};
};

/// The group that every third person is in.
inline constexpr const char16_t* theGroup = u"친구";

/// Somebody of these people, or somebody who could join them.
Person personOf(const People& people, int number);
std::u16string nameOf(int person);
std::u16string reducedMobileOf(int person);
/// What a file with these people is called, without its suffix.
std::string fileNameOf(const People& people);
/// All of these people.
std::vector<Person> listOf(const People& people);

/// Steps through `count` people so that no two in a row are neighbours.
class Stride {
public:
    explicit Stride(int count) : count_(count) {}
    int next() { return person_ = (person_ + length) % count_; }

private:
    static constexpr int length = 7'919;
    int count_;
    int person_ = 0;
};

}  // namespace benchmarks
