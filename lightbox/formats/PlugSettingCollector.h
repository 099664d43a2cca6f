#pragma once

#include "formats/PlugSetting.h"
#include "scene/Plug.h"

#include <vector>

namespace lightbox {

/// Collects the settings that turn a new node of the same type into a copy of a node: values that differ from
/// their default and flags that differ from the attribute's.
class PlugSettingCollector {
public:
    static std::vector<PlugSetting> Collect(const std::shared_ptr<Node>& node);

private:
    explicit PlugSettingCollector(std::shared_ptr<Node> node)
        : node_(std::move(node)) {}

    void AddAttribute(const std::shared_ptr<Attribute>& attribute, int element);
    void AddArray(const std::shared_ptr<Attribute>& attribute);
    void AddCompound(const std::shared_ptr<Attribute>& attribute, int element);
    void AddPlain(const std::shared_ptr<Attribute>& attribute, int element);
    void AddMesh(const Attribute& attribute);

    const PlugState* StateOf(const Attribute& attribute, int element) const;
    bool HasFlags(const Attribute& attribute, int element) const;
    bool HasFlagsBelow(const Attribute& attribute, int element) const;
    /// Returns the plug's value when it has to be written, else null.
    const AttributeValue* ValueOf(const Attribute& attribute, int element) const;
    /// Appends the numbers of the attribute or of all its children. Returns false when one is not a number.
    /// Sets `anySet` when one has to be written.
    bool Numbers(const Attribute& attribute, int element, std::vector<double>& numbers, bool& anySet) const;
    PlugSetting Begin(const std::shared_ptr<Attribute>& attribute, int element) const;
    static void FillValue(const Attribute& attribute, const AttributeValue& value, PlugSetting& setting);

    std::shared_ptr<Node> node_;
    std::vector<PlugSetting> settings_;
};

} // namespace lightbox
