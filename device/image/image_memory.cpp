#include "image/image_memory.h"

#include <cstring>
#include <sys/mman.h>

namespace pavonix::device {

namespace {

unsigned char *MapAnywhere(std::uint32_t size)
{
    void *bytes = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (bytes == MAP_FAILED) {
        throw ImageError("out of memory for an image of " + std::to_string(size) + " bytes");
    }
    return static_cast<unsigned char *>(bytes);
}

} // namespace

ImageMemory::ImageMemory(std::uint32_t size, std::uint32_t avoided) : bytes_(MapAnywhere(size)), size_(size)
{
    if (Base() == avoided) {
        unsigned char *elsewhere = MapAnywhere(size);
        munmap(bytes_, size_);
        bytes_ = elsewhere;
    }
}

ImageMemory::~ImageMemory()
{
    munmap(bytes_, size_);
}

std::string ImageMemory::TextAt(std::uint32_t rva)
{
    const char *text = At<char>(rva);
    const void *end = std::memchr(text, 0, size_ - rva);
    if (end == nullptr) {
        throw ImageError("a text in the image has no end");
    }
    return text;
}

void ImageMemory::Protect(std::uint32_t rva, std::uint32_t size, bool writable, bool executable)
{
    int protection = PROT_READ | (writable ? PROT_WRITE : 0) | (executable ? PROT_EXEC : 0);
    if (mprotect(At<unsigned char>(rva, size), size, protection) != 0) {
        throw ImageError("cannot protect a section");
    }
}

} // namespace pavonix::device
