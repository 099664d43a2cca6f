#pragma once

#include "formats/PlugSetting.h"

#include <iosfwd>
#include <string>

namespace lightbox {

class Attribute;

/// The statements that describe one node, as Maya ASCII words them.
namespace ascii {

/// Writes `setAttr` with everything the setting holds, without the indent and with the line break. Throws
/// FileError when a plug-in's value could not write itself.
void WriteSetting(std::ostream& out, const PlugSetting& setting);
std::string SettingText(const PlugSetting& setting);

/// Writes `addAttr` for a dynamic attribute and, for a compound, for its children behind it.
void WriteAddAttr(std::ostream& out, const Attribute& attribute, const std::string& indent);

} // namespace ascii

} // namespace lightbox
