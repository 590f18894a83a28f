// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

class QListWidget;

namespace Tessa {

/// Lists remarks, one sentence each, and copies them to the clipboard.
class RemarksDialog : public QDialog
{
    Q_OBJECT

public:
    RemarksDialog(const QString &title, const QStringList &remarks, QWidget *parent = nullptr);

private:
    void copy();

    QListWidget *m_list;
};

} // namespace Tessa
