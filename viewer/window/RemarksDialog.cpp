// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "RemarksDialog.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace Tessa {

namespace {

constexpr QSize initialSize(560, 320);

} // namespace

RemarksDialog::RemarksDialog(const QString &title, const QStringList &remarks, QWidget *parent)
    : QDialog(parent)
    , m_list(new QListWidget)
{
    setWindowTitle(title);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_list->addItems(remarks);
    m_list->setAlternatingRowColors(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setWordWrap(true);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QPushButton *copyButton = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
    copyButton->setToolTip(tr("Copy the selected remarks, or all if none is selected"));
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_list);
    column->addWidget(buttons);
    resize(initialSize);

    connect(copyButton, &QPushButton::clicked, this, &RemarksDialog::copy);
    connect(new QShortcut(QKeySequence::Copy, this), &QShortcut::activated, this,
            &RemarksDialog::copy);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

/// The selected ones, or all if none is selected.
void RemarksDialog::copy()
{
    QStringList lines;
    for (int row = 0; row < m_list->count(); ++row) {
        const QListWidgetItem *remark = m_list->item(row);
        if (remark->isSelected() || m_list->selectedItems().isEmpty())
            lines += remark->text();
    }
    QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

} // namespace Tessa
