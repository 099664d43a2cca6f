#include "mel/CommandRegistry.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "mel/Registration.h"
#include "mel/Runtime.h"
#include "mel/SourceText.h"
#include "mel/SyntaxBuilder.h"
#include "mel/SyntaxTable.h"
#include "scene/Host.h"
#include "scene/IdleQueue.h"
#include "scene/Output.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lightbox::mel {

namespace {

Value Print(CommandCall& call) {
    std::string text;
    for (const Value& value : call.Objects()) {
        text += value.Printed();
    }
    call.GetHost().output().Print(text);
    return Value();
}

/// The message of error and warning. Their flags change only how Maya shows the place.
std::string Message(CommandCall& call) {
    std::vector<Value> rest;
    const std::vector<Value>& arguments = call.Objects();
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string text = arguments[i].IsString() ? arguments[i].Text() : std::string();
        const bool isLast = i + 1 == arguments.size();
        if (!isLast && (text == "-n" || text == "-noContext")) {
            continue;
        }
        if (!isLast && (text == "-sl" || text == "-showLineNumber")) {
            ++i;
            continue;
        }
        rest.push_back(arguments[i]);
    }
    if (rest.size() != 1) {
        call.Fail("Wrong number of arguments on call to " + call.Name() + ".");
    }
    return rest.front().AsString();
}

std::string JoinedArguments(CommandCall& call) {
    std::string text;
    for (const Value& value : call.Objects()) {
        text += text.empty() ? "" : " ";
        text += value.AsString();
    }
    return text;
}

Value Evaluate(CommandCall& call) {
    return call.GetInterpreter().Execute(JoinedArguments(call));
}

Value EvaluateEcho(CommandCall& call) {
    const std::string text = JoinedArguments(call);
    Output& output = call.GetHost().output();
    output.Print(text + "\n");
    Value result = call.GetInterpreter().Execute(text);
    if (!result.IsNone()) {
        output.Result(result.Shown());
    }
    return result;
}

Value EvaluateDeferred(CommandCall& call) {
    std::string text;
    for (const std::string& part : call.ObjectNames()) {
        text += text.empty() ? part : " " + part;
    }
    Interpreter& interpreter = call.GetInterpreter();
    call.GetHost().idle().Add([&interpreter, text] { interpreter.ExecuteReporting(text); },
                              call.Has("-lowestPriority"));
    return Value();
}

bool IsVariable(const std::string& name) {
    return name.size() > 1 && name[0] == '$';
}

Value WhatIs(CommandCall& call) {
    const std::string name = call.Object(0).AsString();
    Interpreter& interpreter = call.GetInterpreter();
    Runtime& runtime = interpreter.GetRuntime();
    if (IsVariable(name)) {
        const GlobalVariable* const variable = runtime.Globals().Find(name.substr(1));
        return variable ? std::string(TypeName(variable->type)) + " variable" : "Unknown";
    }
    if (const ProcedureEntry* const entry = runtime.FindGlobalProcedure(name)) {
        const std::string& file = entry->procedure->source->Name();
        return file.empty() ? "Mel procedure entered interactively." : "Mel procedure found in: " + file;
    }
    if (const auto command = interpreter.Commands().Find(name)) {
        return command->IsPlugin() ? "Plug-in Command" : "Command";
    }
    const std::string script = interpreter.FindScript(name + ".mel");
    return script.empty() ? "Unknown" : "Script found in: " + script;
}

Value Exists(CommandCall& call) {
    const std::string name = call.Object(0).AsString();
    Interpreter& interpreter = call.GetInterpreter();
    return interpreter.HasProcedure(name) || interpreter.Commands().Find(name) ||
           !interpreter.FindScript(name + ".mel").empty();
}

const char* ArgumentName(MSyntax::MArgType type) {
    static constexpr std::pair<MSyntax::MArgType, const char*> names[] = {
        {MSyntax::kBoolean, " on|off"},
        {MSyntax::kLong, " Int"},
        {MSyntax::kUnsigned, " UnsignedInt"},
        {MSyntax::kDouble, " Float"},
        {MSyntax::kDistance, " Length"},
        {MSyntax::kAngle, " Angle"},
        {MSyntax::kTime, " Time"},
        {MSyntax::kSelectionItem, " Name"}};
    const auto* const found = std::find_if(std::begin(names), std::end(names),
                                           [type](const auto& row) { return row.first == type; });
    return found == std::end(names) ? " String" : found->second;
}

/// One line per flag, with the short names in a column.
std::string FlagLine(const std::string& shortName, const std::string& longName, const std::string& rest) {
    constexpr std::size_t shortColumn = 6;
    constexpr std::size_t longColumn = 24;
    std::string line(shortColumn - std::min(shortColumn, shortName.size() + 1), ' ');
    line += "-" + shortName + " -" + longName;
    if (!rest.empty() && line.size() < longColumn) {
        line.append(longColumn - line.size(), ' ');
    }
    return line + rest + "\n";
}

std::string Synopsis(const CommandRegistry::Command& command) {
    const SyntaxTable& syntax = SyntaxTable::Of(command.syntax);
    std::string text = "\nSynopsis: " + command.name;
    text += syntax.flags.empty() && !syntax.canQuery && !syntax.canEdit ? "" : " [flags]";
    for (const MSyntax::MArgType type : syntax.arguments) {
        text += ArgumentName(type);
    }
    if (command.raw || syntax.objectFormat != MSyntax::kNone) {
        text += " [String...]";
    }
    text += "\n";
    if (syntax.flags.empty() && !syntax.canQuery && !syntax.canEdit) {
        return text;
    }
    text += "Flags:\n";
    text += syntax.canEdit ? FlagLine("e", "edit", "") : "";
    text += syntax.canQuery ? FlagLine("q", "query", "") : "";
    for (const SyntaxTable::Flag& flag : syntax.flags) {
        std::string rest;
        for (const MSyntax::MArgType type : flag.arguments) {
            rest += ArgumentName(type);
        }
        rest += flag.isMultiUse ? " (multi-use)" : "";
        text += FlagLine(flag.shortName, flag.longName, rest);
    }
    return text;
}

Value Help(CommandCall& call) {
    const Interpreter& interpreter = call.GetInterpreter();
    if (call.Has("-list")) {
        return interpreter.Commands().Names();
    }
    const std::string name = call.Object(0).AsString();
    const auto command = interpreter.Commands().Find(name);
    if (!command) {
        call.Fail("There is no command \"" + name + "\".");
    }
    const std::string text = Synopsis(*command);
    call.GetHost().output().Print(text);
    return text;
}

} // namespace

void RegisterEvaluationCommands(CommandRegistry& registry) {
    constexpr unsigned any = ~0u;
    registry.RegisterRaw("print", 1, any, Print);
    registry.RegisterRaw("error", 1, any, [](CommandCall& call) -> Value { throw Error(Message(call)); });
    registry.RegisterRaw("warning", 1, any, [](CommandCall& call) {
        call.Warn(Message(call));
        return Value();
    });
    registry.RegisterRaw("eval", 1, any, Evaluate);
    registry.RegisterRaw("evalEcho", 1, any, EvaluateEcho);
    registry.Register("evalDeferred",
                      SyntaxBuilder()
                          .Flag("-lp", "-lowestPriority")
                          .Flag("-lpr", "-lowPriority")
                          .Flag("-en", "-evaluateNext")
                          .Objects(1),
                      EvaluateDeferred);
    registry.RegisterRaw("source", 1, 1, [](CommandCall& call) {
        return call.GetInterpreter().Source(call.Object(0).AsString());
    });
    registry.RegisterRaw("whatIs", 1, 1, WhatIs);
    registry.RegisterRaw("exists", 1, 1, Exists);
    registry.Register("help", SyntaxBuilder().Flag("-l", "-list").Objects(0, 1), Help);
    registry.Register("commandEcho", SyntaxBuilder().Flag("-st", "-state", MSyntax::kBoolean).Query(),
                      [](CommandCall& call) {
                          Runtime& runtime = call.GetInterpreter().GetRuntime();
                          if (call.IsQuery()) {
                              return Value(runtime.EchoesStatements());
                          }
                          runtime.EchoStatements(call.Has("-state") && call.Bool("-state"));
                          return Value();
                      });
}

} // namespace lightbox::mel
