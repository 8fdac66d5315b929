// Repeats the download through the library and compares the results.
#pragma once

#include "doctor/doctor.h"

namespace client {

class LibraryCheck {
public:
    // plain: the last download over a plain socket.
    LibraryCheck(const Examination &examination, const diagnostics::Exchange &plain, ProgressLine *progress,
                 Diagnosis *diagnosis)
        : examination_(examination), plain_(plain), progress_(progress), diagnosis_(diagnosis)
    {
    }

    void Run();

private:
    const Examination &examination_;
    const diagnostics::Exchange &plain_;
    ProgressLine *progress_;
    Diagnosis *diagnosis_;
};

} // namespace client
