#pragma once

#include <QComboBox>

namespace lightbox {

/// The widget of optionMenu: shows its actions as entries.
class OptionMenu : public QComboBox {
    Q_OBJECT

public:
    OptionMenu();

protected:
    void actionEvent(QActionEvent* event) override;

private:
    void Fill();
};

} // namespace lightbox
