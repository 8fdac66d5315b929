// What the loader refuses, as the device would.
#include "device_test.h"

#include <functional>

namespace pavonix::ce {

namespace {

struct BrokenImage {
    const char *complaint;
    std::function<void(std::string &)> damage;
};

void Replace(std::string &image, const std::string &old, const std::string &with)
{
    const std::size_t place = image.find(old);
    ASSERT_NE(std::string::npos, place) << old;
    image.replace(place, with.size(), with);
}

TEST(Image, IsRefusedWithItsReason)
{
    const std::string whole = e2e::ReadFile(TheRunner().dll);
    const BrokenImage rows[] = {
        {"coredll.dll:GetTickCounu", [](std::string &image) { Replace(image, "GetTickCount", "GetTickCounu"); }},
        {"ws3.dll:socket", [](std::string &image) { Replace(image, "ws2.dll", "ws3.dll"); }},
        {"does not export GetBuyGood", [](std::string &image) { Replace(image, "GetBuyGood", "GetBuyFood"); }},
        {"not an executable", [](std::string &image) { image = "#!/bin/sh\n"; }},
        {"ends inside a section", [](std::string &image) { image.resize(image.size() / 2); }},
        {"ends inside its headers", [](std::string &image) { image.resize(100); }},
    };
    const std::string copy = e2e::TheSuite().scratch + "/broken.dll";
    for (const BrokenImage &row : rows) {
        std::string image = whole;
        row.damage(image);
        e2e::WriteFile(copy, image);
        e2e::CallerProcess runner({TheRunner().emulator, TheRunner().runner, copy}, copy + ".errors");
        EXPECT_FALSE(runner.Ask("stats")) << row.complaint;
        EXPECT_NE(std::string::npos, runner.Complaints().find(row.complaint)) << runner.Complaints();
    }
}

} // namespace

} // namespace pavonix::ce
