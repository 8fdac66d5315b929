// C library functions of the standard that not every device image exports.
#include <cstring>

extern "C" {

std::size_t strcspn(const char *text, const char *stops)
{
    std::size_t length = 0;
    while (text[length] != 0 && std::strchr(stops, text[length]) == nullptr) {
        ++length;
    }
    return length;
}

char *strpbrk(const char *text, const char *stops)
{
    text += std::strcspn(text, stops);
    return *text == 0 ? nullptr : const_cast<char *>(text);
}

} // extern "C"
