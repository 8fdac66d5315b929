#include "rsa/key/parse_engine.h"

#include "rsa/key/character_reference.h"
#include "rsa/text/allocate.h"

#include <cstring>
#include <utility>

namespace pavonix {

namespace {

constexpr char kCDataStart[] = "<![CDATA[";
constexpr char kCDataEnd[] = "]]>";

bool StartsName(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
           static_cast<unsigned char>(c) >= 128;
}

bool BeginsWith(const char *text, const char *prefix)
{
    return std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

// The first `text` at or after `from`, or the end of the document.
const char *Find(const char *from, const char *text)
{
    const char *found = std::strstr(from, text);
    return found != nullptr ? found : from + std::strlen(from);
}

} // namespace

std::unique_ptr<TreeNode> ParseEngine::Parse()
{
    while (*at_ != 0 && !finished_) {
        if (*at_ == '<') {
            ReadMarkup();
        } else {
            ReadText();
        }
        if (open_ != nullptr && !open_->content().complete()) {
            GiveUp();
        }
    }
    return std::move(root_);
}

void ParseEngine::ReadText()
{
    const char *plain = at_;
    at_ += std::strcspn(at_, open_ != nullptr ? "<&" : "<");
    AppendLines(plain, at_);
    if (*at_ == '&' && open_ != nullptr) {
        at_ = AppendReference(at_, &open_->content());
    }
}

void ParseEngine::ReadMarkup()
{
    if (BeginsWith(at_, "<!--")) {
        at_ += 4;
        SkipPast("-->");
    } else if (BeginsWith(at_, "<?")) {
        SkipPast("?>");
    } else if (BeginsWith(at_, kCDataStart)) {
        ReadCData();
    } else if (at_[1] == '!') {
        SkipDocumentType();
    } else if (at_[1] == '/') {
        ReadEndTag();
    } else if (StartsName(at_[1])) {
        ReadStartTag();
    } else {
        AppendLines(at_, at_ + 1);
        ++at_;
    }
}

void ParseEngine::ReadCData()
{
    const char *text = at_ + std::strlen(kCDataStart);
    at_ = Find(text, kCDataEnd);
    AppendLines(text, at_);
    SkipPast(kCDataEnd);
}

void ParseEngine::ReadStartTag()
{
    const char *name = ++at_;
    at_ += std::strcspn(at_, " \t\r\n/>");
    const std::size_t nameLength = static_cast<std::size_t>(at_ - name);
    SkipAttributes();
    if (*at_ == 0) {
        return;
    }
    const bool hasContent = at_[-1] != '/';
    ++at_;
    Open(name, nameLength);
    if (!hasContent) {
        Close();
    }
}

void ParseEngine::ReadEndTag()
{
    at_ += std::strcspn(at_, ">");
    if (*at_ != 0) {
        ++at_;
    }
    Close();
}

// Moves to the '>' that ends the tag, or to the end of the document.
void ParseEngine::SkipAttributes()
{
    at_ += std::strcspn(at_, "\"'>");
    while (*at_ == '"' || *at_ == '\'') {
        SkipQuoted();
        at_ += std::strcspn(at_, "\"'>");
    }
}

void ParseEngine::SkipQuoted()
{
    const char quote[2] = {*at_++, 0};
    at_ += std::strcspn(at_, quote);
    if (*at_ != 0) {
        ++at_;
    }
}

// A document type may contain declarations, and these may contain quoted texts and
// comments with any character.
void ParseEngine::SkipDocumentType()
{
    int depth = 0;
    do {
        at_ += std::strcspn(at_, "\"'<>");
        if (BeginsWith(at_, "<!--")) {
            at_ += 4;
            SkipPast("-->");
        } else if (BeginsWith(at_, "<?")) {
            SkipPast("?>");
        } else if (*at_ == '"' || *at_ == '\'') {
            SkipQuoted();
        } else if (*at_ != 0) {
            depth += *at_ == '<' ? 1 : -1;
            ++at_;
        }
    } while (*at_ != 0 && depth > 0);
}

void ParseEngine::SkipPast(const char *last)
{
    at_ = Find(at_, last);
    if (*at_ != 0) {
        at_ += std::strlen(last);
    }
}

void ParseEngine::Open(const char *name, std::size_t length)
{
    std::unique_ptr<TreeNode> node(AllocateObject<TreeNode>());
    if (node != nullptr) {
        node->tag().AppendN(name, static_cast<std::int32_t>(length));
    }
    if (node == nullptr || !node->tag().complete()) {
        GiveUp();
        return;
    }
    TreeNode *parent = std::exchange(open_, node.get());
    if (parent == nullptr) {
        root_ = std::move(node);
    } else {
        parent->AppendChild(node.release());
    }
}

void ParseEngine::Close()
{
    if (open_ != nullptr) {
        open_ = open_->parent();
        finished_ = open_ == nullptr;
    }
}

// Called when memory runs out: an incomplete tree would look like another document.
void ParseEngine::GiveUp()
{
    root_.reset();
    open_ = nullptr;
    finished_ = true;
}

void ParseEngine::AppendLines(const char *text, const char *end)
{
    while (open_ != nullptr && text != end) {
        const std::size_t rest = static_cast<std::size_t>(end - text);
        const void *carriageReturn = std::memchr(text, '\r', rest);
        const char *lineEnd = carriageReturn != nullptr ? static_cast<const char *>(carriageReturn) : end;
        open_->content().AppendN(text, static_cast<std::int32_t>(lineEnd - text));
        text = lineEnd;
        if (text != end) {
            open_->content().AppendChar('\n');
            text += text + 1 != end && text[1] == '\n' ? 2 : 1;
        }
    }
}

} // namespace pavonix
