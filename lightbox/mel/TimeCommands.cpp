#include "formats/FileReader.h"
#include "mel/SceneArguments.h"
#include "mel/SceneCommands.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"

#include <maya/MTime.h>

namespace lightbox::mel {
namespace {

constexpr auto NUMBER = MSyntax::kDouble;
constexpr auto SWITCH = MSyntax::kBoolean;

Value CurrentTime(CommandCall& call) {
    Host& host = call.GetHost();
    if (call.IsQuery() || call.Objects().empty()) {
        return host.time().CurrentTime();
    }
    const Value& given = call.Object(0);
    double time = 0.0;
    if (!given.IsNumber() && !IsNumber(given.AsString(), time)) {
        call.Fail("A time was expected, not \"" + given.AsString() + "\".");
    }
    edit::SetCurrentTime(host, given.AsFloat());
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
    if (FileReader* reader = ReaderOf(call)) {
        reader->SetUnits(call.StringOr("-linear", ""), call.StringOr("-angle", ""),
                         call.StringOr("-time", ""));
        return {};
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

Value QueryPlaybackOptions(const CommandCall& call) {
    const Timeline& time = call.GetHost().time();
    const std::pair<const char*, double> numbers[] = {{"-minTime", time.MinTime()},
                                                      {"-maxTime", time.MaxTime()},
                                                      {"-animationStartTime", time.AnimationStart()},
                                                      {"-animationEndTime", time.AnimationEnd()},
                                                      {"-playbackSpeed", time.PlaybackSpeed()},
                                                      {"-by", time.PlaybackBy()},
                                                      {"-framesPerSecond", RateOf(time.Unit()).PerSecond()}};
    for (const auto& [flag, number] : numbers) {
        if (call.Has(flag)) {
            return number;
        }
    }
    call.Fail("Nothing was asked for.");
}

Value PlaybackOptions(CommandCall& call) {
    if (call.IsQuery()) {
        return QueryPlaybackOptions(call);
    }
    Host& host = call.GetHost();
    const Timeline& time = host.time();
    // Each range may move the other, so what was not given is taken from before the first change.
    const double minimum = call.FloatOr("-minTime", time.MinTime());
    const double maximum = call.FloatOr("-maxTime", time.MaxTime());
    const double start = call.FloatOr("-animationStartTime", time.AnimationStart());
    const double end = call.FloatOr("-animationEndTime", time.AnimationEnd());
    if (call.Has("-animationStartTime") || call.Has("-animationEndTime")) {
        edit::SetAnimationRange(host, start, end);
    }
    if (call.Has("-minTime") || call.Has("-maxTime")) {
        edit::SetPlaybackRange(host, minimum, maximum);
    }
    if (call.Has("-playbackSpeed")) {
        edit::SetPlaybackSpeed(host, call.Float("-playbackSpeed"));
    }
    if (call.Has("-by")) {
        edit::SetPlaybackBy(host, call.Float("-by"));
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
    return {};
}

/// The time slider as far as it is state: in a window its widget shows the same.
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
            call.Fail("The end of a highlighted range must lie behind its start.");
        }
    }
    if (call.Has("-rangeVisible") && !call.Bool("-rangeVisible")) {
        time.ClearHighlight();
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
    AddSceneCommand(registry, "playbackOptions",
                    SyntaxBuilder()
                        .Flag("-min", "-minTime", NUMBER)
                        .Flag("-max", "-maxTime", NUMBER)
                        .Flag("-ast", "-animationStartTime", NUMBER)
                        .Flag("-aet", "-animationEndTime", NUMBER)
                        .Flag("-ps", "-playbackSpeed", NUMBER)
                        .Flag("-by", "-by", NUMBER)
                        .Flag("-fps", "-framesPerSecond")
                        .Query()
                        .Edit(),
                    PlaybackOptions);
    AddSceneCommand(registry, "play",
                    SyntaxBuilder().Flag("-f", "-forward", SWITCH).Flag("-st", "-state", SWITCH).Query(),
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
