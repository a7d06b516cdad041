#pragma once

#include <array>
#include <cstddef>

namespace tessel {

/// " HH " for every byte value. A dump copies three of the four characters: the two digits with the
/// blank before or after them.
inline constexpr auto kByteCells = [] {
    std::array<std::array<char, 4>, 256> cells{};
    constexpr char digits[] = "0123456789ABCDEF";
    for (std::size_t i = 0; i < 256; ++i) cells[i] = {' ', digits[i >> 4], digits[i & 15], ' '};
    return cells;
}();

/// The character that a dump shows for each byte value: 32 to 126 as itself, "." for all others.
inline constexpr auto kByteCharacters = [] {
    std::array<char, 256> characters{};
    for (std::size_t i = 0; i < 256; ++i) {
        characters[i] = i >= 32 && i <= 126 ? static_cast<char>(i) : '.';
    }
    return characters;
}();

}  // namespace tessel
