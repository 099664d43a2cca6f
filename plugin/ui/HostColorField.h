#pragma once

#include <QColor>
#include <QWidget>

namespace vellix {

/// A colour control of the host in a layout of ours: a click or a double click on it opens the host's colour
/// chooser. Empty when the host could not make it.
class HostColorField : public QWidget {
    Q_OBJECT

public:
    /// `controlName` names it in the host, where the name has to be free; sizes in pixels.
    HostColorField(const QString& controlName, const QSize& size, const QString& toolTip,
                   QWidget* parent = nullptr);

    /// Does nothing when the host shows that colour already, or has no control.
    void SetColor(const QColor& color);
    /// Invalid when the host cannot be asked.
    QColor GetColor() const;
    /// MEL that the host runs when the user has chosen another colour.
    void SetChangeCommand(const QString& command);

private:
    QString m_name;
    bool m_isMade = false;
};

} // namespace vellix
