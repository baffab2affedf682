#include <map>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/engine/Record.h"
#include "tests/platform/engine/RecordBuilders.h"

namespace engine_testing {
namespace {

using Platform::applyEdits;
using Platform::RecordReader;

RC_GTEST_PROP(Record, AnyBytesAreReadToAnEndWithoutLeavingThem, (const std::string& bytes)) {
    RecordReader reader(bytes);
    std::size_t read = 0;
    while (const auto each = reader.next()) {
        RC_ASSERT(each->bytes.data() >= bytes.data());
        RC_ASSERT(each->bytes.data() + each->bytes.size() <= bytes.data() + bytes.size());
        read += 6 + each->bytes.size();
    }
    RC_ASSERT(reader.damaged() == (read != bytes.size()));
}

RC_GTEST_PROP(Record, EditsDoWhatTheyDoToAMap, ()) {
    std::map<CEPROPID, std::string> model;
    std::string record;
    const auto rounds = *rc::gen::inRange(0, 20);
    for (int round = 0; round < rounds; ++round) {
        Writing writing;
        const auto edits = *rc::gen::inRange(0, 6);
        for (int i = 0; i < edits; ++i) {
            const CEPROPID id = property(*rc::gen::inRange<WORD>(0, 8), Platform::kindBlob);
            if (*rc::gen::arbitrary<bool>()) {
                const auto value = *rc::gen::arbitrary<std::string>();
                writing.setBytes(id, value);
                model[id] = value;
            } else {
                writing.remove(id);
                model.erase(id);
            }
        }
        RC_ASSERT(applyEdits(record, writing.edits(), record) == ERROR_SUCCESS);
    }
    std::map<CEPROPID, std::string> read;
    RecordReader reader(record);
    while (const auto each = reader.next()) {
        RC_ASSERT(read.emplace(each->id, each->bytes).second);
    }
    RC_ASSERT(!reader.damaged());
    RC_ASSERT(read == model);
}

}  // namespace
}  // namespace engine_testing
