#include "harness/table.h"

#include <cstdio>

namespace pavonix::bench {

void PrintHeading()
{
    std::printf("%-50s %10s %10s %7s %7s   %s\n", "", "ours", "theirs", "ratio", "by CPU", "aim");
}

void PrintRow(const Row &row)
{
    char cpu[16] = "";
    char aim[32] = "-";
    if (row.cpuRatio > 0) {
        std::snprintf(cpu, sizeof cpu, "%.2f", row.cpuRatio);
    }
    if (row.aim > 0) {
        std::snprintf(aim, sizeof aim, "%.2f %s", row.aim, row.ratio <= row.aim ? "met" : "missed");
    }
    std::printf("%-50s %10s %10s %7.2f %7s   %s\n", row.name.c_str(), row.ours.c_str(), row.theirs.c_str(), row.ratio,
                cpu, aim);
    std::fflush(stdout);
}

} // namespace pavonix::bench
