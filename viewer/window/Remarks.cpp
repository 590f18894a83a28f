// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Remarks.h"

#include "Phrases.h"
#include "RemarksDialog.h"
#include "StatusBar.h"

#include <QAction>
#include <QWidget>

namespace Tessa {

Remarks::Remarks(StatusBar &status, QWidget *window)
    : QObject(window)
    , m_status(status)
    , m_window(window)
    , m_list(new QAction(tr("&Remarks..."), this))
{
    m_list->setEnabled(false);
    connect(m_list, &QAction::triggered, this, &Remarks::list);
    connect(&status, &StatusBar::remarksWanted, this, &Remarks::list);
}

void Remarks::setRead(const QString &title, const QStringList &remarks)
{
    m_read = remarks;
    m_all = remarks;
    tell(title, remarks);
}

void Remarks::setSaved(const QString &title, const QStringList &remarks)
{
    m_all = m_read + remarks;
    tell(title, remarks);
}

/// @param remarks those of which the user has not been told
void Remarks::tell(const QString &title, const QStringList &remarks)
{
    for (const QString &remark : remarks)
        printLine(remark);
    if (!remarks.isEmpty())
        m_status.showMessage(remarks.first());
    m_title = title;
    m_status.setRemarkCount(int(m_all.size()));
    m_list->setEnabled(!m_all.isEmpty());
}

void Remarks::list()
{
    auto *dialog = new RemarksDialog(tr("Remarks on %1").arg(m_title), m_all, m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

} // namespace Tessa
