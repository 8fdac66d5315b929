// The common bases: they give every class of the engine and of its facade a
// virtual destructor.
#pragma once

namespace pavonix {

class ZentorpObject {
public:
    ZentorpObject() = default;
    virtual ~ZentorpObject() = default;
    ZentorpObject(const ZentorpObject &) = delete;
    ZentorpObject &operator=(const ZentorpObject &) = delete;
};

// The facade's: unlike the engine's objects some of these can be copied.
class ZtObject {
public:
    ZtObject() = default;
    virtual ~ZtObject() = default;
};

} // namespace pavonix
