#include "util/numberText.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tessel {
namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

std::string Hex(std::uint32_t value, int width) {
    std::string text(static_cast<std::size_t>(width), '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, value >>= 4) {
        *digit = kDigits[value & 15];
    }
    return text;
}

/// The value of the digit `c` in `base`, -1 when it is not one.
Long DigitValue(char c, Long base) {
    if (c >= '0' && c <= '9') return c - '0';
    if (base == 16 && c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (base == 16 && c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

void AppendUtf8(std::string& text, char32_t c) {
    const auto add = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (c < 0x80) {
        add(c);
    } else if (c < 0x800) {
        add(0xC0 | c >> 6);
        add(0x80 | (c & 63));
    } else if (c < 0x10000) {
        add(0xE0 | c >> 12);
        add(0x80 | (c >> 6 & 63));
        add(0x80 | (c & 63));
    } else {
        add(0xF0 | c >> 18);
        add(0x80 | (c >> 12 & 63));
        add(0x80 | (c >> 6 & 63));
        add(0x80 | (c & 63));
    }
}

}  // namespace

std::string Hex2(Long value) { return Hex(static_cast<std::uint32_t>(value), 2); }
std::string Hex4(Long value) { return Hex(static_cast<std::uint32_t>(value), 4); }
std::string Hex8(Long value) { return Hex(static_cast<std::uint32_t>(value), 8); }

std::string Padded(Long value, int digits) {
    const bool negative = value < 0;
    std::string text = std::to_string(value);
    if (negative) text.erase(0, 1);
    if (text.size() < static_cast<std::size_t>(digits)) {
        text.insert(0, static_cast<std::size_t>(digits) - text.size(), '0');
    }
    return negative ? "-" + text : text;
}

std::string Grouped(Long value) {
    std::string text = std::to_string(value);
    const std::size_t first = value < 0 ? 1U : 0U;
    for (std::size_t at = text.size(); at > first + 3;) text.insert(at -= 3, 1, ',');
    return text;
}

std::string ByteToText(Byte value) {
    if ((value >= 32 && value <= 126) || value == '\t' || value == '\n' || value == '\r') {
        return std::string(1, static_cast<char>(value));
    }
    return "<" + Hex2(value) + ">";
}

Long ParseNumber(std::string& text) {
    text = Trimmed(text);
    const std::string prefix = UpperCase(text.substr(0, 2));
    const bool hexadecimal = prefix == "&H" || prefix == "0X";
    const Long base = hexadecimal ? 16 : 10;
    const std::size_t first = hexadecimal ? 2 : 0;
    if (text.size() <= first) return -1;

    // The value is checked before a digit is added, so that no step overflows 32 bits.
    constexpr Long kLargestBeforeDigit = 0x3333333;
    Long value = 0;
    for (std::size_t i = first; i < text.size(); ++i) {
        const Long digit = DigitValue(text[i], base);
        if (digit < 0) {
            const bool last = i + 1 == text.size();
            const char suffix = text[i];
            if ((suffix == 'k' || suffix == 'K') && last && value <= 524288) return value * 1024;
            if ((suffix == 'm' || suffix == 'M') && last && value <= 512) return value * 1048576;
            return -1;
        }
        if (value > kLargestBeforeDigit) return -1;
        value = value * base + digit;
    }
    return value;
}

std::string StripExtension(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos ? name : name.substr(0, dot);
}

std::string SizeText(std::int64_t bytes) {
    if (bytes < 1024) return std::to_string(bytes) + " bytes";
    constexpr std::array<const char*, 3> kUnits = {" KB", " MB", " GB"};
    std::int64_t unit = 1024;
    std::size_t name = 0;
    for (; bytes >= unit * 1024 && name + 1 < kUnits.size(); unit *= 1024) ++name;
    const std::int64_t tenths = bytes / unit * 10 + (bytes % unit * 10 + unit - 1) / unit;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + kUnits[name];
}

std::string Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return "";
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string UpperCase(std::string text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

std::string Utf8(std::u16string_view units) {
    std::string text;
    text.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t c = units[i];
        const bool high = c >= 0xD800 && c < 0xDC00;
        const bool low = c >= 0xDC00 && c < 0xE000;
        if (high && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000) {
            c = 0x10000 + ((c - 0xD800) << 10) + (units[i + 1] - 0xDC00U);
            ++i;
        } else if (high || low) {
            c = 0xFFFD;
        }
        AppendUtf8(text, c);
    }
    return text;
}

}  // namespace tessel
