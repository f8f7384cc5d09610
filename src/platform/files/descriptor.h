// Ownership of file descriptors.
#pragma once

#include <utility>

namespace vesk {

/// An open descriptor, closed when it goes out of scope.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }
    void close();
    /// Gives up ownership: the caller closes the descriptor.
    int release() { return std::exchange(number_, -1); }

private:
    int number_ = -1;
};

}  // namespace vesk
