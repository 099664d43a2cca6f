// colorSliderGrp: a label, a colour field named "port" and a brightness slider named "slider".

#include "controls/ColorSwatch.h"
#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/GroupControl.h"
#include "controls/Registration.h"
#include "controls/ValueSlider.h"
#include "controls/WindowCommandTable.h"

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

class ColorSliderControl : public GroupControl {
public:
    explicit ColorSliderControl(const ControlCreation& creation)
        : GroupControl(creation, true)
        , swatch_(new ColorSwatch)
        , slider_(new ValueSlider(false, Qt::Horizontal)) {
        swatch_->setObjectName("port");
        slider_->setObjectName("slider");
        slider_->SetRange(0.0, 1.0);
        AddPart(swatch_);
        AddPart(slider_);
        Finish();
        ControlRegistry& registry = creation.registry;
        QObject::connect(swatch_, &ColorSwatch::Chosen, swatch_, [this, &registry](const QColor& color) {
            SetColor(color.redF(), color.greenF(), color.blueF());
            registry.Run(*this, "-changeCommand");
        });
        QObject::connect(slider_, &ValueSlider::Dragged, swatch_, [this, &registry](double brightness) {
            SetBrightness(brightness);
            registry.Run(*this, "-dragCommand");
        });
        QObject::connect(slider_, &ValueSlider::Changed, swatch_, [this, &registry](double brightness) {
            SetBrightness(brightness);
            registry.Run(*this, "-changeCommand");
        });
    }

    /// Red, green and blue from 0 to 1. They are stored as floats, since a QColor would round them.
    const Value::FloatArray& Color() const { return color_; }
    void SetColor(double red, double green, double blue) {
        color_ = {std::clamp(red, 0.0, 1.0), std::clamp(green, 0.0, 1.0), std::clamp(blue, 0.0, 1.0)};
        const QColor color = QColor::fromRgbF(color_[0], color_[1], color_[2]);
        swatch_->SetColor(color);
        slider_->SetValue(color.valueF());
    }

private:
    void SetBrightness(double brightness) {
        QColor color = QColor::fromRgbF(color_[0], color_[1], color_[2]);
        color = QColor::fromHsvF(std::max(0.0, color.hsvHueF()), color.hsvSaturationF(), brightness);
        SetColor(color.redF(), color.greenF(), color.blueF());
    }

    ColorSwatch* swatch_;
    ValueSlider* slider_;
    Value::FloatArray color_{0.0, 0.0, 0.0};
};

ControlFlag ColorFlag(const char* shortName, const char* longName, bool isHsv) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {NUMBER, NUMBER, NUMBER},
            [flag, isHsv](Control& control, const CommandCall& call) {
                const auto part = [&](unsigned index) { return call.Float(flag.c_str(), index); };
                auto& group = dynamic_cast<ColorSliderControl&>(control);
                if (!isHsv) {
                    group.SetColor(part(0), part(1), part(2));
                    return;
                }
                constexpr double circle = 360.0;
                const QColor color =
                    QColor::fromHsvF(std::clamp(part(0) / circle, 0.0, 1.0), std::clamp(part(1), 0.0, 1.0),
                                     std::clamp(part(2), 0.0, 1.0));
                group.SetColor(color.redF(), color.greenF(), color.blueF());
            },
            [isHsv](Control& control) {
                const Value::FloatArray& rgb = dynamic_cast<ColorSliderControl&>(control).Color();
                if (!isHsv) {
                    return Value(rgb);
                }
                const QColor color = QColor::fromRgbF(rgb[0], rgb[1], rgb[2]);
                return Value(Value::FloatArray{std::max(0.0, color.hsvHueF()) * 360.0, color.hsvSaturationF(),
                                               color.valueF()});
            }};
}

} // namespace

void RegisterColorSliderCommand(WindowCommandTable& table) {
    table.Add({"colorSliderGrp", ControlType::Family::Control,
               ControlFlags{ColorFlag("-rgb", "-rgbValue", false), ColorFlag("-hsv", "-hsvValue", true),
                            ScriptFlag("-cc", "-changeCommand"), ScriptFlag("-dc", "-dragCommand")} +
                   GroupFlags(),
               Make<ColorSliderControl>});
}

} // namespace lightbox
