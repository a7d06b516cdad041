#pragma once

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "platform/runtimeError.h"

namespace tessel {

/// Memory that begins at the boundary of a page. Most bytes of the page cache do too, and some
/// processors copy two to three times as fast between two such places as between others.
template <class T>
struct PageAllocator {
    using value_type = T;
    static constexpr std::align_val_t kPage{4096};

    PageAllocator() = default;
    template <class U>
    explicit PageAllocator(const PageAllocator<U>& /*other*/) {}

    T* allocate(std::size_t count) {
        return static_cast<T*>(::operator new(count * sizeof(T), kPage));
    }
    void deallocate(T* memory, std::size_t /*count*/) { ::operator delete(memory, kPage); }
    /// An element that is given no value keeps what the memory holds: a read overwrites it.
    template <class U>
    void construct(U* /*element*/) {}
    template <class U, class Value>
    void construct(U* element, Value&& value) {
        ::new (static_cast<void*>(element)) U(std::forward<Value>(value));
    }

    bool operator==(const PageAllocator&) const = default;
};

/// Bytes of a large read or write, and text. resize() leaves new elements uninitialised.
using PageBytes = std::vector<Byte, PageAllocator<Byte>>;
using PageText = std::vector<char, PageAllocator<char>>;

}  // namespace tessel
