#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tessera/platform/objectstore/CCeDBDatabase.h"
#include "tests/tools/ToolTest.h"

namespace tool_test {

/// A phone book of two, who share a number at home.
class Couple : public Tool {
public:
    Couple()
        : minsu(json(0, "add", "--name", "김민수", "--group", "친구", "--mobile", "010-2345-6789", "--home",
                     "02-312-4567")["oid"]),
          anna(json(0, "add", "--name", "Anna", "--mobile", "+82 10-9999-8888", "--home", "02-312-4567", "--business",
                    "031-1")["oid"]) {}

    Outcome set(const std::string& slot, const Json& oid, const std::string& number) const {
        return (*this)("speed-dial", "set", slot, oid.dump(), number);
    }
    Json slots() const { return json(0, "speed-dial", "list"); }
    Json shown(const Json& oid) const { return json(0, "show", oid.dump()); }

    Json minsu;
    Json anna;
};

/// A row of the speed-dial table that no contact knows of.
struct Row {
    std::int16_t slot;
    CString number;
};

inline void addRows(const Tool& tool, const std::vector<Row>& rows) {
    ASSERT_TRUE(ObjectStore::mount(tool.store().string())) << ObjectStore::errorText();
    {
        CCeDBDatabase slots;
        ASSERT_TRUE(slots.open(TEXT("QZ_SpeedDialNo"), nullptr, nullptr));
        for (const Row& row : rows) {
            CCeDBRecord record;
            record.addProp(CCeDBProp::ofI2(0x200, row.slot));
            record.addProp(CCeDBProp::ofUI4(0x201, 4));
            record.addProp(CCeDBProp::ofText(0x202, row.number));
            record.addProp(CCeDBProp::ofUI2(0x203, 7));
            ASSERT_NE(slots.add(record), 0u);
        }
    }
    ObjectStore::unmount();
}

}  // namespace tool_test
