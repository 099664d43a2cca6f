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

/// Thrown for a setting of an attribute that the node does not have.
class UnknownAttributeError : public SceneError {
public:
    using SceneError::SceneError;
};

/// Applies settings to nodes.
class PlugSettingApplier {
public:
    /// Edit makes changes undoable and fails for locked or connected plugs. Read stores without undo, even
    /// into locked plugs.
    enum class ApplyMode { Edit, Read };

    /// `outOfRange` applies to Edit only. Read clamps values.
    PlugSettingApplier(Host& host, ApplyMode mode, edit::OutOfRange outOfRange = edit::OutOfRange::Refuse)
        : host_(host)
        , mode_(mode)
        , outOfRange_(outOfRange) {}

    /// Throws SceneError for a setting that does not fit. Plugs set before the fault keep their new values.
    void Apply(const std::shared_ptr<Node>& node, const PlugSetting& setting);

    /// Returns the plug of a path, or the plugs of a range. Throws UnknownAttributeError for an unknown
    /// attribute and SceneError for a range of more than `longestRange` elements.
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
