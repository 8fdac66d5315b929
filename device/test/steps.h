// The steps of the test. Each writes its lines to the report.
#pragma once

#include "test/library.h"
#include "test/report.h"

namespace pavonix::device_test {

struct Test {
    Report report;
    Library library;
    Path folder; // the program's, ending in a separator
    Path work;   // a folder below it for this run, ending in a separator
};

// The system, its processor, memory, code pages and cryptographic provider.
void ReportImage(Report *report);

// Checks that the image has each function that the DLL imports; false if one is missing.
bool ReportImports(Test *test, const Path &dll);

// Loads and unloads the DLL ten times, and leaves it loaded.
bool LoadRepeatedly(Test *test, const Path &dll);

// The time that keys and tokens take.
void TimeTokens(Test *test);

// Downloads from a server of the test's own to paths of all kinds, and a purchase.
void TryFiles(Test *test);

// Calls to the shop that PavonixTest.ini names, then through each of its faults.
void TryShop(Test *test);

// A profile of the work folder, written there on first use.
enum class Profile { kWithoutKeys, kKey1024, kKey1472 };
Path ProfilePath(const Test &test, Profile profile);
bool WriteProfiles(const Test &test);
void RemoveProfiles(const Test &test);

} // namespace pavonix::device_test
