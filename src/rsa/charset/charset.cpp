#include "rsa/charset/charset.h"

namespace pavonix {

namespace {

// Without 932, 950, 1255 and 1258, which Windows and iconv convert differently.
constexpr struct {
    std::int32_t codePage;
    const char *name;
} kNames[] = {
    {437, "ibm437"},        {850, "ibm850"},        {852, "ibm852"},         {866, "cp866"},
    {874, "windows-874"},   {936, "gb2312"},        {949, "ks_c_5601-1987"}, {1250, "windows-1250"},
    {1251, "windows-1251"}, {1252, "windows-1252"}, {1253, "windows-1253"},  {1254, "windows-1254"},
    {1256, "windows-1256"}, {1257, "windows-1257"}, {20127, "us-ascii"},     {28591, "iso-8859-1"},
    {28592, "iso-8859-2"},  {28593, "iso-8859-3"},  {28594, "iso-8859-4"},   {28595, "iso-8859-5"},
    {28596, "iso-8859-6"},  {28597, "iso-8859-7"},  {28598, "iso-8859-8"},   {28599, "iso-8859-9"},
    {28603, "iso-8859-13"}, {28605, "iso-8859-15"}, {65001, "utf-8"},
};

// The IANA name of a code page; null for an unknown number.
const char *CodePageName(std::int32_t codePage)
{
    for (const auto &row : kNames) {
        if (row.codePage == codePage) {
            return row.name;
        }
    }
    return nullptr;
}

} // namespace

void Charset::SetByCodePage(std::int32_t codePage)
{
    const char *name = CodePageName(codePage);
    if (name != nullptr) {
        name_.Clear();
        name_.Append(name);
        codePage_ = codePage;
    }
}

} // namespace pavonix
