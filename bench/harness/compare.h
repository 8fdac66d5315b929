// Two ways of doing the same work, measured in turn in one run.
#pragma once

#include <benchmark/benchmark.h>
#include <functional>

namespace pavonix::bench {

// One way. `run` is timed. `check` is not: it returns whether the work was done, and
// removes its results.
struct Way {
    std::function<void()> run;
    std::function<bool()> check;
};

// Each iteration measures one pair, our way and theirs, in alternating order, so that
// other load affects both alike. The counters "ours" and "theirs" (seconds), "ratio"
// and "cpu" (the ratio by the processor time of the calling thread) are medians over
// the pairs; "aim" is the largest good ratio, 0 without one.
void Compare(benchmark::State &state, const Way &ours, const Way &theirs, double aim);

// Shows a comparison as a row of the table.
class RowReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context &) override;
    void ReportRuns(const std::vector<Run> &runs) override;
    bool failed() const { return failed_; }

private:
    bool failed_ = false;
};

} // namespace pavonix::bench
