#include "shell/ThemeCommand.h"

#include "controls/Theme.h"
#include "controls/WindowCommandTable.h"
#include "mel/CommandCall.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Host.h"
#include "scene/OptionVars.h"
#include "shell/Registration.h"

#include <QApplication>

namespace lightbox {

namespace {

const char* const THEME_VARIABLE = "lightboxTheme";
const char* const DARK_THEME = "dark";
const char* const LIGHT_THEME = "light";

mel::Value ThemeCommand(mel::CommandCall& call, ControlRegistry&) {
    if (call.IsQuery()) {
        return std::string(Theme::Current() == Theme::Kind::Light ? LIGHT_THEME : DARK_THEME);
    }
    const std::string name = call.ObjectNames().empty() ? std::string() : call.ObjectNames().front();
    if (name != DARK_THEME && name != LIGHT_THEME) {
        call.Fail("There is no theme \"" + name + "\"; choose dark or light.");
    }
    call.GetHost().optionVars().Set(THEME_VARIABLE, name);
    ApplyChosenTheme(call.GetHost());
    return mel::Value();
}

} // namespace

void ApplyChosenTheme(const Host& host) {
    const OptionVars::Value* const chosen = host.optionVars().Find(THEME_VARIABLE);
    const auto* const name = chosen ? std::get_if<std::string>(chosen) : nullptr;
    Theme::Apply(*qApp, name && *name == LIGHT_THEME ? Theme::Kind::Light : Theme::Kind::Dark);
}

void RegisterThemeCommand(WindowCommandTable& table) {
    table.Add("lightboxTheme", mel::SyntaxBuilder().Query().Objects(0, 1), ThemeCommand);
}

} // namespace lightbox
