#pragma once

#include <maya/MSyntax.h>

namespace lightbox {

/// The types of flag arguments, as the tables of the window's commands write them.
constexpr auto INT = MSyntax::kLong;
constexpr auto NUMBER = MSyntax::kDouble;
constexpr auto TEXT = MSyntax::kString;
constexpr auto ON = MSyntax::kBoolean;

/// The highest number in the name of a flag about columns, as in -columnWidth6.
constexpr int MAX_COLUMNS = 6;

} // namespace lightbox
