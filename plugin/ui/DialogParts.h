#pragma once

#include <functional>

class QDialog;
class QHBoxLayout;

namespace vellix {

/// Creates the row of "OK", the default button, and "Cancel" at the end of a dialog. OK calls `apply`, which
/// also closes the dialog; Cancel rejects.
QHBoxLayout* CreateDialogButtons(QDialog& dialog, std::function<void()> apply);

} // namespace vellix
