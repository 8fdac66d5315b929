// The engine's common object base: it gives every engine class a virtual
// destructor.
#pragma once

namespace pavonix {

class ZentorpObject {
public:
    ZentorpObject() = default;
    virtual ~ZentorpObject() = default;
    ZentorpObject(const ZentorpObject &) = delete;
    ZentorpObject &operator=(const ZentorpObject &) = delete;
};

} // namespace pavonix
