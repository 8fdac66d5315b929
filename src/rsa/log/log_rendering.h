// The renderings of the log's tree.
#pragma once

#include "rsa/log/log_entry2.h"
#include "rsa/text/string_buffer.h"

namespace pavonix {

// Each appends an entry and everything below it; lines end in CR LF. The stack they need
// does not depend on the depth of the tree.

// Indented by two spaces a level.
void RenderText(const LogEntry2 &entry, StringBuffer *text);
// Contexts as block quotes; contents are escaped.
void RenderHtml(const LogEntry2 &entry, StringBuffer *html);
// Tags become elements; contents with markup or control characters go into CDATA.
void RenderXml(const LogEntry2 &entry, StringBuffer *xml);

} // namespace pavonix
