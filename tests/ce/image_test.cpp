// What the loader refuses, as the device would.
#include "device_test.h"

#include <cstring>
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

// A number of the image's headers, replaced; offsets count from the "PE" mark.
std::function<void(std::string &)> Put(std::size_t offset, std::uint32_t value, std::size_t size)
{
    return [=](std::string &image) {
        std::memcpy(image.data() + image.find(std::string("PE\0\0", 4)) + offset, &value, size);
    };
}

constexpr std::size_t kEntry = 40, kSubsystemMajor = 72, kImageSize = 80, kSubsystem = 92, kFirstSection = 248,
                      kVirtualSize = 8, kRva = 12, kCharacteristics = 36;

// The type of the first base relocation; the linker gives that section last.
void MakeRelocationUnknown(std::string &image)
{
    const std::size_t section = image.find(".reloc");
    std::uint32_t offset;
    std::memcpy(&offset, image.data() + section + 20, sizeof offset);
    image[offset + 9] = static_cast<char>((image[offset + 9] & 0x0F) | 0x50);
}

TEST(Image, IsRefusedWithItsReason)
{
    const std::string whole = e2e::ReadFile(ThePrograms().dll);
    const BrokenImage rows[] = {
        {"coredll.dll:GetTickCounu", [](std::string &image) { Replace(image, "GetTickCount", "GetTickCounu"); }},
        {"ws3.dll:socket", [](std::string &image) { Replace(image, "ws2.dll", "ws3.dll"); }},
        {"does not export GetBuyGood", [](std::string &image) { Replace(image, "GetBuyGood", "GetBuyFood"); }},
        {"not an executable", [](std::string &image) { image = "#!/bin/sh\n"; }},
        {"ends inside a section", [](std::string &image) { image.resize(image.size() / 2); }},
        {"ends inside its headers", [](std::string &image) { image.resize(100); }},
        {"not for Windows CE", Put(kSubsystem, 3, 2)},
        {"for a newer system than 6.0", Put(kSubsystemMajor, 7, 2)},
        {"for a newer system than 6.0", Put(kSubsystemMajor, 0x10006, 4)},
        {"no multiple of a page", Put(kImageSize, 0x1A200, 4)},
        {"its entry lies outside its code", Put(kEntry, 0x800, 4)},
        {"its entry lies outside its code", Put(kEntry, 0x14000, 4)},
        {"does not start on a page", Put(kFirstSection + kRva, 0x1200, 4)},
        {"overlaps", Put(kFirstSection + kRva, 0, 4)},
        {"beyond the image", Put(kFirstSection + kRva, 0x40000, 4)},
        {"beyond the image", Put(kFirstSection + kVirtualSize, 0x40000, 4)},
        {"writable code", Put(kFirstSection + kCharacteristics, 0xE0000020, 4)},
        {"unknown relocation type 5", MakeRelocationUnknown},
    };
    const std::string copy = e2e::TheSuite().scratch + "/broken.dll";
    for (const BrokenImage &row : rows) {
        std::string image = whole;
        row.damage(image);
        e2e::WriteFile(copy, image);
        const OtherRunner broken(copy, {}, {});
        e2e::CallerProcess &runner = *e2e::TheSuite().caller;
        EXPECT_FALSE(runner.Ask("stats")) << row.complaint;
        EXPECT_NE(std::string::npos, runner.Complaints().find(row.complaint))
            << row.complaint << " not in " << runner.Complaints();
    }
}

} // namespace

} // namespace pavonix::ce
