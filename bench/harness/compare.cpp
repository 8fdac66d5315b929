#include "harness/compare.h"

#include "harness/table.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <vector>

namespace pavonix::bench {

namespace {

struct Spent {
    double wall = 0; // seconds
    double cpu = 0;  // seconds of the calling thread
};

double ThreadSeconds()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

Spent Measure(const Way &way, bool *done)
{
    const double cpu = ThreadSeconds();
    const auto wall = std::chrono::steady_clock::now();
    way.run();
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - wall;
    const Spent spent = {passed.count(), ThreadSeconds() - cpu};
    *done = way.check() && *done;
    return spent;
}

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

std::string TimeText(double seconds)
{
    char text[32];
    if (seconds >= 1e-3) {
        std::snprintf(text, sizeof text, "%.2f ms", seconds * 1e3);
    } else {
        std::snprintf(text, sizeof text, "%.1f us", seconds * 1e6);
    }
    return text;
}

} // namespace

void Compare(benchmark::State &state, const Way &ours, const Way &theirs, double aim)
{
    std::vector<double> oursWall, theirsWall, ratio, cpuRatio;
    bool oursFirst = true;
    bool done = true;
    Measure(ours, &done); // both warm
    Measure(theirs, &done);
    while (state.KeepRunning()) {
        Spent a, b;
        if (oursFirst) {
            a = Measure(ours, &done);
        }
        b = Measure(theirs, &done);
        if (!oursFirst) {
            a = Measure(ours, &done);
        }
        oursFirst = !oursFirst;
        state.SetIterationTime(a.wall);
        oursWall.push_back(a.wall);
        theirsWall.push_back(b.wall);
        ratio.push_back(a.wall / b.wall);
        cpuRatio.push_back(a.cpu / b.cpu);
    }
    state.counters["done"] = done;
    state.counters["ours"] = Median(oursWall);
    state.counters["theirs"] = Median(theirsWall);
    state.counters["ratio"] = Median(ratio);
    state.counters["cpu"] = Median(cpuRatio);
    state.counters["aim"] = aim;
}

bool RowReporter::ReportContext(const Context &)
{
    PrintHeading();
    return true;
}

void RowReporter::ReportRuns(const std::vector<Run> &runs)
{
    for (const Run &run : runs) {
        const auto value = [&run](const char *name) { return run.counters.at(name).value; };
        if (value("done") == 0) {
            std::fprintf(stderr, "%s: the work was not done\n", run.run_name.function_name.c_str());
            failed_ = true;
            continue;
        }
        PrintRow({.name = run.run_name.function_name,
                  .ours = TimeText(value("ours")),
                  .theirs = TimeText(value("theirs")),
                  .ratio = value("ratio"),
                  .cpuRatio = value("cpu"),
                  .aim = value("aim")});
    }
}

} // namespace pavonix::bench
