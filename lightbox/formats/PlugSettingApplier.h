#pragma once

#include "formats/PlugSetting.h"
#include "scene/Edit.h"
#include "scene/Plug.h"
#include "scene/SceneError.h"

#include <memory>
#include <string>
#include <vector>

namespace lightbox {

class Host;

/// A setting of an attribute that the node does not have.
class UnknownAttributeError : public SceneError {
public:
    using SceneError::SceneError;
};

/// Puts a setting onto a node.
class PlugSettingApplier {
public:
    /// How the scene is changed: as an edit that can be undone and that locks and connections refuse, or as
    /// part of reading a file, where what is stored goes in whatever is locked.
    enum class ApplyMode { Edit, Read };

    /// `outOfRange` is for edits; what is read is clamped.
    PlugSettingApplier(Host& host, ApplyMode mode, edit::OutOfRange outOfRange = edit::OutOfRange::Refuse)
        : host_(host)
        , mode_(mode)
        , outOfRange_(outOfRange) {}

    /// Throws SceneError; the plugs that were set before the fault stay set.
    void Apply(const std::shared_ptr<Node>& node, const PlugSetting& setting);

    /// The plugs that a path stands for, one or those of a range; UnknownAttributeError when there are none.
    /// A range is never longer than `longestRange`.
    static std::vector<Plug> Resolve(const std::shared_ptr<Node>& node, const std::string& path,
                                     std::size_t longestRange);

private:
    void ChangeMesh(const std::shared_ptr<Node>& node, const PlugSetting& setting);
    void SetFlags(const Plug& plug, const PlugSetting& setting, bool beforeValue);
    void SetFlag(const Plug& plug, const std::optional<bool>& state, edit::PlugFlag flag);
    void SetNumbers(const std::vector<Plug>& plugs, const PlugSetting& setting);
    void SetWhole(const Plug& plug, const PlugSetting& setting);
    void Store(const Plug& plug, const AttributeValue& value);

    Host& host_;
    ApplyMode mode_;
    edit::OutOfRange outOfRange_;
};

} // namespace lightbox
