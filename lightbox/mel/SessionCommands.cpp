#include "mel/CommandRegistry.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "mel/Registration.h"
#include "mel/ScriptJobs.h"
#include "mel/SyntaxBuilder.h"
#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/OptionVars.h"

#include <algorithm>

namespace lightbox::mel {

namespace {

/// The job described by the flags of scriptJob.
ScriptJobs::Job NewJob(CommandCall& call) {
    struct TriggerRow {
        const char* flag;
        ScriptJobs::Trigger trigger;
    };
    constexpr TriggerRow rows[] = {
        {"-event", ScriptJobs::Trigger::Event},
        {"-conditionTrue", ScriptJobs::Trigger::ConditionTrue},
        {"-conditionFalse", ScriptJobs::Trigger::ConditionFalse},
        {"-conditionChange", ScriptJobs::Trigger::ConditionChange},
    };
    ScriptJobs::Job job;
    job.runOnce = call.Has("-runOnce") && call.Bool("-runOnce");
    job.isProtected = call.Has("-protected");
    job.killWithScene = call.Has("-killWithScene");
    job.parent = call.StringOr("-parent", "");
    for (const TriggerRow& row : rows) {
        if (call.Has(row.flag)) {
            job.trigger = row.trigger;
            job.subject = call.String(row.flag, 0);
            job.script = call.String(row.flag, 1);
            return job;
        }
    }
    if (!call.Has("-idleEvent")) {
        call.Fail("No event or condition is given for the script job.");
    }
    job.trigger = ScriptJobs::Trigger::Idle;
    job.script = call.String("-idleEvent");
    return job;
}

Value ScriptJob(CommandCall& call) {
    ScriptJobs& jobs = call.GetInterpreter().Jobs();
    const bool force = call.Has("-force");
    if (call.Has("-kill")) {
        for (unsigned use = 0; use < call.UseCount("-kill"); ++use) {
            const int id = call.Int("-kill", 0, use);
            if (!jobs.Kill(id, force) && jobs.Exists(id)) {
                call.Warn("The script job " + std::to_string(id) + " is protected: -force kills it.");
            }
        }
        return Value();
    }
    if (call.Has("-killAll")) {
        jobs.KillAll(force);
        return Value();
    }
    if (call.Has("-exists")) {
        return jobs.Exists(call.Int("-exists"));
    }
    if (call.Has("-listJobs")) {
        return jobs.Listed();
    }
    if (call.Has("-listEvents")) {
        return call.GetHost().events().EventNames();
    }
    if (call.Has("-listConditions")) {
        return call.GetHost().events().ConditionNames();
    }
    const ScriptJobs::Job job = NewJob(call);
    if (call.Has("-replacePrevious")) {
        jobs.KillWithParent(job.parent);
    }
    const int id = jobs.Add(job);
    if (id == 0) {
        call.Fail("There is no event or condition \"" + job.subject + "\".");
    }
    return id;
}

void RegisterScriptJob(CommandRegistry& registry) {
    registry.Register("scriptJob",
                      SyntaxBuilder()
                          .Flag("-e", "-event", MSyntax::kString, MSyntax::kString)
                          .Flag("-ie", "-idleEvent", MSyntax::kString)
                          .Flag("-ct", "-conditionTrue", MSyntax::kString, MSyntax::kString)
                          .Flag("-cf", "-conditionFalse", MSyntax::kString, MSyntax::kString)
                          .Flag("-cc", "-conditionChange", MSyntax::kString, MSyntax::kString)
                          .Flag("-ro", "-runOnce", MSyntax::kBoolean)
                          .Flag("-p", "-parent", MSyntax::kString)
                          .Flag("-rp", "-replacePrevious")
                          .Flag("-pro", "-protected")
                          .Flag("-kws", "-killWithScene")
                          .Flag("-cu", "-compressUndo", MSyntax::kBoolean)
                          .Flag("-k", "-kill", MSyntax::kLong)
                          .MultiUse()
                          .Flag("-ka", "-killAll")
                          .Flag("-f", "-force")
                          .Flag("-ex", "-exists", MSyntax::kLong)
                          .Flag("-lj", "-listJobs")
                          .Flag("-le", "-listEvents")
                          .Flag("-lc", "-listConditions"),
                      ScriptJob);
    registry.RegisterRaw("isTrue", 1, 1, [](CommandCall& call) {
        return Value(call.GetHost().events().Condition(call.Object(0).AsString()));
    });
}

Value Stored(const OptionVars::Value* value) {
    // A variable that does not exist reads as 0.
    return value ? std::visit([](const auto& held) { return Value(held); }, *value) : Value(0);
}

/// Appends to an array variable; replaces a variable of another type.
template <class T>
void AppendTo(OptionVars& variables, const std::string& name, const T& element) {
    const OptionVars::Value* const value = variables.Find(name);
    std::vector<T> elements;
    if (value && std::holds_alternative<std::vector<T>>(*value)) {
        elements = std::get<std::vector<T>>(*value);
    } else if (value && std::holds_alternative<T>(*value)) {
        elements.push_back(std::get<T>(*value));
    }
    elements.push_back(element);
    variables.Set(name, std::move(elements));
}

void RemoveElement(OptionVars& variables, const std::string& name, int index) {
    const OptionVars::Value* const value = variables.Find(name);
    if (!value) {
        return;
    }
    OptionVars::Value changed = *value;
    std::visit(
        [index](auto& held) {
            if constexpr (!std::is_arithmetic_v<std::decay_t<decltype(held)>> &&
                          !std::is_same_v<std::decay_t<decltype(held)>, std::string>) {
                if (index >= 0 && static_cast<std::size_t>(index) < held.size()) {
                    held.erase(held.begin() + index);
                }
            }
        },
        changed);
    variables.Set(name, std::move(changed));
}

void ClearElements(OptionVars& variables, const std::string& name) {
    const OptionVars::Value* const value = variables.Find(name);
    if (value && std::holds_alternative<std::vector<double>>(*value)) {
        variables.Set(name, std::vector<double>());
    } else if (value && std::holds_alternative<std::vector<std::string>>(*value)) {
        variables.Set(name, std::vector<std::string>());
    } else {
        variables.Set(name, std::vector<int>());
    }
}

void SetVariables(CommandCall& call, OptionVars& variables) {
    const auto each = [&call](const char* flag, const auto& action) {
        for (unsigned use = 0; use < call.UseCount(flag); ++use) {
            action(call.String(flag, 0, use), use);
        }
    };
    each("-intValue",
         [&](const std::string& name, unsigned use) { variables.Set(name, call.Int("-intValue", 1, use)); });
    each("-floatValue", [&](const std::string& name, unsigned use) {
        variables.Set(name, call.Float("-floatValue", 1, use));
    });
    each("-stringValue", [&](const std::string& name, unsigned use) {
        variables.Set(name, call.String("-stringValue", 1, use));
    });
    each("-intValueAppend", [&](const std::string& name, unsigned use) {
        AppendTo(variables, name, call.Int("-intValueAppend", 1, use));
    });
    each("-floatValueAppend", [&](const std::string& name, unsigned use) {
        AppendTo(variables, name, call.Float("-floatValueAppend", 1, use));
    });
    each("-stringValueAppend", [&](const std::string& name, unsigned use) {
        AppendTo(variables, name, call.String("-stringValueAppend", 1, use));
    });
    each("-remove", [&](const std::string& name, unsigned) { variables.Remove(name); });
    each("-clearArray", [&](const std::string& name, unsigned) { ClearElements(variables, name); });
    each("-removeFromArray", [&](const std::string& name, unsigned use) {
        RemoveElement(variables, name, call.Int("-removeFromArray", 1, use));
    });
}

Value OptionVariable(CommandCall& call) {
    OptionVars& variables = call.GetHost().optionVars();
    if (call.Has("-query")) {
        return Stored(variables.Find(call.String("-query")));
    }
    if (call.Has("-exists")) {
        return variables.Has(call.String("-exists"));
    }
    if (call.Has("-arraySize")) {
        return static_cast<int>(Stored(variables.Find(call.String("-arraySize"))).Size());
    }
    if (call.Has("-list")) {
        return variables.Names();
    }
    SetVariables(call, variables);
    return Value();
}

void RegisterOptionVariable(CommandRegistry& registry) {
    constexpr auto text = MSyntax::kString;
    registry.Register("optionVar",
                      SyntaxBuilder()
                          .Flag("-q", "-query", text)
                          .Flag("-ex", "-exists", text)
                          .Flag("-as", "-arraySize", text)
                          .Flag("-l", "-list")
                          .Flag("-iv", "-intValue", text, MSyntax::kLong)
                          .MultiUse()
                          .Flag("-fv", "-floatValue", text, MSyntax::kDouble)
                          .MultiUse()
                          .Flag("-sv", "-stringValue", text, text)
                          .MultiUse()
                          .Flag("-iva", "-intValueAppend", text, MSyntax::kLong)
                          .MultiUse()
                          .Flag("-fva", "-floatValueAppend", text, MSyntax::kDouble)
                          .MultiUse()
                          .Flag("-sva", "-stringValueAppend", text, text)
                          .MultiUse()
                          .Flag("-rm", "-remove", text)
                          .MultiUse()
                          .Flag("-ca", "-clearArray", text)
                          .MultiUse()
                          .Flag("-rfa", "-removeFromArray", text, MSyntax::kLong)
                          .MultiUse(),
                      OptionVariable);
    registry.RegisterRaw("savePrefs", 0, ~0u, [](CommandCall& call) {
        const std::string fault = call.GetHost().optionVars().Save();
        if (!fault.empty()) {
            call.Fail(fault);
        }
        return Value();
    });
}

} // namespace

void RegisterSessionCommands(CommandRegistry& registry) {
    RegisterScriptJob(registry);
    RegisterOptionVariable(registry);
}

} // namespace lightbox::mel
