// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ListView.h"

#include <OvCustomControl/ListWidget.h>

#include <QPushButton>
#include <QVBoxLayout>

namespace OvCc {

namespace {

constexpr int buttonHeight = 25;
constexpr int tallestSwatch = 20;
constexpr QSize gridSize(80, 80);
constexpr QSize pictureSize(50, 50);
constexpr QSize facePictureSize(16, 16);

} // namespace

struct ListView::Private
{
    ListWidget *list;
    QPushButton *button;
    int itemHeight = 20;
};

ListView::ListView(QWidget *parent)
    : QWidget(parent)
    , m_d(new Private{new ListWidget, new QPushButton})
{
    m_d->list->setObjectName(QStringLiteral("customListView"));
    m_d->list->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    // The popup around it has a frame.
    m_d->list->setFrameShape(QFrame::NoFrame);
    m_d->button->setObjectName(QStringLiteral("customSettingBtn"));
    m_d->button->setFixedHeight(buttonHeight);
    m_d->button->setFocusPolicy(Qt::NoFocus);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_d->list);
    column->addWidget(m_d->button);

    connect(m_d->list, &ListWidget::showItem, this, &ListView::slotRowChanged);
    connect(m_d->button, &QPushButton::clicked, this, &ListView::slotButtonPress);
}

ListView::~ListView() = default;

void ListView::setItemIconSize(QSize size)
{
    m_d->list->setIconSize(size);
}

QSize ListView::itemIconSize() const
{
    return m_d->list->iconSize();
}

void ListView::setViewMode(int mode)
{
    m_d->list->setViewMode(static_cast<QListView::ViewMode>(mode));
    // A press that moves on chooses another row; it does not drag the picture away.
    m_d->list->setMovement(QListView::Static);
}

int ListView::viewMode() const
{
    return m_d->list->viewMode();
}

void ListView::setItemHeight(int height)
{
    m_d->itemHeight = height;
}

int ListView::itemHeight() const
{
    return m_d->itemHeight;
}

void ListView::setCurrentRow(int row)
{
    if (!item(row))
        return;
    m_d->list->setCurrentRow(row);
    slotRowChanged(row);
}

void ListView::addItem(QPixmap pixmap, QString text)
{
    auto *item = new QListWidgetItem(QIcon(pixmap), text, m_d->list);
    if (viewMode() == QListView::ListMode) {
        // A hint with a negative width is none at all.
        item->setSizeHint({qMax(0, item->sizeHint().width()), m_d->itemHeight});
        return;
    }
    if (pixmap.height() > tallestSwatch)
        item->setSizeHint(gridSize);
    m_d->list->setResizeMode(QListView::Adjust);
    m_d->list->setTextElideMode(Qt::ElideRight);
    m_d->list->setGridSize(gridSize);
    m_d->list->setIconSize(pictureSize);
}

void ListView::setButtonText(QString text)
{
    m_d->button->setText(text);
}

QString ListView::buttonText() const
{
    return m_d->button->text();
}

void ListView::hideSettingBtn()
{
    m_d->button->hide();
}

QListWidgetItem *ListView::currentItem() const
{
    return m_d->list->currentItem();
}

int ListView::currentRow() const
{
    return m_d->list->currentRow();
}

QListWidgetItem *ListView::item(int row) const
{
    return m_d->list->item(row);
}

ListWidget *ListView::list() const
{
    return m_d->list;
}

void ListView::slotRowChanged(int row)
{
    const QListWidgetItem *shown = item(row);
    if (!shown)
        return;
    const QSize size = viewMode() == QListView::IconMode ? facePictureSize : m_d->list->iconSize();
    emit currentItemChanged(shown->icon().pixmap(size, QIcon::Normal, QIcon::Off), shown->text());
}

void ListView::slotButtonPress()
{
    // A dialog closes the popup under the mouse, and nobody tells the button that the mouse left.
    m_d->button->setMouseTracking(true);
    m_d->button->setAttribute(Qt::WA_UnderMouse, false);
    emit triggerDialog();
}

} // namespace OvCc
