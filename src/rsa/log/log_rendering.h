// The readable forms of the log's tree.
#pragma once

#include "rsa/log/log_entry2.h"
#include "rsa/text/string_buffer.h"

namespace pavonix {

// Each appends an entry with all that is below it; lines end in CR LF. None of
// them needs stack in proportion to the depth of the tree.

// Indented by two spaces a level.
void RenderText(const LogEntry2 &entry, StringBuffer *text);
// Contexts as block quotes; contents are escaped.
void RenderHtml(const LogEntry2 &entry, StringBuffer *html);
// Tags as elements; contents that hold markup or controls go into CDATA.
void RenderXml(const LogEntry2 &entry, StringBuffer *xml);

} // namespace pavonix
