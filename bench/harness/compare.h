// Two ways of doing the same work, measured in turn in one run.
#pragma once

#include <benchmark/benchmark.h>
#include <functional>

namespace pavonix::bench {

// One way. `run` is timed; `check` is not: it tells whether the work was really
// done, and clears it away.
struct Way {
    std::function<void()> run;
    std::function<bool()> check;
};

// Each iteration measures one pair, our way and theirs, now the one first, now
// the other, so that what else the machine does hits both alike. The counters
// "ours" and "theirs" (seconds), "ratio" and "cpu" (the ratio by the processor
// time of the calling thread) are medians over the pairs; "aim" is the largest
// ratio that is good, 0 for none.
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
