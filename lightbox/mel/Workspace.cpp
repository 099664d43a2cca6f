#include "mel/Workspace.h"

#include "scene/WholeFile.h"
#include "text/Quoted.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <iterator>

namespace lightbox::mel {

namespace {

/// The flags that set the entries of the tables, in the order of Workspace::Table.
constexpr const char* TABLE_FLAGS[][2] = {
    {"-fr", "-fileRule"}, {"-v", "-variable"}, {"-rt", "-renderType"}, {"-ot", "-objectType"}};

const char* const HEADER = "//Maya 2018 Project Definition";

QString DefinitionFile(const std::string& folder) {
    return QDir(QString::fromStdString(folder)).filePath(QStringLiteral("workspace.mel"));
}

/// The text between the quotes of a MEL string literal.
std::string Unescaped(const QString& literal) {
    QString text;
    for (int i = 0; i < literal.size(); ++i) {
        QChar letter = literal.at(i);
        if (letter == QLatin1Char('\\') && i + 1 < literal.size()) {
            letter = literal.at(++i);
            letter = letter == QLatin1Char('n')   ? QLatin1Char('\n')
                     : letter == QLatin1Char('t') ? QLatin1Char('\t')
                     : letter == QLatin1Char('r') ? QLatin1Char('\r')
                                                  : letter;
        }
        text += letter;
    }
    return text.toStdString();
}

} // namespace

std::string Workspace::Root() const {
    return root_.empty() ? QDir::currentPath().toStdString() : root_;
}

std::string Workspace::ShortName() const {
    return QFileInfo(QString::fromStdString(Root())).fileName().toStdString();
}

std::string Workspace::Expanded(const std::string& path) const {
    const QDir root(QString::fromStdString(Root()));
    return QDir::cleanPath(root.absoluteFilePath(QString::fromStdString(path))).toStdString();
}

std::string Workspace::BelowRoot(const std::string& path) const {
    const QDir root(QString::fromStdString(Root()));
    const QString relative = root.relativeFilePath(QString::fromStdString(Expanded(path)));
    return relative.startsWith(QLatin1String("..")) ? path : relative.toStdString();
}

/// Reads the file without running it: a project may come from elsewhere.
std::optional<Workspace::Content> Workspace::Read(const std::string& folder, std::string& fault) {
    Content content;
    QFile file(DefinitionFile(folder));
    if (!file.exists()) {
        return content;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        fault =
            "Could not read \"" + file.fileName().toStdString() + "\": " + file.errorString().toStdString();
        return std::nullopt;
    }
    static const QRegularExpression rule(
        QStringLiteral("^\\s*workspace\\s+-(\\w+)\\s+\"((?:[^\"\\\\]|\\\\.)*)\"\\s+\"((?:[^\"\\\\]|\\\\.)*)\""
                       "\\s*;\\s*$"));
    for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        const QRegularExpressionMatch match = rule.match(line);
        const std::string flag = "-" + match.captured(1).toStdString();
        const auto* const table =
            std::find_if(std::begin(TABLE_FLAGS), std::end(TABLE_FLAGS),
                         [&flag](const auto& names) { return flag == names[0] || flag == names[1]; });
        if (match.hasMatch() && table != std::end(TABLE_FLAGS)) {
            content.tables[static_cast<std::size_t>(table - TABLE_FLAGS)][Unescaped(match.captured(2))] =
                Unescaped(match.captured(3));
        } else if (!line.trimmed().isEmpty() && !line.startsWith(QLatin1String(HEADER))) {
            content.rest += line.toStdString() + "\n";
        }
    }
    return content;
}

void Workspace::Adopt(const std::string& folder, const Content& content) {
    root_ = folder;
    tables_ = content.tables;
    rest_ = content.rest;
    const auto place = std::lower_bound(known_.begin(), known_.end(), folder);
    if (place == known_.end() || *place != folder) {
        known_.insert(place, folder);
    }
}

std::string Workspace::Open(const std::string& folder) {
    const QFileInfo info(QString::fromStdString(Expanded(folder)));
    const std::string path = info.filePath().toStdString();
    std::string fault;
    const auto content = info.isDir() ? Read(path, fault) : std::nullopt;
    if (!content || !QDir::setCurrent(info.filePath())) {
        return fault.empty() ? "Cannot open the folder \"" + folder + "\"." : fault;
    }
    Adopt(path, *content);
    return std::string();
}

std::string Workspace::Create(const std::string& folder, const std::string& base) {
    std::string fault;
    const std::string from = base.empty() ? std::string() : Expanded(base);
    if (!from.empty() && !QFileInfo(QString::fromStdString(from)).isDir()) {
        return "Cannot open the folder \"" + base + "\".";
    }
    const auto content = from.empty() ? Content() : Read(from, fault);
    if (!content) {
        return fault;
    }
    const std::string path = Expanded(folder);
    const QString name = QString::fromStdString(path);
    if (QFileInfo::exists(DefinitionFile(path))) {
        return "\"" + folder + "\" is a project already; -openWorkspace opens it.";
    }
    if (!QDir().mkpath(name) || !QDir::setCurrent(name)) {
        return "The folder \"" + folder + "\" cannot be made.";
    }
    Adopt(path, *content);
    return std::string();
}

std::string Workspace::Update() {
    std::string fault;
    const auto content = Read(Root(), fault);
    if (content) {
        tables_ = content->tables;
        rest_ = content->rest;
    }
    return fault;
}

std::string Workspace::Save() const {
    std::string text = std::string(HEADER) + "\n\n" + rest_;
    for (std::size_t i = 0; i < tables_.size(); ++i) {
        for (const auto& [name, value] : tables_[i]) {
            text += std::string("workspace ") + TABLE_FLAGS[i][0] + " " + Quoted(name) + " " + Quoted(value) +
                    ";\n";
        }
    }
    const std::string path = DefinitionFile(Root()).toStdString();
    const std::string fault = WholeFile::Write(path, text);
    return fault.empty() ? fault : "Could not write \"" + path + "\": " + fault;
}

} // namespace lightbox::mel
