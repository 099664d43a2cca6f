#pragma once

#include "scene/AttributeValue.h"

#include <optional>

namespace lightbox {

class Attribute;
class Node;

/// What a node of type unitConversion computes: its input by its factor. The factor is meant for the units
/// that Maya keeps inside, radians and 1/6000 of a second, so angles and times at both ends are converted.
std::optional<AttributeValue> ComputeUnitConversion(const Node& node, const Attribute& attribute,
                                                    int element);

} // namespace lightbox
