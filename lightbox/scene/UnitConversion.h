#pragma once

#include "scene/AttributeValue.h"

#include <optional>

namespace lightbox {

class Attribute;
class Node;

/// Computes a node of type unitConversion: its input times its factor. The factor applies to the internal
/// units (radians, 1/6000 of a second), so angles and times at both ends are converted.
std::optional<AttributeValue> ComputeUnitConversion(const Node& node, const Attribute& attribute,
                                                    int element);

} // namespace lightbox
