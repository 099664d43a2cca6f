#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <string>

namespace lightbox {
class LightboxHost;
}

namespace fuzz {

/// The one host of a fuzzer, made at the first call: without a window, with the plug-in, with preferences in
/// a temporary folder of its own, which QTemporaryDir removes. It prints nothing. What MEL could do to the
/// machine or to other files is refused; with `languageOnly` every command is that is not of the language.
lightbox::LightboxHost& Host(bool languageOnly = false);

/// The temporary folder.
QString Folder();
/// Writes a file of the folder and returns its path.
std::string WriteFile(const char* name, const std::uint8_t* data, std::size_t size);

/// Interrupts MEL that runs for longer than a second, for as long as it exists.
class Limit {
public:
    Limit();
    ~Limit();
};

/// Reads the file into a new scene. Errors of the file are no faults of the reader.
void OpenScene(const char* name, const std::uint8_t* data, std::size_t size);

} // namespace fuzz
