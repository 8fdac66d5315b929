// Images that the loader refuses, as the device would.
#include "device_test.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace pavonix::ce {

namespace {

struct BrokenImage {
    const char *message;
    std::function<void(std::string &)> damage;
};

void Replace(std::string &image, const std::string &old, const std::string &with)
{
    const std::size_t place = image.find(old);
    ASSERT_NE(std::string::npos, place) << old;
    image.replace(place, with.size(), with);
}

// Replaces a number in the image's headers; offsets are relative to the "PE" mark.
std::function<void(std::string &)> Put(std::size_t offset, std::uint32_t value, std::size_t size)
{
    return [=](std::string &image) {
        std::memcpy(image.data() + image.find(std::string("PE\0\0", 4)) + offset, &value, size);
    };
}

constexpr std::size_t kEntry = 40, kFileAlignment = 60, kSubsystemMajor = 72, kImageSize = 80, kHeadersSize = 84,
                      kSubsystem = 92, kDirectoryCount = 116, kTable = 144, kThreadLocal = 196, kFirstSection = 248,
                      kVirtualSize = 8, kRva = 12, kRawSize = 16, kRawOffset = 20, kCharacteristics = 36;

std::uint32_t WordAt(const std::string &image, std::size_t offset)
{
    std::uint32_t word;
    std::memcpy(&word, image.data() + offset, sizeof word);
    return word;
}

// Returns the offset of a section's bytes in the file.
std::size_t Section(const std::string &image, const std::string &name)
{
    return WordAt(image, image.find(name) + kRawOffset);
}

// Changes the type of the first base relocation.
void MakeRelocationUnknown(std::string &image)
{
    char &type = image[Section(image, ".reloc") + 9];
    type = static_cast<char>((type & 0x0F) | 0x50);
}

// Changes the first two entries of the table of functions, of 8 bytes each.
std::function<void(std::string &)> ChangeTable(const std::function<void(char *)> &change)
{
    return [=](std::string &image) { change(image.data() + Section(image, ".pdata")); };
}

void ForgetPrologues(std::string &image)
{
    const std::size_t table = Section(image, ".pdata");
    const std::size_t size = WordAt(image, image.find(".pdata") + kVirtualSize);
    for (std::size_t i = 4; i < size; i += 8) {
        image[table + i] = 0;
    }
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
        {"its entry is outside its code", Put(kEntry, 0x800, 4)},
        {"its entry is outside its code", Put(kEntry, 0x14000, 4)},
        {"does not start on a page", Put(kFirstSection + kRva, 0x1200, 4)},
        {"overlaps", Put(kFirstSection + kRva, 0, 4)},
        {"beyond the image", Put(kFirstSection + kRva, 0x40000, 4)},
        {"beyond the image", Put(kFirstSection + kVirtualSize, 0x40000, 4)},
        {"writable code", Put(kFirstSection + kCharacteristics, 0xE0000020, 4)},
        {"unknown relocation type 5", MakeRelocationUnknown},
        {"not that of its sections", Put(kImageSize, 0x30000, 4)},
        {"not aligned in the file", Put(kFileAlignment, 3, 4)},
        {"another number of directories", Put(kDirectoryCount, 4, 4)},
        {"thread-local storage", Put(kThreadLocal, 24, 4)},
        {"inside the section table", Put(kHeadersSize, 0x200, 4)},
        {"a section cannot be read", Put(kFirstSection + kCharacteristics, 0x20000020, 4)},
        {"ends inside a section", Put(kFirstSection + kRawSize, 0x20000, 4)},
        {"exports are not sorted", [](std::string &image) { Replace(image, "GetGoodListXml", "GetZoodListXml"); }},
        {"no table of functions", Put(kTable + 4, 0, 4)},
        {"is outside the image", Put(kTable, 0x40000, 4)},
        {"outside its code", ChangeTable([](char *table) { table[3] += 1; })},
        {"an entry that is none", ChangeTable([](char *table) { table[7] ^= 0x40; })},
        {"is not sorted", ChangeTable([](char *table) { std::swap_ranges(table, table + 8, table + 8); })},
        {"the stack cannot be walked", ForgetPrologues},
    };
    const std::string copy = e2e::TheSuite().scratch + "/broken.dll";
    for (const BrokenImage &row : rows) {
        std::string image = whole;
        row.damage(image);
        e2e::WriteFile(copy, image);
        const OtherRunner broken(copy);
        e2e::CallerProcess &runner = *e2e::TheSuite().caller;
        EXPECT_FALSE(runner.Ask("stats")) << row.message;
        EXPECT_NE(std::string::npos, runner.ErrorOutput().find(row.message))
            << row.message << " not in " << runner.ErrorOutput();
    }
}

} // namespace

} // namespace pavonix::ce
