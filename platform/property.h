#pragma once

#include <functional>
#include <utility>

namespace tessel {

/// A field that a screen follows: it reads and assigns like a T, and tells the one observer that
/// the screen attached whenever its value changes.
template <class T>
class Property {
  public:
    Property() = default;
    explicit Property(T value) : Held(std::move(value)) {}
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;

    Property& operator=(T value) {
        if (value == Held) return *this;
        Held = std::move(value);
        if (Observer) Observer(Held);
        return *this;
    }

    const T& Get() const { return Held; }
    operator const T&() const { return Held; }  // NOLINT(google-explicit-constructor)

    /// Attaches the screen and tells it the present value. An empty function detaches it.
    void Observe(std::function<void(const T&)> observer) {
        Observer = std::move(observer);
        if (Observer) Observer(Held);
    }

  private:
    T Held{};
    std::function<void(const T&)> Observer;
};

}  // namespace tessel
