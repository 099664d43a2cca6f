#include "mel/CommandRegistry.h"
#include "mel/Registration.h"
#include "mel/SyntaxBuilder.h"
#include "mel/Workspace.h"
#include "scene/EventBus.h"
#include "scene/Host.h"

#include <QDir>
#include <QFileInfo>
#include <QString>

#include <memory>
#include <string>
#include <vector>

namespace lightbox::mel {

namespace {

/// The flags of one table of the workspace.
struct WorkspaceTableRow {
    Workspace::Table table;
    /// Sets an entry; in a query lists names and values.
    const char* set[2];
    const char* entry[2];
    const char* list[2];
    /// Null for a table whose entries cannot be removed.
    const char* remove[2];
};

constexpr WorkspaceTableRow WORKSPACE_TABLES[] = {
    {Workspace::Table::FileRule,
     {"-fr", "-fileRule"},
     {"-fre", "-fileRuleEntry"},
     {"-frl", "-fileRuleList"},
     {"-rfr", "-removeFileRuleEntry"}},
    {Workspace::Table::Variable,
     {"-v", "-variable"},
     {"-ve", "-variableEntry"},
     {"-vl", "-variableList"},
     {"-rv", "-removeVariableEntry"}},
    {Workspace::Table::RenderType,
     {"-rt", "-renderType"},
     {"-rte", "-renderTypeEntry"},
     {"-rtl", "-renderTypeList"},
     {nullptr, nullptr}},
    {Workspace::Table::ObjectType,
     {"-ot", "-objectType"},
     {"-ote", "-objectTypeEntry"},
     {"-otl", "-objectTypeList"},
     {nullptr, nullptr}},
};

std::string WithSlash(const std::string& folder) {
    return !folder.empty() && folder.back() == '/' ? folder : folder + '/';
}

void Check(const CommandCall& call, const std::string& fault) {
    if (!fault.empty()) {
        call.Fail(fault);
    }
}

/// The project that the call is about; by default the current one.
std::string NamedProject(const CommandCall& call, const Workspace& workspace) {
    return call.Objects().empty() ? workspace.Root() : call.Object(0).AsString();
}

Value ShortNamesOf(const std::vector<std::string>& folders) {
    Value::StringArray names;
    for (const std::string& folder : folders) {
        names.push_back(QFileInfo(QString::fromStdString(folder)).fileName().toStdString());
    }
    return names;
}

/// Answers what may be asked with and without -query. Returns false when the call asks for nothing of it.
bool AnswerAlways(const CommandCall& call, Workspace& workspace, Value& answer) {
    for (const WorkspaceTableRow& row : WORKSPACE_TABLES) {
        const Workspace::Entries& entries = workspace.In(row.table);
        if (call.Has(row.entry[1])) {
            const auto found = entries.find(call.String(row.entry[1]));
            answer = found == entries.end() ? std::string() : found->second;
            return true;
        }
        if (call.Has(row.list[1])) {
            Value::StringArray names;
            for (const auto& entry : entries) {
                names.push_back(entry.first);
            }
            answer = names;
            return true;
        }
    }
    if (call.Has("-expandName")) {
        answer = workspace.Expanded(call.String("-expandName"));
    } else if (call.Has("-projectPath")) {
        answer = workspace.BelowRoot(call.String("-projectPath"));
    } else if (call.Has("-active") || call.Has("-list")) {
        answer = Value::StringArray{workspace.ShortName()};
    } else if (call.Has("-listWorkspaces")) {
        answer = ShortNamesOf(workspace.Known());
    } else if (call.Has("-listFullWorkspaces")) {
        answer = workspace.Known();
    } else if (call.Has("-rootDirectory")) {
        answer = WithSlash(workspace.Root());
    } else if (call.Has("-fullName")) {
        answer = workspace.Root();
    } else if (call.Has("-shortName")) {
        answer = workspace.ShortName();
    } else {
        return false;
    }
    return true;
}

Value QueryWorkspace(const CommandCall& call, Workspace& workspace) {
    for (const WorkspaceTableRow& row : WORKSPACE_TABLES) {
        if (call.Has(row.set[1])) {
            Value::StringArray pairs;
            for (const auto& [name, value] : workspace.In(row.table)) {
                pairs.push_back(name);
                pairs.push_back(value);
            }
            return pairs;
        }
    }
    if (call.Has("-openWorkspace") || call.Has("-baseWorkspace")) {
        return workspace.ShortName();
    }
    return WithSlash(QDir::currentPath().toStdString());
}

/// Sets and removes entries. Returns whether the call had any of that.
bool ChangeEntries(const CommandCall& call, Workspace& workspace) {
    bool changed = false;
    for (const WorkspaceTableRow& row : WORKSPACE_TABLES) {
        Workspace::Entries& entries = workspace.In(row.table);
        for (unsigned use = 0; use < call.UseCount(row.set[1]); ++use) {
            entries[call.String(row.set[1], 0, use)] = call.String(row.set[1], 1, use);
            changed = true;
        }
        if (row.remove[1] && call.Has(row.remove[1])) {
            entries.erase(call.String(row.remove[1]));
            changed = true;
        }
    }
    return changed;
}

Value EditWorkspace(const CommandCall& call, Workspace& workspace) {
    const std::string root = workspace.Root();
    bool hasFlag = true;
    if (call.Has("-newWorkspace")) {
        Check(call, workspace.Create(call.Object(0).AsString(), call.StringOr("-baseWorkspace", "")));
    } else if (call.Has("-openWorkspace")) {
        Check(call, workspace.Open(NamedProject(call, workspace)));
    } else if (call.Has("-update") || call.Has("-updateAll")) {
        Check(call, workspace.Update());
    } else {
        hasFlag = false;
    }
    if (call.Has("-create")) {
        const std::string& folder = call.String("-create");
        if (!QDir().mkpath(QString::fromStdString(workspace.Expanded(folder)))) {
            call.Fail("The folder \"" + folder + "\" cannot be made.");
        }
        hasFlag = true;
    }
    if (call.Has("-directory")) {
        const std::string& folder = call.String("-directory");
        if (!QDir::setCurrent(QString::fromStdString(workspace.Expanded(folder)))) {
            call.Fail("Cannot open the folder \"" + folder + "\".");
        }
        hasFlag = true;
    }
    hasFlag = ChangeEntries(call, workspace) || hasFlag;
    if (call.Has("-saveWorkspace")) {
        Check(call, workspace.Save());
        hasFlag = true;
    }
    if (!hasFlag) {
        call.Fail("One of the flags of \"workspace\" is missing.");
    }
    if (workspace.Root() != root) {
        call.GetHost().events().Fire("workspaceChanged");
    }
    return Value();
}

Value WorkspaceCommand(CommandCall& call, Workspace& workspace) {
    Value answer;
    if (AnswerAlways(call, workspace, answer)) {
        return answer;
    }
    return call.IsQuery() ? QueryWorkspace(call, workspace) : EditWorkspace(call, workspace);
}

} // namespace

void RegisterWorkspaceCommand(CommandRegistry& registry) {
    SyntaxBuilder syntax;
    for (const WorkspaceTableRow& row : WORKSPACE_TABLES) {
        syntax.Flag(row.set[0], row.set[1], TEXT, TEXT).MultiUse();
        syntax.Flag(row.entry[0], row.entry[1], TEXT).QueryWithArguments();
        syntax.Flag(row.list[0], row.list[1]);
        if (row.remove[0]) {
            syntax.Flag(row.remove[0], row.remove[1], TEXT);
        }
    }
    registry.Register("workspace",
                      syntax.Flag("-o", "-openWorkspace")
                          .Flag("-n", "-newWorkspace")
                          .Flag("-bw", "-baseWorkspace", TEXT)
                          .Flag("-s", "-saveWorkspace")
                          .Flag("-u", "-update")
                          .Flag("-ua", "-updateAll")
                          .Flag("-cr", "-create", TEXT)
                          .Flag("-dir", "-directory", TEXT)
                          .Flag("-en", "-expandName", TEXT)
                          .QueryWithArguments()
                          .Flag("-pp", "-projectPath", TEXT)
                          .QueryWithArguments()
                          .Flag("-rd", "-rootDirectory")
                          .Flag("-fn", "-fullName")
                          .Flag("-sn", "-shortName")
                          .Flag("-act", "-active")
                          .Flag("-l", "-list")
                          .Flag("-lw", "-listWorkspaces")
                          .Flag("-lfw", "-listFullWorkspaces")
                          .Flag("-f", "-filter")
                          .Query()
                          .Objects(0, 1),
                      [workspace = std::make_shared<Workspace>()](CommandCall& call) {
                          return WorkspaceCommand(call, *workspace);
                      });
}

} // namespace lightbox::mel
