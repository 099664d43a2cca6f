#pragma once

#include <QColor>
#include <QWidget>

namespace vellix {

/// A colour control of the host inside a Qt layout. A click or a double click on it opens the host's colour
/// chooser. Empty if the host could not create it.
class HostColorField : public QWidget {
    Q_OBJECT

public:
    /// `controlName` is the control's name in the host and must be unused. Sizes are pixels.
    HostColorField(const QString& controlName, const QSize& size, const QString& toolTip,
                   QWidget* parent = nullptr);

    /// Does nothing if the host already shows that colour or has no control.
    void SetColor(const QColor& color);
    /// Invalid if the host has no control.
    QColor GetColor() const;
    /// Sets the MEL that the host runs when the user has chosen another colour.
    void SetChangeCommand(const QString& command);

private:
    QString name_;
    bool isMade_ = false;
};

} // namespace vellix
