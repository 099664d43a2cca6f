#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace lightbox {

class DataValue;
class MeshData;

/// The value of an attribute. All scalar numbers are doubles in the units the user sees: booleans 0 or 1,
/// enums their number, angles in degrees, lengths in centimetres, times in frames. Numeric compounds,
/// matrices (16 numbers, row by row) and number arrays are vectors.
using AttributeValue =
    std::variant<std::monostate, double, std::string, std::vector<double>, std::vector<std::string>,
                 std::shared_ptr<DataValue>, std::shared_ptr<const MeshData>>;

} // namespace lightbox
