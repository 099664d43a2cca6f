#include "mel/OpenFiles.h"

#include "mel/Error.h"
#include "mel/Operations.h"

namespace lightbox::mel {

namespace {

QIODevice::OpenMode OpenModeOf(const std::string& mode) {
    const bool isUpdate = mode.find('+') != std::string::npos;
    switch (mode.empty() ? 'r' : mode[0]) {
    case 'r':
        return isUpdate ? QIODevice::ReadWrite | QIODevice::ExistingOnly
                        : QIODevice::OpenMode(QIODevice::ReadOnly);
    case 'w':
        return (isUpdate ? QIODevice::ReadWrite : QIODevice::WriteOnly) | QIODevice::Truncate;
    case 'a':
        return (isUpdate ? QIODevice::ReadWrite : QIODevice::WriteOnly) | QIODevice::Append;
    default:
        throw Error("The mode \"" + mode + "\" is none of r, w, a, r+, w+, a+.");
    }
}

} // namespace

int OpenFiles::Open(const std::string& path, const std::string& mode) {
    auto file = std::make_unique<QFile>(QString::fromStdString(path));
    if (!file->open(OpenModeOf(mode))) {
        return 0;
    }
    files_[next_] = std::move(file);
    return next_++;
}

QFile* OpenFiles::Find(int id) const {
    const auto found = files_.find(id);
    return found == files_.end() ? nullptr : found->second.get();
}

bool OpenFiles::Close(int id) {
    const bool isWritten = Get(id).flush();
    files_.erase(id);
    return isWritten;
}

QFile& OpenFiles::Get(int id) const {
    QFile* const file = Find(id);
    if (!file) {
        throw Error("The file number " + std::to_string(id) + " is not an open file.");
    }
    return *file;
}

std::string OpenFiles::ReadLine(int id) {
    return Get(id).readLine().toStdString();
}

std::string OpenFiles::ReadWord(int id, const std::string& separators) {
    QFile& file = Get(id);
    std::string word;
    char letter = '\0';
    while (file.getChar(&letter)) {
        if (separators.find(letter) == std::string::npos) {
            word += letter;
            CheckTextLength(word.size());
        } else if (!word.empty()) {
            break;
        }
    }
    return word;
}

} // namespace lightbox::mel
