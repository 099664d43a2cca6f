#pragma once

#include <maya/MSyntax.h>

namespace lightbox {

/// Short names of the argument types, for the flag tables of the window commands.
constexpr auto INT = MSyntax::kLong;
constexpr auto NUMBER = MSyntax::kDouble;
constexpr auto TEXT = MSyntax::kString;
constexpr auto ON = MSyntax::kBoolean;

/// The highest column count in a flag's name, as in -columnWidth6.
constexpr int MAX_COLUMNS = 6;

} // namespace lightbox
