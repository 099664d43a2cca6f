#include "mel/CommandRegistry.h"
#include "mel/Error.h"
#include "mel/OpenFiles.h"
#include "mel/Registration.h"
#include "mel/SyntaxBuilder.h"
#include "scene/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>
#include <vector>

namespace lightbox::mel {

namespace {

namespace fs = std::filesystem;

using OpenFilesPtr = std::shared_ptr<OpenFiles>;

QString Path(const std::string& text) {
    return QString::fromStdString(text);
}

QFile& OpenFile(CommandCall& call, const OpenFilesPtr& files) {
    QFile* const file = files->Find(call.Object(0).AsInt());
    if (!file) {
        call.Fail("The file number " + call.Object(0).AsString() + " is not an open file.");
    }
    return *file;
}

Value Open(CommandCall& call, const OpenFilesPtr& files) {
    const std::string mode = call.Objects().size() > 1 ? call.Object(1).AsString() : "w";
    const std::string path = call.Object(0).AsString();
    const int id = files->Open(path, mode);
    if (id == 0) {
        call.Warn("Could not open file \"" + path + "\".");
    }
    return id;
}

/// fprint(file, value): writes an array one element per line, like print.
Value PrintTo(CommandCall& call, const OpenFilesPtr& files) {
    QFile& file = OpenFile(call, files);
    const std::string text = call.Object(1).Printed();
    if (file.write(text.data(), static_cast<qint64>(text.size())) != static_cast<qint64>(text.size())) {
        call.Fail("Could not write to the file: " + file.errorString().toStdString());
    }
    return Value();
}

/// fread(file, value): the next binary value of the type of `value`.
Value ReadBinary(CommandCall& call, const OpenFilesPtr& files) {
    QFile& file = OpenFile(call, files);
    const auto number = [&file] {
        double value = 0.0;
        char bytes[sizeof value] = {};
        file.read(bytes, sizeof bytes);
        std::memcpy(&value, bytes, sizeof value);
        return value;
    };
    switch (call.Object(1).GetType()) {
    case Type::Int: {
        int value = 0;
        char bytes[sizeof value] = {};
        file.read(bytes, sizeof bytes);
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }
    case Type::Float:
        return number();
    case Type::Vector: {
        const double x = number();
        const double y = number();
        return Vector{x, y, number()};
    }
    default: {
        // A text ends at its zero byte.
        std::string text;
        char letter = '\0';
        while (file.getChar(&letter) && letter != '\0') {
            text += letter;
        }
        return text;
    }
    }
}

void RegisterOpenFiles(CommandRegistry& registry) {
    const auto files = std::make_shared<OpenFiles>();
    registry.RegisterRaw("fopen", 1, 2, [files](CommandCall& call) { return Open(call, files); });
    registry.RegisterRaw("fclose", 1, 1, [files](CommandCall& call) {
        const std::string path = OpenFile(call, files).fileName().toStdString();
        if (!files->Close(call.Object(0).AsInt())) {
            call.Fail("The end of \"" + path + "\" could not be written.");
        }
        return Value();
    });
    registry.RegisterRaw("fprint", 2, 2, [files](CommandCall& call) { return PrintTo(call, files); });
    registry.RegisterRaw("fgetline", 1, 1, [files](CommandCall& call) {
        return Value(files->ReadLine(call.Object(0).AsInt()));
    });
    registry.RegisterRaw("fgetword", 1, 2, [files](CommandCall& call) {
        const bool hasSeparators = call.Objects().size() > 1;
        return Value(
            files->ReadWord(call.Object(0).AsInt(), hasSeparators ? call.Object(1).AsString() : " \t\r\n"));
    });
    registry.RegisterRaw("fread", 2, 2, [files](CommandCall& call) { return ReadBinary(call, files); });
    registry.RegisterRaw("feof", 1, 1,
                         [files](CommandCall& call) { return Value(OpenFile(call, files).atEnd()); });
    registry.RegisterRaw("fflush", 1, 1, [files](CommandCall& call) {
        QFile& file = OpenFile(call, files);
        if (!file.flush()) {
            call.Fail("Could not write to the file: " + file.errorString().toStdString());
        }
        return Value();
    });
    registry.RegisterRaw("frewind", 1, 1, [files](CommandCall& call) {
        OpenFile(call, files).seek(0);
        return Value();
    });
}

Value FileTest(CommandCall& call) {
    const QFileInfo info(Path(call.Object(0).AsString()));
    bool result = false;
    result = result || (call.Has("-r") && info.exists() && info.isReadable());
    result = result || (call.Has("-w") && info.isWritable());
    result = result || (call.Has("-x") && info.isExecutable());
    result = result || (call.Has("-f") && info.isFile());
    result = result || (call.Has("-d") && info.isDir());
    result = result || (call.Has("-h") && info.isSymLink());
    result = result || (call.Has("-L") && info.isSymLink());
    result = result || (call.Has("-s") && info.exists() && info.size() > 0);
    return result;
}

/// Copies a file with its permissions. What was there before stays until the copy is whole.
bool Copy(const fs::path& from, const fs::path& to) {
    std::ifstream source(from, std::ios::binary);
    WholeFile copy(to.u8string());
    std::vector<char> bytes(1 << 16);
    while (source.read(bytes.data(), static_cast<std::streamsize>(bytes.size())) || source.gcount() > 0) {
        copy.Write(bytes.data(), static_cast<std::size_t>(source.gcount()));
    }
    std::error_code failure;
    const fs::perms permissions = fs::status(from, failure).permissions();
    if (!source.eof() || failure || !copy.Commit()) {
        return false;
    }
    fs::permissions(to, permissions, failure);
    return true;
}

/// Copies, moves or removes a file; 1 on success.
Value SystemFile(CommandCall& call) {
    const fs::path path = fs::u8path(call.Object(0).AsString());
    std::error_code failure;
    if (call.Has("-delete")) {
        return fs::is_regular_file(path, failure) && fs::remove(path, failure);
    }
    if (call.Has("-makeDir")) {
        fs::create_directories(path, failure);
        return !failure;
    }
    if (call.Has("-removeEmptyDir")) {
        return fs::is_directory(path, failure) && fs::remove(path, failure);
    }
    if (call.Has("-copy")) {
        return Copy(path, fs::u8path(call.String("-copy")));
    }
    if (!call.Has("-move") && !call.Has("-rename")) {
        call.Fail("One of the flags of \"sysFile\" is missing.");
    }
    fs::rename(path, fs::u8path(call.String(call.Has("-move") ? "-move" : "-rename")), failure);
    return !failure;
}

/// The names in a folder that match a pattern.
Value FileList(CommandCall& call) {
    const QString folder = Path(call.StringOr("-folder", "."));
    QStringList patterns;
    if (call.Has("-filespec")) {
        patterns << Path(call.String("-filespec"));
    }
    Value::StringArray names;
    const QDir directory(folder);
    for (const QString& name :
         directory.entryList(patterns, QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name)) {
        names.push_back(name.toStdString());
    }
    return names;
}

Value WorkingFolder(CommandCall&) {
    return QDir::currentPath().toStdString();
}

} // namespace

void RegisterDiskFileCommands(CommandRegistry& registry) {
    RegisterOpenFiles(registry);
    registry.Register("filetest",
                      SyntaxBuilder()
                          .Flag("-r", "-readable")
                          .Flag("-w", "-writable")
                          .Flag("-x", "-executable")
                          .Flag("-f", "-file")
                          .Flag("-d", "-directory")
                          .Flag("-h", "-symbolicLink")
                          .Flag("-L", "-link")
                          .Flag("-s", "-size")
                          .Objects(1, 1),
                      FileTest);
    registry.Register("sysFile",
                      SyntaxBuilder()
                          .Flag("-del", "-delete")
                          .Flag("-ren", "-rename", MSyntax::kString)
                          .Flag("-mov", "-move", MSyntax::kString)
                          .Flag("-cp", "-copy", MSyntax::kString)
                          .Flag("-md", "-makeDir")
                          .Flag("-red", "-removeEmptyDir")
                          .Objects(1, 1),
                      SystemFile);
    registry.Register(
        "getFileList",
        SyntaxBuilder().Flag("-fld", "-folder", MSyntax::kString).Flag("-fs", "-filespec", MSyntax::kString),
        FileList);
    registry.RegisterRaw("pwd", 0, 0, WorkingFolder);
    registry.RegisterRaw("chdir", 1, 1, [](CommandCall& call) {
        // 0 for success, like the system's chdir.
        return Value(QDir::setCurrent(Path(call.Object(0).AsString())) ? 0 : -1);
    });
}

} // namespace lightbox::mel
