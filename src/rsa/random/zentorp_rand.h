// An object whose birth makes sure that the process-wide generator is seeded.
#pragma once

#include "platform/clock.h"
#include "platform/random.h"
#include "rsa/random/r250.h"

namespace pavonix {

// The random bytes themselves need no instance: see random_bytes.h.
class ZentorpRand {
public:
    ZentorpRand()
    {
        if (!SharedR250().seeded()) {
            platform::SeedRand(platform::ReadTickCount());
            SharedR250().Seed();
        }
    }
    virtual ~ZentorpRand() = default;
};

} // namespace pavonix
