#include "paint/BrushPreset.h"

#include "paint/ToolTable.h"

#include <QStringList>

namespace vellix {

namespace {

// The words of a preset's line before its name.
constexpr int OPTION_WORDS = 5;
constexpr int PRESSURE_WORDS = 7;

PenPressure SizeByPressure(const PressureCurve& size, const PressureCurve& opacity = PressureCurve()) {
    PenPressure pressure;
    pressure.setsSize = true;
    pressure.size = size;
    pressure.opacity = opacity;
    return pressure;
}

PenPressure OpacityByPressure(const PressureCurve& opacity) {
    PenPressure pressure;
    pressure.opacity = opacity;
    return pressure;
}

bool IsWithin(int value, int low, int high) {
    return value >= low && value <= high;
}

} // namespace

std::vector<BrushPreset> BrushPreset::Defaults() {
    const auto named = [](const char* name) { return QString::fromLatin1(name); };
    const PressureCurve straight;
    const PressureCurve light = {10, 40, 55}; // a light hand shows already
    const PressureCurve firm = {8, 55, 35};   // thin for long, then swelling
    return {
        {named("Rough Pencil"), ToolType::Pencil, 5, 75, 100, true, OpacityByPressure(light)},
        {named("Clean Line"), ToolType::Pencil, 4, 100, 100, false, PenPressure()},
        {named("Ink Brush"), ToolType::Pencil, 16, 100, 100, false, SizeByPressure(firm)},
        {named("Ink Pen"), ToolType::Pencil, 7, 100, 100, false, SizeByPressure({40, 50, 50})},
        {named("Paint Brush"), ToolType::Brush, 30, 100, 100, true, SizeByPressure({25, 50, 50}, light)},
        {named("Soft Shading"), ToolType::Brush, 60, 30, 40, true, OpacityByPressure(straight)},
        {named("Flat Wash"), ToolType::Pencil, 50, 35, 100, false, PenPressure()},
        {named("Marker"), ToolType::Pencil, 24, 100, 100, false, PenPressure()},
        {named("Eraser"), ToolType::Eraser, 40, 100, 100, false, PenPressure()},
        {named("Fine Eraser"), ToolType::Eraser, 16, 100, 100, false, SizeByPressure({20, 50, 45})},
    };
}

QString BrushPreset::TidyName(const QString& name) {
    return name.simplified().left(MAX_NAME_LENGTH).trimmed();
}

QString BrushPreset::ToText() const {
    const ToolRow* const row = FindTool(tool);
    return QStringList{QLatin1String(row ? row->word : ""),
                       QString::number(size),
                       QString::number(opacity),
                       QString::number(hardness),
                       QString::number(pressureSetsOpacity ? 1 : 0),
                       pressure.ToText(),
                       name}
        .join(QLatin1Char(' '));
}

bool BrushPreset::FromText(const QString& text, BrushPreset& preset) {
    const QStringList words = text.split(QLatin1Char(' '));
    const ToolRow* const row = FindTool(words.first());
    if (!row || words.size() <= OPTION_WORDS + PRESSURE_WORDS) {
        return false;
    }
    BrushPreset read;
    read.tool = row->type;
    bool areNumbers[3] = {};
    read.size = words.at(1).toInt(&areNumbers[0]);
    read.opacity = words.at(2).toInt(&areNumbers[1]);
    read.hardness = words.at(3).toInt(&areNumbers[2]);
    read.pressureSetsOpacity = words.at(4) == QLatin1String("1");
    read.name = TidyName(QStringList(words.mid(OPTION_WORDS + PRESSURE_WORDS)).join(QLatin1Char(' ')));
    if (!areNumbers[0] || !areNumbers[1] || !areNumbers[2] || read.name.isEmpty() ||
        !(read.pressureSetsOpacity || words.at(4) == QLatin1String("0")) ||
        !IsWithin(read.size, 1, row->maximumSize) || !IsWithin(read.opacity, 1, 100) ||
        !IsWithin(read.hardness, 0, 100) ||
        !PenPressure::FromText(QStringList(words.mid(OPTION_WORDS, PRESSURE_WORDS)).join(QLatin1Char(' ')),
                               read.pressure)) {
        return false;
    }
    preset = read;
    return true;
}

} // namespace vellix
