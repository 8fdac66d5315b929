// Uses Boost's reader, because Debian has no libxml2 for Windows. It stops at a zero byte
// and accepts an empty document, so both are checked first.
#include "diagnostics/xml_fault.h"

#include "diagnostics/printable.h"

#include <boost/property_tree/xml_parser.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace diagnostics {

std::string XmlFault(std::string_view document)
{
    if (document.empty()) {
        return "it is empty";
    }
    if (const std::size_t zero = document.find('\0'); zero != std::string_view::npos) {
        return "it contains a zero byte at offset " + std::to_string(zero);
    }
    try {
        boost::property_tree::ptree tree;
        std::istringstream stream{std::string(document)};
        boost::property_tree::read_xml(stream, tree, boost::property_tree::xml_parser::no_comments);
        return tree.size() == 1 ? "" : "it has no root element, or several";
    } catch (const boost::property_tree::xml_parser_error &error) {
        return "line " + std::to_string(error.line()) + ": " + Printable(error.message());
    }
}

std::string XmlFaultOfFile(const std::string &path)
{
    std::ifstream file(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary);
    return file ? XmlFault(std::string(std::istreambuf_iterator<char>(file), {})) : "it cannot be opened";
}

} // namespace diagnostics
