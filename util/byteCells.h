#pragma once

#include <array>
#include <cstddef>

namespace tessel {

/// " HH " for every byte value. Long dumps copy a byte's digits with the blank in front of them or
/// behind them, three characters of the four.
inline constexpr auto kByteCells = [] {
    std::array<std::array<char, 4>, 256> cells{};
    constexpr char digits[] = "0123456789ABCDEF";
    for (std::size_t i = 0; i < 256; ++i) cells[i] = {' ', digits[i >> 4], digits[i & 15], ' '};
    return cells;
}();

/// The character that a dump shows for every byte value: 32 to 126 as itself, "." for the others.
inline constexpr auto kByteCharacters = [] {
    std::array<char, 256> characters{};
    for (std::size_t i = 0; i < 256; ++i) {
        characters[i] = i >= 32 && i <= 126 ? static_cast<char>(i) : '.';
    }
    return characters;
}();

}  // namespace tessel
