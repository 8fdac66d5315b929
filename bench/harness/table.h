// The table in which all results are shown.
#pragma once

#include <string>

namespace pavonix::bench {

// One comparison. The ratio is ours divided by theirs.
struct Row {
    std::string name; // "ours / theirs"
    std::string ours; // the measured value, with its unit
    std::string theirs;
    double ratio;
    double cpuRatio = 0; // by the processor time of the calling thread; 0 if not measured
    double aim = 0;      // the largest good ratio; 0 without one
};

void PrintHeading();
void PrintRow(const Row &row);

} // namespace pavonix::bench
