#pragma once

#include <string>
#include <string_view>

namespace lightbox {

/// Reads the number at the start of a text, after blanks. Returns false when there is none. `rest` (optional)
/// receives the text after it.
bool ReadNumber(std::string_view text, double& number, std::string_view* rest = nullptr);
/// Reads a text that is one number, with optional blanks around it. Returns false for any other text.
bool IsNumber(std::string_view text, double& number);
/// The shortest text with up to ten significant digits, as MEL prints numbers.
std::string NumberText(double number);
/// The shortest text that reads back as the same number; without an exponent from 1e-7 to 1e15.
std::string DecimalText(double number);

} // namespace lightbox
