// Reports a run with a skipped test to ctest, which then counts it as skipped, not as passed.
#include <cstdlib>
#include <gtest/gtest.h>

int main(int count, char **arguments)
{
    constexpr int kSkipped = 77;
    testing::InitGoogleTest(&count, arguments);
    const int result = RUN_ALL_TESTS();
    if (result != 0 || testing::UnitTest::GetInstance()->skipped_test_count() == 0) {
        return result;
    }
    return std::getenv("PAVONIX_SKIPS_FAIL") != nullptr ? EXIT_FAILURE : kSkipped;
}
