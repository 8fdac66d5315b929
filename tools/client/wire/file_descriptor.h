// Closes a descriptor when its owner goes.
#pragma once

#include <unistd.h>

#include <utility>

namespace client {

class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~FileDescriptor() { Close(); }

    void Close()
    {
        if (number_ >= 0) {
            close(std::exchange(number_, -1));
        }
    }

    int get() const { return number_; }

private:
    int number_ = -1;
};

} // namespace client
