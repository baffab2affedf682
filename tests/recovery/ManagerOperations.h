#pragma once

#include <ostream>
#include <span>
#include <string>

#include "tests/recovery/OperationBench.h"

namespace recovery {

/// What an operation answered: its result, and what else it put out.
struct Answer {
    HRESULT result = S_OK;
    std::string shown = {};

    friend bool operator==(const Answer&, const Answer&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Answer& answer) {
        return out << std::hex << answer.result << std::dec << ' ' << answer.shown;
    }
};

/// A public operation of the manager, with a phone book that it finds something to do in.
struct ManagerOperation {
    const char* name;
    Answer (*run)(OperationBench& bench);
    /// Changes the store before it is copied; null: it stays.
    void (*alter)(PhoneBook::PhoneBookDBMgr& manager) = nullptr;
    /// Done each time, on the open manager.
    void (*arrange)(OperationBench& bench) = nullptr;
    /// How much a success promises when something cannot be read. It is always true that nothing has changed.
    enum class Promise {
        whole,   ///< It is as good as without a failure.
        inPart,  ///< S_OK says so; S_FALSE says that there is less than was asked for.
        gaps,    ///< It passes over what it cannot read, as its description says.
    };
    Promise promise = Promise::whole;
    /// What it may do and answer instead where something cannot be read; null: there is no such thing.
    Answer (*lesser)(OperationBench& bench) = nullptr;
    bool usesStore = true;    ///< False for one that works on memory alone.
    bool fillsCache = false;  ///< It loads the manager's cache, and a failure may leave it loaded in part.
};

/// The operations, by what they are about. Those that neither read nor write, nor allocate, are left out.
std::span<const ManagerOperation> lifecycleOperations();
std::span<const ManagerOperation> recordOperations();
std::span<const ManagerOperation> searchOperations();
std::span<const ManagerOperation> callerOperations();
std::span<const ManagerOperation> speedDialOperations();
std::span<const ManagerOperation> speedDialCacheOperations();
std::span<const ManagerOperation> groupOperations();
std::span<const ManagerOperation> callOperations();
std::span<const ManagerOperation> followingOperations();
std::span<const ManagerOperation> importOperations();

/// The same with what they are about, for the name of a test.
struct OperationFamily {
    const char* name;
    std::span<const ManagerOperation> (*operations)();

    friend std::ostream& operator<<(std::ostream& out, const OperationFamily& family) { return out << family.name; }
};
inline constexpr OperationFamily operationFamilies[] = {
    {"Lifecycle", lifecycleOperations}, {"Records", recordOperations},
    {"Searches", searchOperations},     {"Callers", callerOperations},
    {"SpeedDial", speedDialOperations}, {"SpeedDialCache", speedDialCacheOperations},
    {"Groups", groupOperations},        {"Calls", callOperations},
    {"Following", followingOperations}, {"Imports", importOperations},
};

}  // namespace recovery
