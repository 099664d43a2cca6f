#include "mel/Interpreter.h"

#include "mel/Runtime.h"
#include "mel/ScriptJobs.h"
#include "mel/SourceText.h"
#include "mel/StatementChunk.h"
#include "mel/TextRun.h"
#include "scene/Host.h"
#include "scene/Output.h"

#include <QDir>
#include <QFileInfo>

#include <cstdlib>

namespace lightbox::mel {

namespace {

/// Variables that scripts expect to exist; the controls that they name are made with the window.
constexpr const char* EXPECTED_VARIABLES[] = {"gMainWindow",      "gMainPane",      "gPlayBackSlider",
                                              "gMainProgressBar", "gShelfTopLevel", "gToolBox"};

std::string ExistingFile(const QString& path) {
    return QFileInfo(path).isFile() ? QFileInfo(path).absoluteFilePath().toStdString() : std::string();
}

} // namespace

Interpreter::Interpreter(Host& host)
    : host_(host)
    , runtime_(std::make_unique<Runtime>(*this))
    , jobs_(std::make_unique<ScriptJobs>(host)) {
    RegisterLanguageCommands(commands_);
    for (const char* const name : EXPECTED_VARIABLES) {
        SetGlobal(name, "");
    }
}

Interpreter::~Interpreter() = default;

Value Interpreter::Execute(std::string text, const std::string& name, const RunOptions& options) {
    const Runtime::Entry entry(*runtime_);
    return TextRun(*this, options, entry.IsOutermost()).Run(std::move(text), name);
}

void Interpreter::ExecuteReporting(const std::string& text) {
    try {
        Execute(text);
    } catch (const Error& error) {
        Report(error);
    }
}

Value Interpreter::ExecuteFile(const std::string& path, const RunOptions& options) {
    return Execute(SourceText::ReadFile(path), path, options);
}

Value Interpreter::Source(const std::string& name) {
    const std::string path = FindScript(name);
    if (path.empty()) {
        throw Error("Cannot find file \"" + name + "\" for source statement.");
    }
    const Runtime::Entry entry(*runtime_);
    const bool areOutermost = runtime_->IsWholeStatement();
    const StatementChunk::Break chunkBreak(host_.undo(), areOutermost);
    return TextRun(*this, RunOptions(), areOutermost).Run(SourceText::ReadFile(path), path);
}

std::string Interpreter::FindScript(const std::string& name) const {
    const QString wanted = QString::fromStdString(name);
    if (QDir::isAbsolutePath(wanted)) {
        const std::string path = ExistingFile(wanted);
        return path.empty() ? ExistingFile(wanted + QStringLiteral(".mel")) : path;
    }
    QStringList folders{QString(),
                        QString::fromStdString(host_.options().prefsFolder) + QStringLiteral("/scripts")};
    if (const char* const list = std::getenv("MAYA_SCRIPT_PATH")) {
        folders += QString::fromUtf8(list).split(QDir::listSeparator(), Qt::SkipEmptyParts);
    }
    for (const QString& folder : folders) {
        const QString path = folder.isEmpty() ? wanted : folder + QLatin1Char('/') + wanted;
        for (const QString& candidate : {path, path + QStringLiteral(".mel")}) {
            std::string found = ExistingFile(candidate);
            if (!found.empty()) {
                return found;
            }
        }
    }
    return std::string();
}

Value Interpreter::Call(const std::string& name, const std::vector<Value>& arguments) {
    const Runtime::Entry entry(*runtime_);
    const Callee callee = runtime_->Find(name, nullptr);
    if (!callee) {
        throw Error("Cannot find procedure \"" + name + "\".");
    }
    CallArguments call;
    call.values = arguments;
    const StatementChunk chunk(host_.undo(), entry.IsOutermost());
    return runtime_->Call(callee, name, call).Detached();
}

bool Interpreter::HasGlobal(const std::string& name) const {
    return runtime_->Globals().Find(name) != nullptr;
}

Value Interpreter::GetGlobal(const std::string& name) const {
    const GlobalVariable* const variable = runtime_->Globals().Find(name);
    return variable ? variable->value.Detached() : Value();
}

void Interpreter::SetGlobal(const std::string& name, const Value& value) {
    GlobalVariable* variable = runtime_->Globals().Find(name);
    if (!variable) {
        variable = &runtime_->Globals().Add(name, value.GetType());
    }
    if (variable->type == Type::Any) {
        variable->type = value.GetType();
    }
    variable->value = value.ConvertedTo(variable->type).Detached();
    variable->isInitialised = true;
}

bool Interpreter::HasProcedure(const std::string& name) const {
    const ProcedureEntry* const entry = runtime_->FindGlobalProcedure(name);
    return entry && entry->procedure;
}

void Interpreter::Report(const Error& error) {
    if (!error.WasShown()) {
        host_.output().Error(error.Described());
    } else if (!error.File().empty()) {
        host_.output().Info("The script " + error.File() + " stopped at line " +
                            std::to_string(error.Line()) + ".");
    }
}

bool Interpreter::IsRunning() const {
    return runtime_->IsRunning();
}

void Interpreter::Interrupt() {
    runtime_->Interrupt();
}

} // namespace lightbox::mel
