// The report: a text file that grows line by line, so that it shows how far the
// test got even if the device crashes.
#pragma once

#include "test/system.h"
#include "test/text.h"

namespace pavonix::device_test {

class Report {
public:
    // Creates the file; false if the place takes no files.
    bool Open(const Path &path);

    void Heading(const char *title) { Write("\r\n", title); }
    // A result that is as documented, or just information.
    void Note(const Line &line) { Write("   ", line.c_str()); }
    // A step that could not be tried. The reason is reported elsewhere.
    void Skip(const Line &line) { Write("-- not tried: ", line.c_str()); }
    // A result that differs from the documentation.
    void Deviation(const Line &line)
    {
        ++deviations_;
        Write("!! ", line.c_str());
    }
    void Check(bool asExpected, const Line &line) { asExpected ? Note(line) : Deviation(line); }

    // Writes the verdict as the last line, closes the file and returns the verdict.
    Line Finish();

    // Why the last Open failed.
    DWORD error() const { return error_; }
    // False after a line could not be written.
    bool complete() const { return complete_; }
    const Path &path() const { return path_; }

private:
    void Write(const char *mark, const char *text);

    Path path_;
    HANDLE file_ = INVALID_HANDLE_VALUE;
    DWORD error_ = 0;
    int deviations_ = 0;
    bool complete_ = true;
};

} // namespace pavonix::device_test
