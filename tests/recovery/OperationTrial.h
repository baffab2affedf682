#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "tests/recovery/ManagerOperations.h"

namespace recovery {

/// Tries one operation with failures, each time on a fresh copy of the phone book with nothing of it in memory.
class OperationTrial {
public:
    /// Does it once with no failure, to see what it answers and leaves.
    explicit OperationTrial(const ManagerOperation& operation);

    /// Does it once. What must hold: nothing is thrown; a success is whole, that is, as without a failure; otherwise
    /// there is a failing code, and nothing has changed. And afterwards, in this same process, it succeeds.
    /// @param makeFailure makes what is to go wrong; called before the store is mounted, and ended after that
    /// @return whether anything went wrong: if not there are no more places where it could
    bool run(const std::function<std::unique_ptr<Failure>()>& makeFailure) const;

private:
    /// What an operation answers, and leaves.
    struct Outcome {
        Answer answer;
        BenchState state;
    };

    Outcome outcomeOf(Answer (*done)(OperationBench& bench)) const;
    const BenchState& judge(OperationBench& bench, const Answer& answer) const;

    const ManagerOperation& operation_;
    PreparedStore prepared_;
    BenchState before_;
    Outcome whole_;
    std::optional<Outcome> lesser_;
};

}  // namespace recovery
