#include "rsa/key/cls_xml.h"

#include "rsa/key/parse_engine.h"

namespace pavonix {

bool ClsXml::LoadXml(const char *text)
{
    root_.reset();
    if (text != nullptr) {
        root_ = ParseEngine(text).Parse();
    }
    return root_ != nullptr;
}

bool ClsXml::GetChildContent(const char *tag, StringBuffer *content) const
{
    content->Clear();
    const TreeNode *child = root_ == nullptr ? nullptr : root_->FirstChildTagged(tag);
    if (child == nullptr) {
        return false;
    }
    content->AppendN(child->content().c_str(), child->content().length());
    return true;
}

} // namespace pavonix
