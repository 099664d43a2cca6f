// Holds docs/commands.md against what the plug-in registers, and runs its examples.
#include "mel/CommandRegistry.h"
#include "mel/SyntaxTable.h"
#include "plugin/PluginTest.h"
#include "text/Quoted.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <map>

namespace vellix {
namespace {

using lightbox::mel::CommandRegistry;
using lightbox::mel::SyntaxTable;
using ::testing::Contains;
using ::testing::UnorderedElementsAreArray;

/// The texts between back-quotes.
QStringList Quoted(const QString& text) {
    static const QRegularExpression quotes("`([^`]*)`");
    QStringList found;
    for (auto match = quotes.globalMatch(text); match.hasNext();) {
        found.append(match.next().captured(1));
    }
    return found;
}

/// What the reference says of one command, and the command as it is registered.
struct Section {
    QString text;

    QString Synopsis() const { return Quoted(text).value(0); }
    /// The rows of the table of flags, each cell trimmed.
    QList<QStringList> FlagRows() const {
        QList<QStringList> rows;
        for (const QString& line : text.split('\n')) {
            if (line.startsWith("| `-")) {
                QStringList cells = line.split('|').mid(1);
                rows.append(cells.replaceInStrings(QRegularExpression("^ +| +$"), ""));
            }
        }
        return rows;
    }
    QStringList Blocks(const QString& language) const {
        const QRegularExpression block("```" + language + "\n(.*?)```",
                                       QRegularExpression::DotMatchesEverythingOption);
        QStringList blocks;
        for (auto match = block.globalMatch(text); match.hasNext();) {
            blocks.append(match.next().captured(1));
        }
        return blocks;
    }
};

const char* TypeName(MSyntax::MArgType type) {
    switch (type) {
    case MSyntax::kBoolean:
        return "boolean";
    case MSyntax::kLong:
        return "int";
    case MSyntax::kUnsigned:
        return "uint";
    case MSyntax::kDouble:
        return "float";
    case MSyntax::kTime:
        return "time";
    case MSyntax::kString:
        return "string";
    default:
        return "?";
    }
}

class CommandReferenceTest : public PluginTest {
protected:
    CommandReferenceTest() {
        QFile file(VELLIX_SOURCE_FOLDER "/docs/commands.md");
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        const QRegularExpression row("\n\\| \\[(\\w+)\\]\\(#(\\w+)\\) \\| \\S");
        for (auto match = row.globalMatch(text.section("\n## ", 0, 0)); match.hasNext();) {
            const auto found = match.next();
            EXPECT_EQ(found.captured(2).toStdString(), found.captured(1).toLower().toStdString());
            overview_.push_back(found.captured(1).toStdString());
        }
        for (const QString& part : text.split("\n## ").mid(1)) {
            const QString title = part.section('\n', 0, 0);
            if (title.startsWith("qm")) {
                sections_[title.toStdString()] = {part.section('\n', 1)};
            }
        }
    }

    static std::map<std::string, std::shared_ptr<const CommandRegistry::Command>> Registered() {
        std::map<std::string, std::shared_ptr<const CommandRegistry::Command>> commands;
        const CommandRegistry& registry = Host().interpreter().Commands();
        for (const std::string& name : registry.Names()) {
            const auto command = registry.Find(name);
            // The commands that make the tools have the flags of the host, which documents them.
            if (command->IsPlugin() && name != "qmVxDrawCtx" && name != "qmVxTransformCtx") {
                commands[name] = command;
            }
        }
        return commands;
    }

    std::vector<std::string> overview_; // the table that it begins with
    std::map<std::string, Section> sections_;
};

TEST_F(CommandReferenceTest, HasEveryCommandAndNoOther) {
    std::vector<std::string> documented;
    std::vector<std::string> registered;
    for (const auto& section : sections_) {
        documented.push_back(section.first);
    }
    for (const auto& command : Registered()) {
        registered.push_back(command.first);
    }
    EXPECT_EQ(documented, registered);
    EXPECT_THAT(overview_, UnorderedElementsAreArray(registered));
}

TEST_F(CommandReferenceTest, GivesEachFlagAsItIsRegistered) {
    for (const auto& command : Registered()) {
        const SyntaxTable& syntax = SyntaxTable::Of(command.second->syntax);
        const Section& section = sections_[command.first];
        const bool takesObjects = syntax.objectFormat != MSyntax::kNone;
        EXPECT_EQ(section.Synopsis().section(" [flags]", 1).isEmpty(), !takesObjects) << command.first;

        QString modes;
        QStringList documented;
        for (const QStringList& row : section.FlagRows()) {
            ASSERT_GE(row.size(), 4) << row.join('|').toStdString();
            documented.append(Quoted(row[0]).join(' ') + ": " + Quoted(row[1]).join(' '));
            EXPECT_TRUE(QRegularExpression("^(C|C Q|E Q|C E Q)$").match(row[2]).hasMatch())
                << documented.last().toStdString() << " has the mode " << row[2].toStdString();
            EXPECT_FALSE(row[3].isEmpty()) << documented.last().toStdString() << " says nothing";
            modes += row[2];
        }
        QStringList registered;
        for (const SyntaxTable::Flag& flag : syntax.flags) {
            QStringList types;
            for (const MSyntax::MArgType type : flag.arguments) {
                types.append(TypeName(type));
            }
            registered.append(QString("-%1 -%2: %3")
                                  .arg(QString::fromStdString(flag.longName),
                                       QString::fromStdString(flag.shortName), types.join(' ')));
        }
        EXPECT_EQ(documented.join('\n').toStdString(), registered.join('\n').toStdString()) << command.first;
        EXPECT_EQ(modes.contains('Q'), syntax.canQuery) << command.first;
        // Editing may be registered only to be refused.
        EXPECT_EQ(modes.contains('E') || section.text.contains("\"Invalid edit parameter\""), syntax.canEdit)
            << command.first;
    }
}

TEST_F(CommandReferenceTest, FlagsOfTheQueryModeAnswerAndNoOthers) {
    Run("qmVellixNode -layer -camera persp -layerState 0");
    for (const auto& command : Registered()) {
        if (!SyntaxTable::Of(command.second->syntax).canQuery) {
            continue;
        }
        const Section& section = sections_[command.first];
        const QString object = section.Synopsis().endsWith("camera") ? " persp" : "";
        for (const QStringList& row : section.FlagRows()) {
            const QString line = QString::fromStdString(command.first) + " -q " + Quoted(row[0])[0] + object;
            const std::string answer = Ask(line.toStdString());
            EXPECT_EQ(!answer.empty() && answer != "<failed>", row[2].contains('Q')) << line.toStdString();
        }
    }
}

/// Runs one line and holds it against what is noted behind it.
class CommandExampleTest : public CommandReferenceTest {
protected:
    void RunLine(const QString& line) {
        static const QRegularExpression note("^(.*) // (Result|Error): (.*) //$");
        const auto match = note.match(line);
        const std::string code = (match.hasMatch() ? match.captured(1) : line).toStdString();
        const std::string noted = match.captured(3).toStdString();
        const std::string answer = Ask(code);
        const std::vector<std::string> messages = Messages();
        if (match.captured(2) == "Error") {
            EXPECT_EQ(answer, "<failed>") << code;
            EXPECT_THAT(messages, Contains(noted)) << code;
        } else {
            EXPECT_THAT(messages, ::testing::IsEmpty()) << code;
            if (match.hasMatch()) {
                EXPECT_EQ(answer, noted) << code;
            }
        }
    }
};

TEST_F(CommandExampleTest, ExamplesDoWhatTheySay) {
    const QTemporaryDir folder;
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    int recordings = 0;
    for (const auto& section : sections_) {
        for (const QString& json : section.second.Blocks("json")) {
            QFile file("recording.json");
            ++recordings;
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(json.toUtf8());
        }
        const QStringList examples = section.second.Blocks("mel");
        EXPECT_FALSE(examples.isEmpty()) << section.first << " has no example";
        for (const QString& example : examples) {
            Run("file -force -new; playbackOptions -min 1 -max 24; currentTime 1; flushUndo;");
            for (const QString& line : example.split('\n', Qt::SkipEmptyParts)) {
                RunLine(line);
            }
        }
    }
    EXPECT_EQ(recordings, 1);
    QDir::setCurrent(before);
}

} // namespace
} // namespace vellix
