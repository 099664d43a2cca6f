#pragma once

#include <string>
#include <string_view>

namespace lightbox {

/// The number that a text begins with, after blanks; false when there is none. `rest` (optional) receives
/// the part behind it.
bool ReadNumber(std::string_view text, double& number, std::string_view* rest = nullptr);
/// True when the whole text, apart from blanks around it, is one number.
bool IsNumber(std::string_view text, double& number);
/// The shortest text with up to ten significant digits, as MEL prints numbers.
std::string NumberText(double number);
/// The shortest text that reads back as the same number; without an exponent from 1e-7 to 1e15.
std::string DecimalText(double number);

} // namespace lightbox
