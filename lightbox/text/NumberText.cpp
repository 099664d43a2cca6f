#include "text/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace lightbox {

namespace {

std::string_view WithoutBlanks(std::string_view text) {
    const auto begin = text.find_first_not_of(" \t\r\n\v\f");
    return begin == std::string_view::npos ? std::string_view() : text.substr(begin);
}

} // namespace

bool ReadNumber(std::string_view text, double& number, std::string_view* rest) {
    text = WithoutBlanks(text);
    std::string_view digits = text;
    const bool negative = !digits.empty() && digits[0] == '-';
    if (!digits.empty() && (digits[0] == '-' || digits[0] == '+')) {
        digits.remove_prefix(1);
    }
    const char* const end = digits.data() + digits.size();
    std::from_chars_result read{};
    double magnitude = 0.0;
    if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
        unsigned bits = 0;
        read = std::from_chars(digits.data() + 2, end, bits, 16);
        magnitude = static_cast<int>(bits);
    } else if (!digits.empty() && (digits[0] == '.' || (digits[0] >= '0' && digits[0] <= '9'))) {
        read = std::from_chars(digits.data(), end, magnitude);
        if (read.ec == std::errc::result_out_of_range) {
            const std::string_view exponent(digits.data(),
                                            static_cast<std::size_t>(read.ptr - digits.data()));
            const bool isTooSmall = exponent.find("e-") != std::string_view::npos ||
                                    exponent.find("E-") != std::string_view::npos;
            magnitude = isTooSmall ? 0.0 : std::numeric_limits<double>::infinity();
            read.ec = std::errc();
        }
    } else {
        return false;
    }
    if (read.ec != std::errc()) {
        return false;
    }
    number = negative ? -magnitude : magnitude;
    if (rest) {
        *rest = text.substr(static_cast<std::size_t>(read.ptr - text.data()));
    }
    return true;
}

std::optional<double> NotFiniteNumber(std::string_view word) {
    const bool isNegative = !word.empty() && word.front() == '-';
    word.remove_prefix(isNegative ? 1 : 0);
    const double sign = isNegative ? -1.0 : 1.0;
    if (word == "nan" || word == "NaN" || word.compare(0, 4, "1.#Q") == 0 ||
        word.compare(0, 4, "1.#S") == 0 || word.compare(0, 6, "1.#IND") == 0) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    if (word == "inf" || word == "Inf" || word == "infinity" || word.compare(0, 6, "1.#INF") == 0) {
        return sign * std::numeric_limits<double>::infinity();
    }
    return std::nullopt;
}

bool IsNumber(std::string_view text, double& number) {
    double read = 0.0;
    std::string_view rest;
    if (!ReadNumber(text, read, &rest) || !WithoutBlanks(rest).empty()) {
        return false;
    }
    number = read;
    return true;
}

std::string NumberText(double number) {
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", number);
    return text;
}

std::string DecimalText(double number) {
    // The shortest digits that read back as the same number, in plain notation where a person would use it.
    char buffer[400];
    const double size = std::abs(number);
    const bool plain = size == 0.0 || (size >= 1e-7 && size < 1e15);
    const std::to_chars_result result =
        plain ? std::to_chars(buffer, buffer + sizeof(buffer), number + 0.0, std::chars_format::fixed)
              : std::to_chars(buffer, buffer + sizeof(buffer), number);
    return std::string(buffer, result.ptr);
}

} // namespace lightbox
