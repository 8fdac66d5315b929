#include "harness/compare.h"

#include <curl/curl.h>

int main(int argc, char **argv)
{
    curl_global_init(CURL_GLOBAL_ALL);
    benchmark::Initialize(&argc, argv);
    pavonix::bench::RowReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return reporter.failed() ? 1 : 0;
}
