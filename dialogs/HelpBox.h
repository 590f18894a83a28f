#pragma once

class QWidget;

namespace OvCc {

/// What the Help buttons of the dialogs show: a box over @p dialog that stands in for the host's
/// manual. Returns when the user has closed it.
void showHelp(QWidget *dialog);

} // namespace OvCc
