#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/engine/Record.h"
#include "tessera/platform/engine/StoreError.h"
#include "tests/platform/engine/RecordBuilders.h"

namespace engine_testing {
namespace {

using Platform::applyEdits;
using Platform::Edit;
using Platform::PropertyView;
using Platform::RecordReader;

constexpr CEPROPID number = property(1, Platform::kindI4);
constexpr CEPROPID text = property(2, Platform::kindText);
constexpr CEPROPID blob = property(3, Platform::kindBlob);

std::string packed(const Writing& writing, std::string_view before = {}) {
    std::string result;
    EXPECT_EQ(applyEdits(before, writing.edits(), result), ERROR_SUCCESS);
    return result;
}

std::vector<CEPROPID> idsOf(std::string_view record) {
    std::vector<CEPROPID> ids;
    RecordReader reader(record);
    while (const auto each = reader.next()) {
        ids.push_back(each->id);
    }
    EXPECT_FALSE(reader.damaged());
    return ids;
}

TEST(Record, KeepsTheOrderInWhichPropertiesWereFirstWritten) {
    const std::string first = packed(Writing().set(text, TEXT("김")).set(number, 7));

    const std::string replaced = packed(Writing().set(blob, std::uint16_t{1}).set(text, TEXT("더 긴 이름")), first);

    EXPECT_THAT(idsOf(replaced), testing::ElementsAre(text, number, blob));
    EXPECT_EQ(Platform::findProperty(replaced, text)->bytes, bytesOf(TEXT("더 긴 이름")));
    EXPECT_EQ(Platform::findProperty(replaced, number)->bytes, bytesOf(7));
}

TEST(Record, RemovedPropertyComesBackAtTheEnd) {
    const std::string first = packed(Writing().set(text, TEXT("a")).set(number, 7));

    EXPECT_THAT(idsOf(packed(Writing().remove(text), first)), testing::ElementsAre(number));
    EXPECT_THAT(idsOf(packed(Writing().remove(text).set(text, TEXT("b")), first)), testing::ElementsAre(number, text));
    EXPECT_THAT(idsOf(packed(Writing().remove(blob), first)), testing::ElementsAre(text, number));
}

TEST(Record, IsLaidOutAsIdentifierLengthAndValue) {
    EXPECT_EQ(packed(Writing().set(property(0x4013, 31), TEXT("A"))),
              std::string("\x1F\x00\x13\x40\x02\x00\x41\x00", 8));
    EXPECT_EQ(packed({}), "");
}

TEST(Record, PropertiesOfOneIdentAndTwoKindsAreTwo) {
    const std::string record = packed(Writing().set(property(1, 2), std::int16_t{1}).set(property(1, 3), 2));

    EXPECT_EQ(Platform::findProperty(record, property(1, 2))->bytes, bytesOf(std::int16_t{1}));
    EXPECT_EQ(Platform::findProperty(record, property(1, 3))->bytes, bytesOf(2));
    EXPECT_EQ(Platform::findProperty(record, property(1, 5)), std::nullopt);
}

struct WrongValue {
    CEPROPID id;
    std::size_t size;

    friend std::ostream& operator<<(std::ostream& out, const WrongValue& value) {
        return out << value.size << " bytes of kind " << (value.id & 0xFFFF);
    }
};

class RecordRefuses : public testing::TestWithParam<WrongValue> {};

TEST_P(RecordRefuses, AValueThatDoesNotFitItsKindAndLeavesTheResult) {
    std::string result = "untouched";
    const Writing writing = Writing().set(number, 1).setBytes(GetParam().id, std::string(GetParam().size, 'x'));

    EXPECT_EQ(applyEdits({}, writing.edits(), result), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(result, "untouched");
}

INSTANTIATE_TEST_SUITE_P(Values, RecordRefuses,
                         testing::Values(WrongValue{property(9, 2), 1}, WrongValue{property(9, 2), 4},
                                         WrongValue{property(9, 3), 2}, WrongValue{property(9, 5), 4},
                                         WrongValue{property(9, 11), 4}, WrongValue{property(9, 18), 0},
                                         WrongValue{property(9, 19), 8}, WrongValue{property(9, 64), 7},
                                         WrongValue{property(9, 31), 3}, WrongValue{property(9, 31), 65'472},
                                         WrongValue{property(9, 65), 65'472}, WrongValue{property(9, 0), 0},
                                         WrongValue{property(9, 4), 4}, WrongValue{property(9, 66), 1}));

TEST(Record, RefusesToRemoveAPropertyOfNoKnownKind) {
    std::string result;
    EXPECT_EQ(applyEdits({}, Writing().remove(property(1, 7)).edits(), result), ERROR_INVALID_PARAMETER);
}

TEST(Record, HoldsUpToItsLimitAndNotAByteMore) {
    const std::string largest(Platform::maxPropertyBytes, 'x');
    const std::size_t rest = Platform::maxRecordBytes - 2 * largest.size();
    const auto writing = [&](std::size_t last) {
        return Writing()
            .setBytes(property(1, 65), largest)
            .setBytes(property(2, 65), largest)
            .setBytes(property(3, 65), std::string(last, 'y'));
    };
    std::string result;

    EXPECT_EQ(applyEdits({}, writing(rest).edits(), result), ERROR_SUCCESS);
    const std::string full = result;
    EXPECT_EQ(applyEdits({}, writing(rest + 1).edits(), result), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(applyEdits(full, Writing().setBytes(property(4, 65), "z").edits(), result), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(result, full);
}

TEST(Record, ResultMayBeWhatWasPackedBefore) {
    std::string record = packed(Writing().set(text, TEXT("before")).set(number, 1));

    ASSERT_EQ(applyEdits(record, Writing().set(text, TEXT("after all of it")).edits(), record), ERROR_SUCCESS);

    EXPECT_EQ(Platform::findProperty(record, text)->bytes, bytesOf(TEXT("after all of it")));
    EXPECT_EQ(Platform::findProperty(record, number)->bytes, bytesOf(1));
}

TEST(Record, EveryCutShortRecordIsDamagedUnlessCutBetweenProperties) {
    const std::string first = packed(Writing().set(text, TEXT("abc")));
    const std::string whole = packed(Writing().set(number, 5), first);

    for (std::size_t size = 1; size < whole.size(); ++size) {
        RecordReader reader(std::string_view(whole).substr(0, size));
        while (reader.next()) {
        }
        EXPECT_EQ(reader.damaged(), size != first.size()) << size;
        EXPECT_EQ(reader.next(), std::nullopt);
    }
}

TEST(Record, HasNoMorePropertiesThanCanBeCounted) {
    constexpr int most = 65'535;
    std::string full;
    for (int i = 0; i < most; ++i) {  // an identifier and a length of 0 each
        const CEPROPID id = property(static_cast<WORD>(i), Platform::kindText);
        for (int shift = 0; shift < 32; shift += 8)
            full += static_cast<char>(id >> shift);
        full += std::string(2, '\0');
    }
    const CEPROPID first = property(0, Platform::kindText);
    const CEPROPID another = property(0, Platform::kindBlob);
    std::string result = "untouched";

    EXPECT_EQ(applyEdits(full, Writing().setBytes(another, "").edits(), result), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(result, "untouched");
    EXPECT_EQ(applyEdits(full, Writing().setBytes(first, "ab").edits(), result), ERROR_SUCCESS);
    EXPECT_EQ(applyEdits(full, Writing().remove(first).setBytes(another, "").edits(), result), ERROR_SUCCESS);
    EXPECT_EQ(result.size(), full.size());
}

TEST(Record, DamagedBytesCannotBeEdited) {
    std::string result = "untouched";

    EXPECT_EQ(applyEdits("abc", Writing().set(number, 1).edits(), result), ERROR_FILE_CORRUPT);
    EXPECT_EQ(result, "untouched");
}

TEST(StoreError, IsTheThreadsLastErrorAndASentence) {
    EXPECT_EQ(Platform::setStoreError(ERROR_DISK_FULL, "/a/b: the disk is full"), ERROR_DISK_FULL);

    EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);
    EXPECT_EQ(Platform::storeErrorText(), "/a/b: the disk is full");
}

}  // namespace
}  // namespace engine_testing
