// Checks XML documents.
#pragma once

#include <string>
#include <string_view>

namespace diagnostics {

// Returns what is wrong and in which line, printable; empty for a well-formed document.
// Reads nothing outside the document, in constant memory.
[[nodiscard]] std::string XmlFault(std::string_view document);
[[nodiscard]] std::string XmlFaultOfFile(const std::string &path);

} // namespace diagnostics
