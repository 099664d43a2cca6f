#include "commands/KeyArguments.h"
#include "commands/Registration.h"
#include "scene/AnimationEdit.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/Timeline.h"

#include <algorithm>
#include <memory>

namespace lightbox::mel {
namespace {

using Key = AnimCurve::Key;

/// The cut or copied keys of one attribute.
struct CopiedCurve {
    std::string attribute;
    std::vector<Key> keys;
};
using Clipboard = std::vector<CopiedCurve>;

std::string DrivenAttribute(const AnimCurveNode& node) {
    for (const Connection& connection : node.InScene()->connections().Of(node)) {
        if (connection.source.node.get() == &node) {
            return connection.destination.attribute->LongName();
        }
    }
    return {};
}

void Copy(const std::vector<KeySet>& sets, Clipboard& clipboard) {
    if (sets.empty()) {
        return;
    }
    clipboard.clear();
    for (const KeySet& set : sets) {
        CopiedCurve copy{DrivenAttribute(*set.node), {}};
        const AnimCurve& curve = set.node->Curve();
        for (const std::size_t i : set.keys) {
            Key key = curve.Keys()[i];
            key.in = curve.InTangent(i);
            key.out = curve.OutTangent(i);
            copy.keys.push_back(key);
        }
        clipboard.push_back(std::move(copy));
    }
}

Value CutKey(CommandCall& call, Clipboard& clipboard) {
    const std::string option = call.StringOr("-option", "keys");
    if (option != "keys") {
        call.Fail("-option takes \"keys\", not \"" + option + "\".");
    }
    const std::vector<KeySet> sets = KeyArguments(call).KeySets();
    if (!call.Has("-clear")) {
        Copy(sets, clipboard);
    }
    for (const KeySet& set : sets) {
        AnimCurve curve = set.node->Curve();
        for (auto i = set.keys.rbegin(); i != set.keys.rend(); ++i) {
            curve.Remove(*i);
        }
        animation::SetCurve(call.GetHost(), set.node, curve);
    }
    return static_cast<int>(sets.size());
}

Value CopyKey(CommandCall& call, Clipboard& clipboard) {
    const std::vector<KeySet> sets = KeyArguments(call).KeySets();
    Copy(sets, clipboard);
    return static_cast<int>(sets.size());
}

double FirstTime(const Clipboard& clipboard) {
    double first = std::numeric_limits<double>::infinity();
    for (const CopiedCurve& copy : clipboard) {
        first = std::min(first, copy.keys.front().time);
    }
    return first;
}

/// Prepares a curve for pasting keys from `first` to `last`, in frames: removes or shifts keys as `option`
/// says.
void MakeRoom(AnimCurve& curve, const std::string& option, double first, double last) {
    std::vector<Key> keys = curve.Keys();
    const auto isWithin = [&](const Key& key) {
        return key.time >= first - AnimCurve::SAME_TIME && key.time <= last + AnimCurve::SAME_TIME;
    };
    if (option == "replaceCompletely") {
        keys.clear();
    } else if (option == "replace") {
        keys.erase(std::remove_if(keys.begin(), keys.end(), isWithin), keys.end());
    } else if (option == "insert") {
        for (Key& key : keys) {
            key.time += key.time >= first - AnimCurve::SAME_TIME ? last - first : 0.0;
        }
    }
    curve.SetKeys(std::move(keys));
}

void Paste(CommandCall& call, const Plug& plug, const CopiedCurve& copy, double shift) {
    const std::shared_ptr<AnimCurveNode> node = animation::RequireCurve(call.GetHost(), plug);
    AnimCurve curve = node->Curve();
    MakeRoom(curve, call.StringOr("-option", "insert"), copy.keys.front().time + shift,
             copy.keys.back().time + shift);
    for (Key key : copy.keys) {
        key.time += shift;
        key.value += call.FloatOr("-valueOffset", 0.0);
        curve.Insert(key);
    }
    animation::SetCurve(call.GetHost(), node, curve);
}

Value PasteKey(CommandCall& call, const Clipboard& clipboard) {
    const std::string option = call.StringOr("-option", "insert");
    if (option != "insert" && option != "merge" && option != "replace" && option != "replaceCompletely") {
        call.Fail("-option takes \"insert\", \"merge\", \"replace\" or \"replaceCompletely\", not \"" +
                  option + "\".");
    }
    if (clipboard.empty()) {
        call.Fail("There are no keys on the clipboard.");
    }
    const double first = FirstTime(clipboard);
    const double start = call.Has("-time")         ? KeyArguments::TimeOf(call, call.Argument("-time"))
                         : call.Has("-timeOffset") ? first
                                                   : call.GetHost().time().CurrentTime();
    const double offset =
        call.Has("-timeOffset") ? KeyArguments::TimeOf(call, call.Argument("-timeOffset")) : 0.0;
    int count = 0;
    for (const Plug& plug : KeyArguments(call, false).KeyablePlugs()) {
        // A single copied curve fits any single named attribute. Otherwise the attribute's name decides.
        const bool isSingle = call.UseCount("-attribute") == 1;
        const auto copy = std::find_if(clipboard.begin(), clipboard.end(), [&](const CopiedCurve& each) {
            return each.attribute == plug.attribute->LongName() || (clipboard.size() == 1 && isSingle);
        });
        if (copy != clipboard.end()) {
            Paste(call, plug, *copy, start + offset - first);
            ++count;
        }
    }
    return count;
}

} // namespace

void RegisterKeyClipboardCommands(CommandRegistry& registry) {
    const auto clipboard = std::make_shared<Clipboard>();
    SyntaxBuilder cut;
    KeyArguments::AddFlags(cut).Flag("-cl", "-clear").Flag("-o", "-option", MSyntax::kString);
    AddSceneCommand(registry, "cutKey", cut,
                    [clipboard](CommandCall& call) { return CutKey(call, *clipboard); });
    SyntaxBuilder copy;
    AddSceneCommand(registry, "copyKey", KeyArguments::AddFlags(copy),
                    [clipboard](CommandCall& call) { return CopyKey(call, *clipboard); });
    SyntaxBuilder paste;
    KeyArguments::AddObjectFlags(paste)
        .RangeFlag("-t", "-time")
        .RangeFlag("-to", "-timeOffset")
        .Flag("-vo", "-valueOffset", MSyntax::kDouble)
        .Flag("-o", "-option", MSyntax::kString);
    AddSceneCommand(registry, "pasteKey", paste,
                    [clipboard](CommandCall& call) { return PasteKey(call, *clipboard); });
}

} // namespace lightbox::mel
