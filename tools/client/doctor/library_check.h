// The same download through the library.
#pragma once

#include "doctor/doctor.h"

namespace client {

class LibraryCheck {
public:
    // plain: what the last plain socket saw.
    LibraryCheck(const Examination &examination, const diagnostics::Exchange &plain, Diagnosis *diagnosis)
        : examination_(examination), plain_(plain), diagnosis_(diagnosis)
    {
    }

    void Run();

private:
    const Examination &examination_;
    const diagnostics::Exchange &plain_;
    Diagnosis *diagnosis_;
};

} // namespace client
