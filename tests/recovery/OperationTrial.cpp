#include "tests/recovery/OperationTrial.h"

#include <stdexcept>

#include <gtest/gtest.h>

namespace recovery {

namespace {

void expectState(const BenchState& expected, OperationBench& bench, const char* when) {
    const BenchState found = stateOf(bench);
    EXPECT_TRUE(expected == found) << when << '\n' << differencesBetween(expected, found);
}

}  // namespace

OperationTrial::OperationTrial(const ManagerOperation& operation)
    : operation_(operation),
      prepared_(prepareStore(operation.alter)),
      before_(outcomeOf([](OperationBench&) { return Answer{}; }).state),
      whole_(outcomeOf(operation.run)) {
    if (operation.lesser != nullptr) lesser_ = outcomeOf(operation.lesser);
}

OperationTrial::Outcome OperationTrial::outcomeOf(Answer (*done)(OperationBench&)) const {
    OperationBench bench(prepared_);
    if (operation_.arrange != nullptr) operation_.arrange(bench);
    const Answer answer = done(bench);
    if (FAILED(answer.result)) throw std::runtime_error(std::string(operation_.name) + " fails by itself");
    return {answer, stateOf(bench)};
}

bool OperationTrial::run(const std::function<std::unique_ptr<Failure>()>& makeFailure) const {
    SCOPED_TRACE(operation_.name);
    const std::unique_ptr<Failure> failure = makeFailure();
    OperationBench bench(prepared_);
    if (operation_.arrange != nullptr) operation_.arrange(bench);
    bench.forgetPages();
    Answer answer;
    bench.setFailure(failure.get());
    EXPECT_NO_THROW(answer = operation_.run(bench));
    bench.setFailure(nullptr);
    const bool happened = failure->happened();
    EXPECT_TRUE(happened || answer == whole_.answer) << answer;
    const BenchState& left = judge(bench, answer);
    bench.remount();
    expectState(left, bench, "for another process");
    return happened;
}

/// Answers what there must be in the end.
const BenchState& OperationTrial::judge(OperationBench& bench, const Answer& answer) const {
    using Promise = ManagerOperation::Promise;
    const Promise promise = operation_.promise;
    const bool isPart = (promise == Promise::gaps && answer.result == whole_.answer.result) ||
                        (promise == Promise::inPart && answer.result == S_FALSE);
    if (SUCCEEDED(answer.result) && !isPart) {
        const Outcome& said = lesser_ && answer == lesser_->answer ? *lesser_ : whole_;
        EXPECT_EQ(said.answer, answer);
        expectState(said.state, bench, "after it succeeded");
        return said.state;
    }
    if (operation_.fillsCache) bench.manager().clearSDialInfoCache();
    expectState(before_, bench, "after it failed");
    EXPECT_EQ(whole_.answer, operation_.run(bench)) << "once more";
    expectState(whole_.state, bench, "after it was done once more");
    return whole_.state;
}

}  // namespace recovery
