#pragma once

#include <optional>
#include <vector>

#include "Store.h"
#include "tessera/database/CeDBTable.h"

namespace Tool {

/// One of the platform's contact categories.
struct Category {
    DWORD oid = 0;
    int id = 0;
    CString name;
};

/// The platform's own list of categories, open while this lives. What fails throws a Failure.
class CategoryTable {
public:
    explicit CategoryTable(const Store& store);

    std::vector<Category> inNameOrder();
    std::optional<Category> named(const CString& name);
    std::optional<Category> withId(int id);

    DWORD add(const CString& name, int id);
    void rename(DWORD oid, const CString& name);
    void remove(DWORD oid);

private:
    const Store& store_;
    Database::CeDBTable table_;
};

}  // namespace Tool
