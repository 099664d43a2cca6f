#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lightbox {

/// Reads the number at the start of a text, after blanks. Returns false when there is none. `rest` (optional)
/// receives the text after it.
bool ReadNumber(std::string_view text, double& number, std::string_view* rest = nullptr);
/// Reads a text that is one number, with optional blanks around it. Returns false for any other text.
bool IsNumber(std::string_view text, double& number);
/// The number that a word for none stands for: "nan", "-inf", or as it is written on Windows, "1.#QNAN",
/// "-1.#IND", "1.#INF". Null for any other word.
std::optional<double> NotFiniteNumber(std::string_view word);
/// The shortest text with up to ten significant digits, as MEL prints numbers.
std::string NumberText(double number);
/// The shortest text that reads back as the same number; without an exponent from 1e-7 to 1e15.
std::string DecimalText(double number);

} // namespace lightbox
