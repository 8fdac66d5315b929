#include "rsa/log/log_rendering.h"

#include <cstring>

namespace pavonix {

namespace {

// One rendering of the log, called for each entry in reading order. Leaf handles every
// kind but contexts.
class LogForm {
public:
    explicit LogForm(StringBuffer *out) : out_(*out) {}
    virtual ~LogForm() = default;
    virtual void Leaf(const LogEntry2 &entry, std::uint32_t depth) = 0;
    virtual void OpenContext(const LogEntry2 &context, std::uint32_t depth) = 0;
    virtual void CloseContext(const LogEntry2 &context) = 0;

protected:
    void Write(const StringBuffer &text) { out_.AppendN(text.c_str(), text.length()); }

    StringBuffer &out_;
};

// Closes `entry` and every context that ends with it. Returns the entry that follows,
// null after `top`.
const LogEntry2 *Close(const LogEntry2 *entry, const LogEntry2 &top, std::uint32_t *depth, LogForm *form)
{
    for (;;) {
        if (entry->kind() == LogEntryKind::kContext) {
            form->CloseContext(*entry);
        }
        if (entry == &top) {
            return nullptr;
        }
        if (const LogEntry2 *next = entry->nextSibling()) {
            return next;
        }
        entry = entry->parent();
        --*depth;
    }
}

// Depth first without recursion: returns through the parents.
void Walk(const LogEntry2 &top, LogForm *form)
{
    std::uint32_t depth = 0;
    for (const LogEntry2 *entry = &top; entry != nullptr;) {
        if (entry->kind() == LogEntryKind::kContext) {
            form->OpenContext(*entry, depth);
        } else {
            form->Leaf(*entry, depth);
        }
        if (entry->firstChild() != nullptr) {
            entry = entry->firstChild();
            ++depth;
        } else {
            entry = Close(entry, top, &depth, form);
        }
    }
}

class TextForm : public LogForm {
public:
    using LogForm::LogForm;

    void Leaf(const LogEntry2 &entry, std::uint32_t depth) override
    {
        Indent(depth);
        if (entry.kind() == LogEntryKind::kData) {
            Write(entry.tag());
            out_.Append(": ");
        }
        Write(entry.content());
        out_.Append("\r\n");
    }

    void OpenContext(const LogEntry2 &context, std::uint32_t depth) override
    {
        Indent(depth);
        Write(context.tag());
        out_.Append(":\r\n");
    }

    void CloseContext(const LogEntry2 &) override {}

private:
    void Indent(std::uint32_t depth)
    {
        for (; depth > 0; --depth) {
            out_.Append("  ");
        }
    }
};

class HtmlForm : public LogForm {
public:
    using LogForm::LogForm;

    void Leaf(const LogEntry2 &entry, std::uint32_t) override
    {
        if (entry.kind() == LogEntryKind::kData) {
            Write(entry.tag());
            out_.Append(": ");
        }
        for (const char *c = entry.content().c_str(); *c != 0; ++c) {
            WriteEscaped(*c);
        }
        out_.Append("<br>\r\n");
    }

    void OpenContext(const LogEntry2 &context, std::uint32_t) override
    {
        Write(context.tag());
        out_.Append(":<blockquote>\r\n");
    }

    void CloseContext(const LogEntry2 &) override { out_.Append("</blockquote>\r\n"); }

private:
    void WriteEscaped(char c)
    {
        if (c == '&') {
            out_.Append("&amp;");
        } else if (c == '<') {
            out_.Append("&lt;");
        } else if (c == '>') {
            out_.Append("&gt;");
        } else {
            out_.AppendChar(c);
        }
    }
};

class XmlForm : public LogForm {
public:
    using LogForm::LogForm;

    void Leaf(const LogEntry2 &entry, std::uint32_t) override
    {
        if (entry.kind() == LogEntryKind::kRaw) {
            Write(entry.content());
            out_.Append("\r\n");
        } else if (entry.kind() == LogEntryKind::kData) {
            Element(entry.tag().c_str(), entry.content());
        } else {
            Element(entry.kind() == LogEntryKind::kError ? "error" : "info", entry.content());
        }
    }

    void OpenContext(const LogEntry2 &context, std::uint32_t) override
    {
        Bracket("<", context.tag().c_str());
        out_.Append("\r\n");
    }

    void CloseContext(const LogEntry2 &context) override
    {
        Bracket("</", context.tag().c_str());
        out_.Append("\r\n");
    }

private:
    void Bracket(const char *opening, const char *tag)
    {
        out_.Append(opening);
        out_.Append(tag);
        out_.AppendChar('>');
    }

    void Element(const char *tag, const StringBuffer &content)
    {
        Bracket("<", tag);
        const bool wrap = NeedsCdata(content);
        out_.Append(wrap ? "<![CDATA[" : "");
        Write(content);
        out_.Append(wrap ? "]]>" : "");
        Bracket("</", tag);
        out_.Append("\r\n");
    }

    static bool NeedsCdata(const StringBuffer &content)
    {
        const bool markup = std::strpbrk(content.c_str(), "\n\t&><") != nullptr;
        return markup && !(content.Contains("<![CDATA[") && content.Contains("]]>"));
    }
};

} // namespace

void RenderText(const LogEntry2 &entry, StringBuffer *text)
{
    TextForm form(text);
    Walk(entry, &form);
}

void RenderHtml(const LogEntry2 &entry, StringBuffer *html)
{
    HtmlForm form(html);
    Walk(entry, &form);
}

void RenderXml(const LogEntry2 &entry, StringBuffer *xml)
{
    XmlForm form(xml);
    Walk(entry, &form);
}

} // namespace pavonix
