// The base of the facade classes.
#pragma once

namespace pavonix {

class ZtObject {
public:
    ZtObject() = default;
    virtual ~ZtObject() = default;
};

} // namespace pavonix
