// The memory a DLL image is mapped to, and checked views into it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace pavonix::device {

struct ImageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// One private mapping, unmapped with the object. Every address in the image's
// headers is relative to its start (an RVA) and goes through At, so that a
// broken image is an error and not a crash of the runner.
class ImageMemory {
public:
    // Maps `size` zeroed bytes, readable and writable, anywhere but at `avoided`.
    // Throws ImageError when the system has no memory.
    ImageMemory(std::uint32_t size, std::uint32_t avoided);
    ~ImageMemory();
    ImageMemory(const ImageMemory &) = delete;
    ImageMemory &operator=(const ImageMemory &) = delete;

    std::uint32_t Base() const { return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(bytes_)); }
    std::uint32_t Size() const { return size_; }

    // `count` objects of type T at `rva`. Throws ImageError outside the image.
    template <typename T>
    T *At(std::uint32_t rva, std::uint32_t count = 1)
    {
        if (rva > size_ || count > (size_ - rva) / sizeof(T)) {
            throw ImageError("an address is outside the image: " + std::to_string(rva));
        }
        return reinterpret_cast<T *>(bytes_ + rva);
    }

    // The NUL-terminated text at `rva`.
    std::string TextAt(std::uint32_t rva);

    // Sets the protection of the pages of [rva, rva + size).
    void Protect(std::uint32_t rva, std::uint32_t size, bool writable, bool executable);

private:
    unsigned char *bytes_;
    std::uint32_t size_;
};

} // namespace pavonix::device
