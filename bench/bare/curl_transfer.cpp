#include "bare/curl_transfer.h"

#include <cstdio>
#include <cstdlib>
#include <curl/curl.h>

namespace pavonix::bench {

namespace {

std::size_t Drop(char *, std::size_t size, std::size_t count, void *)
{
    return size * count;
}

long Perform(CURL *handle)
{
    long status = 0;
    if (curl_easy_perform(handle) == CURLE_OK) {
        curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
    }
    curl_easy_cleanup(handle);
    return status;
}

} // namespace

long CurlDownload(const std::string &url, const std::string &path)
{
    CURL *handle = curl_easy_init();
    std::FILE *file = std::fopen(path.c_str(), "wbe");
    if (file == nullptr) {
        std::abort(); // the benchmark cannot run
    }
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, file);
    const long status = Perform(handle);
    std::fclose(file);
    return status;
}

long CurlPost(const std::string &url, const std::vector<std::string> &headers, const std::string &form)
{
    CURL *handle = curl_easy_init();
    curl_slist *list = nullptr;
    for (const std::string &header : headers) {
        list = curl_slist_append(list, header.c_str());
    }
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, list);
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, form.c_str());
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, Drop);
    const long status = Perform(handle);
    curl_slist_free_all(list);
    return status;
}

} // namespace pavonix::bench
