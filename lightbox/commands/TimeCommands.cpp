#include "commands/KeyArguments.h"
#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Edit.h"
#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"
#include "text/NumberText.h"

#include <maya/MTime.h>

#include <QCoreApplication>

#include <algorithm>

namespace lightbox::mel {
namespace {

Value CurrentTime(CommandCall& call) {
    Host& host = call.GetHost();
    if (call.IsQuery() || call.Objects().empty()) {
        return host.time().CurrentTime();
    }
    const Value& given = call.Object(0);
    const double frame = KeyArguments::TimeOf(call, given);
    if (call.Has("-update") && !call.Bool("-update")) {
        edit::MoveTimeWithoutScene(host, frame);
    } else {
        edit::SetCurrentTime(host, frame);
    }
    return host.time().CurrentTime();
}

Value QueryUnit(const CommandCall& call) {
    const bool isFull = call.Has("-fullName");
    if (call.Has("-time")) {
        return UnitName(call.GetHost().time().Unit());
    }
    if (call.Has("-angle")) {
        return isFull ? "degree" : "deg";
    }
    return isFull ? "centimeter" : "cm";
}

Value CurrentUnit(CommandCall& call) {
    if (call.IsQuery()) {
        return QueryUnit(call);
    }
    const std::string linear = call.StringOr("-linear", "cm");
    if (linear != "cm" && linear != "centimeter") {
        call.Fail("Lengths are in centimeters; the unit '" + linear + "' is not supported.");
    }
    if (call.Has("-updateAnimation") && call.Bool("-updateAnimation")) {
        call.Fail("Frames keep their numbers in another time unit; -updateAnimation cannot be on.");
    }
    const std::string angle = call.StringOr("-angle", "deg");
    if (angle != "deg" && angle != "degree") {
        call.Fail("Angles are in degrees; the unit '" + angle + "' is not supported.");
    }
    if (call.Has("-time")) {
        const MTime::Unit unit = UnitFromName(call.String("-time"));
        if (unit == MTime::kInvalid) {
            call.Fail("Unknown time unit: " + call.String("-time"));
        }
        edit::SetTimeUnit(call.GetHost(), unit);
        return call.String("-time");
    }
    return linear;
}

struct LoopName {
    const char* name;
    Timeline::Loop loop;
};
constexpr LoopName LOOP_NAMES[] = {{"once", Timeline::Loop::Once},
                                   {"continuous", Timeline::Loop::Continuous},
                                   {"oscillate", Timeline::Loop::Oscillate}};

Timeline::Loop LoopNamed(const CommandCall& call, const std::string& name) {
    for (const LoopName& loop : LOOP_NAMES) {
        if (name == loop.name) {
            return loop.loop;
        }
    }
    call.Fail("-loop takes \"once\", \"continuous\" or \"oscillate\", not \"" + name + "\".");
}

Value QueryPlaybackOptions(const CommandCall& call) {
    const Timeline& time = call.GetHost().time();
    if (call.Has("-loop")) {
        for (const LoopName& loop : LOOP_NAMES) {
            if (time.PlaybackLoop() == loop.loop) {
                return loop.name;
            }
        }
    }
    if (call.Has("-view")) {
        return time.PlaysInAllViews() ? "all" : "active";
    }
    return call.Answer({{"-minTime", time.MinTime()},
                        {"-maxTime", time.MaxTime()},
                        {"-animationStartTime", time.AnimationStart()},
                        {"-animationEndTime", time.AnimationEnd()},
                        {"-playbackSpeed", time.PlaybackSpeed()},
                        {"-maxPlaybackSpeed", time.MaxPlaybackSpeed()},
                        {"-by", time.PlaybackBy()},
                        {"-framesPerSecond", RateOf(time.Unit()).PerSecond()}});
}

/// Sets the options other than the ranges. Checks all of them before it changes anything.
void SetLoopViewAndSpeed(const CommandCall& call) {
    Host& host = call.GetHost();
    Timeline& time = host.time();
    const Timeline::Loop loop =
        call.Has("-loop") ? LoopNamed(call, call.String("-loop")) : time.PlaybackLoop();
    const std::string view = call.StringOr("-view", time.PlaysInAllViews() ? "all" : "active");
    if (view != "all" && view != "active") {
        call.Fail("-view takes \"all\" or \"active\", not \"" + view + "\".");
    }
    const double by = call.FloatOr("-by", time.PlaybackBy());
    if (!(by > 0.0)) {
        call.Fail("Playback must go by more than 0 frames.");
    }
    const double speed = call.FloatOr("-playbackSpeed", time.PlaybackSpeed());
    const double maxSpeed = call.FloatOr("-maxPlaybackSpeed", time.MaxPlaybackSpeed());
    if (!(speed >= 0.0) || !(maxSpeed >= 0.0)) {
        call.Fail("The playback speed must not be less than 0.");
    }
    time.SetPlaybackLoop(loop);
    time.SetPlaysInAllViews(view == "all");
    if (call.Has("-playbackSpeed")) {
        edit::SetPlaybackSpeed(host, speed);
    }
    time.SetMaxPlaybackSpeed(maxSpeed);
    if (by != time.PlaybackBy()) {
        edit::SetPlaybackBy(host, by);
    }
    host.events().Fire("timeSliderChanged");
}

Value PlaybackOptions(CommandCall& call) {
    if (call.IsQuery()) {
        return QueryPlaybackOptions(call);
    }
    Host& host = call.GetHost();
    const Timeline& time = host.time();
    SetLoopViewAndSpeed(call);
    // Setting one range may move the other, so the missing ends are read before the first change.
    const auto given = [&call](const char* flag, double now) {
        return call.Has(flag) ? KeyArguments::TimeOf(call, call.Argument(flag)) : now;
    };
    const double minimum = given("-minTime", time.MinTime());
    const double maximum = given("-maxTime", time.MaxTime());
    const double start = given("-animationStartTime", time.AnimationStart());
    const double end = given("-animationEndTime", time.AnimationEnd());
    if (call.Has("-animationStartTime") || call.Has("-animationEndTime")) {
        edit::SetAnimationRange(host, start, end);
    }
    if (call.Has("-minTime") || call.Has("-maxTime")) {
        edit::SetPlaybackRange(host, minimum, maximum);
    }
    return time.MinTime();
}

Value Play(CommandCall& call) {
    Timeline& time = call.GetHost().time();
    if (call.IsQuery()) {
        return call.Has("-forward") ? time.PlayingDirection() >= 0 : time.IsPlaying();
    }
    const bool isForward = !call.Has("-forward") || call.Bool("-forward");
    const bool isOn = !call.Has("-state") || call.Bool("-state");
    time.SetPlaying(!isOn ? 0 : isForward ? 1 : -1);
    const Host& host = call.GetHost();
    while (call.Has("-wait") && call.GetHost().ui() && time.IsPlaying() && !host.QuitStatus()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return {};
}

/// timeControl works on the timeline's state, which the time slider's widget also shows.
Value TimeControl(CommandCall& call) {
    Timeline& time = call.GetHost().time();
    if (call.Has("-exists")) {
        return !call.GetHost().IsBatch();
    }
    if (call.IsQuery()) {
        if (call.Has("-rangeVisible")) {
            return time.IsRangeHighlighted();
        }
        const auto range = time.SliderRange();
        if (call.Has("-range")) {
            return "\"" + DecimalText(range.first) + ":" + DecimalText(range.second) + "\"";
        }
        if (call.Has("-rangeArray") || call.Has("-highlightedRange")) {
            return Value::FloatArray{range.first, range.second};
        }
        call.Fail("Nothing was asked for.");
    }
    for (const char* flag : {"-rangeArray", "-highlightedRange"}) {
        if (call.Has(flag) && !time.HighlightRange(call.Float(flag, 0), call.Float(flag, 1))) {
            call.Fail("The end of a highlighted range must come after its start.");
        }
    }
    if (call.Has("-rangeVisible") && !call.Bool("-rangeVisible")) {
        time.ClearHighlight();
    }
    if (call.Has("-forceRefresh")) {
        call.GetHost().events().Fire("timeSliderChanged");
    }
    return call.Objects().empty() ? Value("") : Value(call.Object(0).AsString());
}

} // namespace

void RegisterTimeCommands(CommandRegistry& registry) {
    AddSceneCommand(registry, "currentTime",
                    SyntaxBuilder().Flag("-u", "-update", SWITCH).Query().Edit().Objects(0, 1), CurrentTime);
    AddSceneCommand(registry, "currentUnit",
                    SyntaxBuilder()
                        .Flag("-l", "-linear", MSyntax::kString)
                        .Flag("-a", "-angle", MSyntax::kString)
                        .Flag("-t", "-time", MSyntax::kString)
                        .Flag("-f", "-fullName")
                        .Flag("-ua", "-updateAnimation", SWITCH)
                        .Query(),
                    CurrentUnit);
    registry.RegisterRaw("currentTimeUnitToFPS", 0, 0, [](CommandCall& call) {
        return Value(RateOf(call.GetHost().time().Unit()).PerSecond());
    });
    AddSceneCommand(registry, "playbackOptions",
                    SyntaxBuilder()
                        .Flag("-min", "-minTime", MSyntax::kTime)
                        .Flag("-max", "-maxTime", MSyntax::kTime)
                        .Flag("-ast", "-animationStartTime", MSyntax::kTime)
                        .Flag("-aet", "-animationEndTime", MSyntax::kTime)
                        .Flag("-l", "-loop", MSyntax::kString)
                        .Flag("-v", "-view", MSyntax::kString)
                        .Flag("-mps", "-maxPlaybackSpeed", NUMBER)
                        .Flag("-ps", "-playbackSpeed", NUMBER)
                        .Flag("-by", "-by", NUMBER)
                        .Flag("-fps", "-framesPerSecond")
                        .Query()
                        .Edit(),
                    PlaybackOptions);
    AddSceneCommand(registry, "play",
                    SyntaxBuilder()
                        .Flag("-f", "-forward", SWITCH)
                        .Flag("-st", "-state", SWITCH)
                        .Flag("-w", "-wait")
                        .Query(),
                    Play);
    AddSceneCommand(registry, "timeControl",
                    SyntaxBuilder()
                        .Flag("-ra", "-rangeArray", NUMBER, NUMBER)
                        .Flag("-hlr", "-highlightedRange", NUMBER, NUMBER)
                        .Flag("-rng", "-range")
                        .Flag("-rv", "-rangeVisible", SWITCH)
                        .Flag("-fr", "-forceRefresh")
                        .Flag("-ex", "-exists")
                        .Query()
                        .Edit()
                        .Objects(0, 1),
                    TimeControl);
}

} // namespace lightbox::mel
