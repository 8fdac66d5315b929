// Whether something is a complete XML document.
#pragma once

#include <string>
#include <string_view>

namespace diagnostics {

// Returns what is wrong and in which line, printable; empty for a well-formed
// document. Nothing outside the document is read. The memory needed does not
// grow with the document's length.
[[nodiscard]] std::string XmlFault(std::string_view document);
[[nodiscard]] std::string XmlFaultOfFile(const std::string &path);

} // namespace diagnostics
