// hotkey and nameCommand.
#include "controls/WindowCommandTable.h"
#include "mel/CommandCall.h"
#include "mel/SyntaxBuilder.h"
#include "shell/Registration.h"
#include "shell/ScriptedHotkeys.h"

namespace lightbox {

namespace {

mel::Value NameCommand(mel::CommandCall& call, ControlRegistry& registry) {
    const std::string name = call.Object(0).AsString();
    if (call.StringOr("-sourceType", "mel") != "mel") {
        call.Fail("nameCommand runs MEL only.");
    }
    ScriptedHotkeys::Of(registry).NameCommand(name, call.StringOr("-command", ""));
    return name;
}

ScriptedHotkeys::Key KeyOf(const mel::CommandCall& call) {
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    modifiers.setFlag(Qt::ControlModifier, call.Has("-ctrlModifier") || call.Has("-commandModifier"));
    modifiers.setFlag(Qt::AltModifier, call.Has("-altModifier"));
    modifiers.setFlag(Qt::ShiftModifier, call.Has("-shiftModifier"));
    const std::string name = call.StringOr("-keyShortcut", "");
    const ScriptedHotkeys::Key key = ScriptedHotkeys::Key::Named(name, modifiers);
    if (key.key == 0) {
        call.Fail("There is no key \"" + name + "\". Name it with -keyShortcut.");
    }
    return key;
}

mel::Value HotkeyCommand(mel::CommandCall& call, ControlRegistry& registry) {
    ScriptedHotkeys& map = ScriptedHotkeys::Of(registry);
    const ScriptedHotkeys::Key key = KeyOf(call);
    ScriptedHotkeys::Binding binding = map.Find(key);
    if (call.IsQuery()) {
        return call.Answer({{"-name", binding.press},
                            {"-releaseName", binding.release},
                            {"-pressCommandRepeat", binding.pressRepeats}});
    }
    binding.press = call.StringOr("-name", binding.press);
    binding.release = call.StringOr("-releaseName", binding.release);
    if (call.Has("-pressCommandRepeat")) {
        binding.pressRepeats = call.Bool("-pressCommandRepeat");
    }
    map.Bind(key, binding);
    return mel::Value();
}

} // namespace

void RegisterHotkeyCommands(WindowCommandTable& table) {
    using mel::SWITCH;
    using mel::TEXT;
    table.Add("nameCommand",
              mel::SyntaxBuilder()
                  .Flag("-ann", "-annotation", TEXT)
                  .Flag("-c", "-command", TEXT)
                  .Flag("-da1", "-data1", TEXT)
                  .Flag("-da2", "-data2", TEXT)
                  .Flag("-da3", "-data3", TEXT)
                  .Flag("-d", "-default", SWITCH)
                  .Flag("-stp", "-sourceType", TEXT)
                  .Objects(1, 1),
              NameCommand);
    table.Add("hotkey",
              mel::SyntaxBuilder()
                  .Flag("-k", "-keyShortcut", TEXT)
                  .QueryWithArguments()
                  .Flag("-n", "-name", TEXT)
                  .Flag("-rn", "-releaseName", TEXT)
                  .Flag("-ctl", "-ctrlModifier")
                  .Flag("-alt", "-altModifier")
                  .Flag("-sht", "-shiftModifier")
                  .Flag("-cmd", "-commandModifier")
                  .Flag("-pcr", "-pressCommandRepeat", SWITCH)
                  .Flag("-rcr", "-releaseCommandRepeat", SWITCH)
                  .Flag("-dp", "-dragPress", SWITCH)
                  .Flag("-as", "-autoSave", SWITCH)
                  .Query(),
              HotkeyCommand);
}

} // namespace lightbox
