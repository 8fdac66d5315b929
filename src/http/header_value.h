// Looking up a header in a reply head.
#pragma once

namespace pavonix {

// A new copy of the value of a header, released with delete[]; null when it is
// absent, has no colon or line end, or there is no memory. The name is looked for
// as it is anywhere in the head, also inside other names and values, and the
// value keeps the blank behind the colon; both are meant so.
[[nodiscard]] char *GetHeaderValue(const char *head, const char *name);

} // namespace pavonix
