#pragma once

#include "formats/PlugSetting.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace lightbox {

class Attribute;

/// Writes the Maya ASCII statements that describe one node.
namespace ascii {

/// Writes the setting as one `setAttr` statement with its line break but no indent. Throws FileError when a
/// plug-in fails to write its value.
void WriteSetting(std::ostream& out, const PlugSetting& setting);
/// Returns the same statement without semicolon and line break.
std::string SettingText(const PlugSetting& setting);

/// Writes `addAttr` for a dynamic attribute. The children of a compound follow it.
void WriteAddAttr(std::ostream& out, const Attribute& attribute, const std::string& indent);
/// Returns the same statements without indent, semicolon and line break.
std::vector<std::string> AddAttrTexts(const Attribute& attribute);

/// Returns the `requires` statement that lists a plug-in's node and data types, without semicolon.
std::string RequiresText(const std::string& plugin, const std::string& version,
                         const std::vector<std::string>& nodeTypes,
                         const std::vector<std::string>& dataTypes);

} // namespace ascii

} // namespace lightbox
