#pragma once

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "platform/runtimeError.h"

namespace tessel {

/// Allocates memory at page boundaries. The page cache is aligned in the same way, and some
/// processors copy two to three times as fast between page-aligned addresses.
template <class T>
struct PageAllocator {
    using value_type = T;
    static constexpr std::align_val_t kPage{4096};

    PageAllocator() = default;
    template <class U>
    explicit PageAllocator(const PageAllocator<U>& /*other*/) {}

    // NOLINTBEGIN(readability-identifier-naming): names of the standard library
    T* allocate(std::size_t count) {
        return static_cast<T*>(::operator new(count * sizeof(T), kPage));
    }
    void deallocate(T* memory, std::size_t /*count*/) { ::operator delete(memory, kPage); }
    /// Leaves an element without a value uninitialised.
    template <class U>
    void construct(U* /*element*/) {}
    template <class U, class Value>
    void construct(U* element, Value&& value) {
        ::new (static_cast<void*>(element)) U(std::forward<Value>(value));
    }
    // NOLINTEND(readability-identifier-naming)

    bool operator==(const PageAllocator&) const = default;
};

/// Buffers of large reads and writes. resize() leaves new elements uninitialised.
using PageBytes = std::vector<Byte, PageAllocator<Byte>>;
using PageText = std::vector<char, PageAllocator<char>>;

}  // namespace tessel
