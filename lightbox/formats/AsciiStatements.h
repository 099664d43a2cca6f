#pragma once

#include "formats/PlugSetting.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace lightbox {

class Attribute;

/// The statements that describe one node, as Maya ASCII words them.
namespace ascii {

/// Writes `setAttr` with everything the setting holds, without the indent and with the line break. Throws
/// FileError when a plug-in's value could not write itself.
void WriteSetting(std::ostream& out, const PlugSetting& setting);
/// The same without the semicolon and the line break.
std::string SettingText(const PlugSetting& setting);

/// Writes `addAttr` for a dynamic attribute and, for a compound, for its children behind it.
void WriteAddAttr(std::ostream& out, const Attribute& attribute, const std::string& indent);
/// The same as statements without indent, semicolon and line break.
std::vector<std::string> AddAttrTexts(const Attribute& attribute);

/// `requires` with what a plug-in brings, without the semicolon.
std::string RequiresText(const std::string& plugin, const std::string& version,
                         const std::vector<std::string>& nodeTypes,
                         const std::vector<std::string>& dataTypes);

} // namespace ascii

} // namespace lightbox
