#include <algorithm>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tessera/platform/base/CString.h"

namespace {

// Few letters, so that searches find something; a lone half of a pair and a zero among them.
rc::Gen<std::vector<std::uint16_t>> arbitraryUnits() {
    return rc::gen::container<std::vector<std::uint16_t>>(
        rc::gen::element<std::uint16_t>(u'a', u'A', u'b', u' ', u'\uAC00', 0xD83D, 0));
}

WString arbitraryText() {
    const std::vector<std::uint16_t> units = *arbitraryUnits();
    return {units.begin(), units.end()};
}

/// A text that a pointer can show whole.
WString textWithoutZeros() {
    WString text = arbitraryText();
    std::erase(text, u'\0');
    return text;
}

int arbitraryPosition() {
    return *rc::gen::inRange(-3, 30);
}

std::size_t cut(int value, std::size_t limit) {
    return std::min(static_cast<std::size_t>(std::max(value, 0)), limit);
}

int foundAt(std::size_t position) {
    return position == WString::npos ? -1 : static_cast<int>(position);
}

int signOf(int value) {
    return (value > 0) - (value < 0);
}

}  // namespace

RC_GTEST_PROP(CStringModel, PartsAreThoseOfTheText, ()) {
    const WString model = arbitraryText();
    const CString text(model);
    const int first = arbitraryPosition();
    const int count = arbitraryPosition();

    RC_ASSERT(text.Left(count).view() == model.substr(0, cut(count, model.size())));
    RC_ASSERT(text.Right(count).view() == model.substr(model.size() - cut(count, model.size())));
    RC_ASSERT(text.Mid(first).view() == model.substr(cut(first, model.size())));
    RC_ASSERT(text.Mid(first, count).view() == model.substr(cut(first, model.size()), cut(count, model.size())));
}

RC_GTEST_PROP(CStringModel, SearchesFindWhatTheTextHolds, ()) {
    const WString model = arbitraryText();
    const WString part = textWithoutZeros();
    const CString text(model);
    const int start = arbitraryPosition();
    const auto from = static_cast<std::size_t>(std::max(start, 0));

    RC_ASSERT(text.Find(part.c_str(), start) == foundAt(model.find(part, from)));
    RC_ASSERT(text.Find(u'a', start) == foundAt(model.find(u'a', from)));
    RC_ASSERT(text.ReverseFind(u'a') == foundAt(model.rfind(u'a')));
}

RC_GTEST_PROP(CStringModel, ChangesAreThoseOfTheText, ()) {
    WString model = arbitraryText();
    CString text(model);
    const WString part = textWithoutZeros();
    const int at = arbitraryPosition();
    const int count = arbitraryPosition();

    text.Insert(at, part.c_str());
    model.insert(cut(at, model.size()), part);
    RC_ASSERT(text.view() == model);
    text.Delete(at, count);
    model.erase(cut(at, model.size()), cut(count, model.size()));
    RC_ASSERT(text.view() == model);
    const int replaced = text.Replace(u'a', u'b');
    RC_ASSERT(replaced == static_cast<int>(std::count(model.begin(), model.end(), u'a')));
    std::replace(model.begin(), model.end(), u'a', u'b');
    text += part.c_str();
    model += part;
    RC_ASSERT(text.view() == model);
}

RC_GTEST_PROP(CStringModel, TrimmingTakesAllAndOnlyWhatItIsToldTo, ()) {
    const WString model = arbitraryText();
    CString left(model);
    CString right(model);

    left.TrimLeft(u' ');
    right.TrimRight(TEXT("a b"));

    WStringView expectedLeft = model;
    while (expectedLeft.starts_with(u' '))
        expectedLeft.remove_prefix(1);
    WStringView expectedRight = model;
    while (!expectedRight.empty() && WStringView(TEXT("a b")).find(expectedRight.back()) != WString::npos) {
        expectedRight.remove_suffix(1);
    }
    RC_ASSERT(left.view() == expectedLeft);
    RC_ASSERT(right.view() == expectedRight);
}

RC_GTEST_PROP(CStringModel, ComparesAsTheTextDoes, ()) {
    const WString a = arbitraryText();
    const WString b = textWithoutZeros();

    RC_ASSERT(signOf(CString(a).Compare(b.c_str())) == signOf(a.compare(b)));
    RC_ASSERT((CString(a) == CString(b)) == (a == b));
    RC_ASSERT((CString(a) < CString(b)) == (a < b));
}

RC_GTEST_PROP(CStringModel, CaseKeepsEveryPosition, ()) {
    const auto units = *rc::gen::arbitrary<std::vector<std::uint16_t>>();
    const WString model(units.begin(), units.end());
    CString text(model);

    text.MakeLower();

    RC_ASSERT(text.GetLength() == static_cast<int>(model.size()));
    for (std::size_t i = 0; i < model.size(); ++i) {
        CString one(model[i]);
        one.MakeLower();
        RC_ASSERT(one.view() == text.view().substr(i, 1));
    }
}
