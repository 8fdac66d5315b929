// The same download through the library.
#pragma once

#include "doctor/doctor.h"

namespace client {

class LibraryCheck {
public:
    // plain: the last download over a plain socket.
    LibraryCheck(const Examination &examination, const diagnostics::Exchange &plain, Steps *steps, Diagnosis *diagnosis)
        : examination_(examination), plain_(plain), steps_(steps), diagnosis_(diagnosis)
    {
    }

    void Run();

private:
    const Examination &examination_;
    const diagnostics::Exchange &plain_;
    Steps *steps_;
    Diagnosis *diagnosis_;
};

} // namespace client
