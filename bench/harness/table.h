// The table in which all results are shown.
#pragma once

#include <string>

namespace pavonix::bench {

// One comparison. The ratio is ours divided by theirs.
struct Row {
    std::string name; // "ours / theirs"
    std::string ours; // what was measured, with its unit
    std::string theirs;
    double ratio;
    double cpuRatio = 0; // by the processor time of the calling thread; 0 for none
    double aim = 0;      // the largest ratio that is good; 0 for none
};

void PrintHeading();
void PrintRow(const Row &row);

} // namespace pavonix::bench
