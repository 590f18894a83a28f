#include "HelpBox.h"

#include <QCoreApplication>
#include <QMessageBox>

void OvCc::showHelp(QWidget *dialog)
{
    QMessageBox::about(dialog, QCoreApplication::translate("HelpBox", "help"),
                       QCoreApplication::translate("HelpBox", "Tessa help  doc!"));
}
