// HttpConnection: the request text.
#include "http/http_connection.h"

namespace pavonix {

namespace {

constexpr char kCrLf[] = "\r\n";
constexpr char kDefaultUserAgent[] =
    "Mozilla/4.0 (compatible; MSIE 6.0; Windows NT 5.1; SV1; .NET CLR 2.0.50727; InfoPath.2; "
    ".NET CLR 3.0.4506.2152; .NET CLR 3.5.30729)";

// A text for which memory ran out may be empty too, but is not absent: appending it
// marks the request as incomplete, and an incomplete request is not sent.
bool IsAbsent(const ZtString &text)
{
    return text.isEmpty() && text.complete();
}

// "name: value", the value replaced by `fallback` when empty.
void AppendLine(ZtString *request, const char *name, const ZtString &value, const char *fallback)
{
    request->Append(name);
    request->Append(": ");
    if (IsAbsent(value)) {
        request->Append(fallback);
    } else {
        request->Append(value);
    }
    request->Append(kCrLf);
}

void Assign(ZtString *member, std::string_view text)
{
    member->Clear();
    member->AppendN(text.data(), static_cast<std::int32_t>(text.size()));
}

} // namespace

void HttpConnection::AddHeader(const char *name, const char *value)
{
    if (name == nullptr || value == nullptr) {
        return;
    }
    if (headers_.length() > 0) {
        headers_.Append(kCrLf);
    }
    headers_.Append(name);
    headers_.Append(": ");
    headers_.Append(value);
}

void HttpConnection::AddFormField(const char *name, const char *value)
{
    if (name == nullptr || value == nullptr) {
        return;
    }
    if (!formBody_.isEmpty()) {
        formBody_.Append("&");
    }
    StringBuffer encoded;
    UrlEncode(value, &encoded);
    formBody_.Append(name);
    formBody_.Append("=");
    formBody_.Append(encoded);
}

ZtString HttpConnection::ExtractHost(const UrlParts &url)
{
    Assign(&host_, url.host);
    return host_;
}

ZtString HttpConnection::ExtractPath(const UrlParts &url)
{
    Assign(&path_, url.target);
    return path_;
}

void HttpConnection::Compose(const char *method, const UrlParts &url, const ZtString &range, const ZtString &body)
{
    Assign(&host_, url.host);
    Assign(&path_, url.target);
    request_.Clear();
    request_.Append(method);
    request_.Append(" ");
    request_.Append(path_);
    request_.Append(" HTTP/1.1\r\n");
    AppendLine(&request_, "Host", host_, "");
    AppendLine(&request_, "Accept", accept_, "*/*");
    AppendLine(&request_, "User-Agent", userAgent_, kDefaultUserAgent);
    request_.Append("Connection: Keep-Alive\r\n");
    if (!IsAbsent(body) || !IsAbsent(contentType_)) {
        AppendLine(&request_, "Content-Type", contentType_, "application/x-www-form-urlencoded");
    }
    request_.Append(headers_);
    if (headers_.length() > 0) {
        request_.Append(kCrLf);
    }
    if (!IsAbsent(range)) {
        request_.Append("Range: bytes=");
        request_.Append(range);
        request_.Append(kCrLf);
    }
    request_.Append(kCrLf);
    if (!IsAbsent(body)) {
        request_.Append(body);
        request_.Append(kCrLf); // not counted in Content-Length; servers in the field expect it
    }
}

ZtString HttpConnection::ComposeRequest(const char *method, const UrlParts &url, ZtString range, ZtString body)
{
    Compose(method, url, range, body);
    return request_;
}

ZtString HttpConnection::BuildRequest(const char *method, const UrlParts &url, std::uint32_t)
{
    Compose(method, url, range_, formBody_);
    return request_;
}

} // namespace pavonix
