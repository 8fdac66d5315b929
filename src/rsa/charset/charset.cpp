#include "rsa/charset/charset.h"

#include "rsa/charset/code_page_name.h"

namespace pavonix {

void Charset::setByCodePage(std::int32_t codePage)
{
    const char *name = CodePageName(codePage);
    if (name != nullptr) {
        name_.Clear();
        name_.Append(name);
        codePage_ = codePage;
    }
}

} // namespace pavonix
