// The common bases of the engine (Zentorp) and of its facade (Zt, its abbreviation): they
// give every class a virtual destructor.
#pragma once

namespace pavonix {

class ZentorpObject {
public:
    ZentorpObject() = default;
    virtual ~ZentorpObject() = default;
    ZentorpObject(const ZentorpObject &) = delete;
    ZentorpObject &operator=(const ZentorpObject &) = delete;
};

// Unlike the engine's objects, some of the facade's can be copied.
class ZtObject {
public:
    ZtObject() = default;
    virtual ~ZtObject() = default;
};

} // namespace pavonix
