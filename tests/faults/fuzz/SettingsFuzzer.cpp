// The plug-in's settings file.
#include "FuzzHost.h"
#include "host/Settings.h"

#include <QFileInfo>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using vellix::Settings;
    fuzz::Host();
    static const std::string name = QFileInfo(Settings::GetUserConfigPath()).fileName().toStdString();
    static const QString folder = QFileInfo(Settings::GetUserConfigPath()).path();
    static const std::string path = (folder == fuzz::Folder() ? "" : "prefs/") + name;
    fuzz::WriteFile(path.c_str(), data, size);
    Settings::ReadUserConfig();
    Settings::WriteUserConfig();
    Settings::ReadUserConfig();
    return 0;
}
