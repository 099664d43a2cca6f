#include "formats/PlugSettingApplier.h"

#include "formats/MeshPlugSettings.h"
#include "scene/DataValue.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/MeshNode.h"
#include "scene/Scene.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace lightbox {
namespace {

/// One part of a path: "ktv[0:4]". -1 stands for no index.
struct PathPart {
    std::string name;
    int first = -1;
    int last = -1;
};

[[noreturn]] void FailPath(const std::string& path) {
    throw SceneError("Syntax error in the attribute \"" + path + "\".");
}

int ReadIndex(std::string_view text, const std::string& path) {
    int index = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), index);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || index < 0) {
        FailPath(path);
    }
    return index;
}

std::vector<PathPart> SplitPath(const std::string& path) {
    std::vector<PathPart> parts;
    std::size_t begin = 0;
    while (begin <= path.size()) {
        const std::size_t end = std::min(path.find('.', begin), path.size());
        const std::string_view text = std::string_view(path).substr(begin, end - begin);
        const std::size_t bracket = text.find('[');
        PathPart part;
        part.name = text.substr(0, bracket);
        if (bracket != std::string_view::npos) {
            if (text.back() != ']') {
                FailPath(path);
            }
            const std::string_view range = text.substr(bracket + 1, text.size() - bracket - 2);
            const std::size_t colon = range.find(':');
            part.first = ReadIndex(range.substr(0, colon), path);
            part.last =
                colon == std::string_view::npos ? part.first : ReadIndex(range.substr(colon + 1), path);
        }
        if (part.name.empty() || part.last < part.first) {
            FailPath(path);
        }
        parts.push_back(std::move(part));
        begin = end + 1;
    }
    return parts;
}

/// Returns the number plugs below a plug in order, or the plug itself; empty when one is not a number.
std::vector<Plug> NumberPlugs(const Plug& plug) {
    if (!plug.attribute->IsCompound()) {
        return plug.attribute->IsNumber() ? std::vector<Plug>{plug} : std::vector<Plug>{};
    }
    std::vector<Plug> plugs;
    for (std::size_t i = 0; i < plug.attribute->Children().size(); ++i) {
        const std::vector<Plug> below = NumberPlugs(plug.Child(i));
        if (below.empty() || plug.Child(i).IsArray()) {
            return {};
        }
        plugs.insert(plugs.end(), below.begin(), below.end());
    }
    return plugs;
}

} // namespace

std::vector<Plug> PlugSettingApplier::Resolve(const std::shared_ptr<Node>& node, const std::string& path,
                                              std::size_t longestRange) {
    std::shared_ptr<Attribute> attribute;
    PathPart elements;
    for (const PathPart& part : SplitPath(path)) {
        const std::shared_ptr<Attribute> above = attribute;
        attribute = node->FindAttribute(part.name);
        const bool isIndexed = part.first >= 0;
        // A plug has one index. What is in an array inside another array is kept.
        const bool isNested = isIndexed && elements.first >= 0;
        if (!attribute || (above && attribute->Parent() != above.get()) || (isIndexed && !attribute->multi) ||
            isNested) {
            throw UnknownAttributeError("No object matches name: " + Scene::ShownName(*node) + "." + path);
        }
        if (isIndexed) {
            elements = part;
        }
    }
    const auto length = static_cast<std::size_t>(static_cast<long long>(elements.last) - elements.first + 1);
    if (length > 1 && length > longestRange) {
        throw SceneError("The range of \"" + path + "\" is longer than the values given.");
    }
    std::vector<Plug> plugs;
    for (std::size_t i = 0; i < length; ++i) {
        const int index = elements.first + static_cast<int>(i);
        plugs.emplace_back(node, attribute, attribute->HasElements() ? index : -1);
    }
    return plugs;
}

void PlugSettingApplier::Apply(const std::shared_ptr<Node>& node, const PlugSetting& setting) {
    if (MeshPlugSettings::Handles(*node, setting.path)) {
        ChangeMesh(node, setting);
        return;
    }
    const std::vector<Plug> plugs =
        Resolve(node, setting.path, std::max(setting.numbers.size(), setting.texts.size()));
    for (const Plug& plug : plugs) {
        SetFlags(plug, setting, true);
    }
    if (setting.hasValue) {
        const bool isNumbers =
            setting.type.empty() ||
            (NumberCountOfType(setting.type) > 0 && plugs.front().attribute->Kind() != AttributeKind::Matrix);
        if (isNumbers) {
            SetNumbers(plugs, setting);
        } else if (plugs.size() == 1) {
            SetWhole(plugs.front(), setting);
        } else {
            throw SceneError("A range of \"" + setting.path + "\" takes numbers only.");
        }
    }
    for (const Plug& plug : plugs) {
        SetFlags(plug, setting, false);
    }
}

void PlugSettingApplier::ChangeMesh(const std::shared_ptr<Node>& node, const PlugSetting& setting) {
    const Plug plug = MeshNode::OwnPlug(node);
    std::shared_ptr<const MeshData> own = MeshNode::Own(*node);
    if (mode_ == ApplyMode::Read && own) {
        // A file sets a mesh in many statements. A mesh without another owner is changed in place.
        plug.Store(std::nullopt);
        if (own.use_count() == 1) {
            const auto mesh = std::const_pointer_cast<MeshData>(own);
            mesh->BeginChange();
            const auto store = [&] { plug.Store(std::shared_ptr<const MeshData>(mesh)); };
            try {
                MeshPlugSettings::Change(*mesh, setting);
            } catch (...) {
                store();
                throw;
            }
            store();
            return;
        }
        plug.Store(own);
    }
    const auto mesh = own ? std::make_shared<MeshData>(*own) : std::make_shared<MeshData>();
    MeshPlugSettings::Change(*mesh, setting);
    Store(plug, std::shared_ptr<const MeshData>(mesh));
}

void PlugSettingApplier::SetFlags(const Plug& plug, const PlugSetting& setting, bool beforeValue) {
    // Unlock before setting the value; lock after it.
    if (setting.locked && *setting.locked != beforeValue) {
        SetFlag(plug, setting.locked, edit::PlugFlag::Locked);
    }
    if (!beforeValue) {
        SetFlag(plug, setting.keyable, edit::PlugFlag::Keyable);
        SetFlag(plug, setting.channelBox, edit::PlugFlag::ChannelBox);
    }
}

void PlugSettingApplier::SetFlag(const Plug& plug, const std::optional<bool>& state, edit::PlugFlag which) {
    if (!state) {
        return;
    }
    if (mode_ == ApplyMode::Edit) {
        edit::SetPlugFlag(host_, plug, which, *state);
    } else {
        edit::StorePlugFlag(plug, which, *state);
    }
}

void PlugSettingApplier::SetNumbers(const std::vector<Plug>& plugs, const PlugSetting& setting) {
    std::vector<Plug> targets;
    for (const Plug& plug : plugs) {
        const std::vector<Plug> below = plug.IsArray() ? std::vector<Plug>{} : NumberPlugs(plug);
        if (below.empty()) {
            throw SceneError("The value given does not fit the attribute '" + plug.Name() + "', of type " +
                             plug.attribute->TypeName() + ".");
        }
        targets.insert(targets.end(), below.begin(), below.end());
    }
    if (targets.size() != setting.numbers.size()) {
        throw SceneError("The attribute '" + plugs.front().Name() + "' takes " +
                         std::to_string(targets.size()) + " values; " +
                         std::to_string(setting.numbers.size()) + " were given.");
    }
    if (plugs.size() == 1 && plugs.front().attribute->IsNumericCompound()) {
        Store(plugs.front(), setting.numbers);
        return;
    }
    for (std::size_t i = 0; i < targets.size(); ++i) {
        Store(targets[i], setting.numbers[i]);
    }
}

void PlugSettingApplier::SetWhole(const Plug& plug, const PlugSetting& setting) {
    if (setting.type == "string" && setting.texts.size() == 1) {
        Store(plug, setting.texts.front());
    } else if (setting.type == "stringArray") {
        Store(plug, setting.texts);
    } else if (setting.data) {
        Store(plug, setting.data);
    } else {
        Store(plug, setting.numbers);
    }
}

void PlugSettingApplier::Store(const Plug& plug, const AttributeValue& value) {
    const auto* numbers = std::get_if<std::vector<double>>(&value);
    const bool isOfChildren = numbers && plug.attribute->IsNumericCompound();
    const std::size_t children = plug.attribute->Children().size();
    if (isOfChildren && numbers->size() != children) {
        throw SceneError("The attribute '" + plug.Name() + "' takes " + std::to_string(children) +
                         " values; " + std::to_string(numbers->size()) + " were given.");
    }
    if (mode_ == ApplyMode::Edit) {
        edit::SetPlug(host_, plug, value, outOfRange_);
        return;
    }
    if (isOfChildren) {
        for (std::size_t i = 0; i < children; ++i) {
            Store(plug.Child(i), (*numbers)[i]);
        }
        return;
    }
    const std::optional<AttributeValue> accepted = plug.attribute->Accept(value);
    if (!accepted) {
        throw SceneError("The value given does not fit the attribute '" + plug.Name() + "', of type " +
                         plug.attribute->TypeName() + ".");
    }
    plug.Store(*accepted);
    plug.node->State(*plug.attribute, plug.element).isGiven = true;
}

} // namespace lightbox
