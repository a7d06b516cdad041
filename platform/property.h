#pragma once

#include <functional>
#include <utility>

namespace tessel {

/// A field that a screen can observe. It reads and assigns like a T, and notifies its one observer
/// whenever its value changes.
template <class T>
class Property {
  public:
    Property() = default;
    explicit Property(T value) : Current(std::move(value)) {}
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;

    Property& operator=(T value) {
        if (value == Current) return *this;
        Current = std::move(value);
        if (Observer) Observer(Current);
        return *this;
    }

    const T& Get() const { return Current; }
    operator const T&() const { return Current; }  // NOLINT(google-explicit-constructor)

    /// Replaces the observer and calls the new one with the current value. An empty function
    /// removes the observer.
    void Observe(std::function<void(const T&)> observer) {
        Observer = std::move(observer);
        if (Observer) Observer(Current);
    }

  private:
    T Current{};
    std::function<void(const T&)> Observer;
};

}  // namespace tessel
