// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "BaseComboBox.h"

#include "FacePress.h"
#include "PickerInput.h"

#include <OvCustomControl/BaseEdit.h>
#include <OvCustomControl/ListView.h>
#include <OvCustomControl/ListWidget.h>

#include <QPointer>

namespace OvCc {

namespace {

constexpr int rowHeightInLists = 20;
constexpr int heightBesidesRows = 30;
constexpr int mostVisibleRows = 10;

} // namespace

/// The parts of the picker; a host may have deleted any of them.
struct BaseComboBox::Private
{
    QPointer<ListView> listView;
    QPointer<BaseEdit> edit;
    QPointer<QListWidget> popup;
    std::unique_ptr<PickerInput> input;
};

BaseComboBox::BaseComboBox(QWidget *parent)
    : QComboBox(parent)
    , m_d(new Private{new ListView, new BaseEdit(nullptr), new QListWidget(this), nullptr})
{
    setContextMenuPolicy(Qt::NoContextMenu);
    setLineEdit(m_d->edit);
    m_d->listView->setItemHeight(rowHeightInLists);

    setModel(m_d->popup->model());
    setView(m_d->popup);
    auto *place = new QListWidgetItem(m_d->popup);
    // The combo box would take a release beside the rows for the choice of its single item.
    place->setFlags(Qt::ItemIsEnabled);
    m_d->popup->setItemWidget(place, m_d->listView);
    m_d->popup->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_d->popup->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    m_d->input = std::make_unique<PickerInput>(this, m_d->listView->list());
    new FacePress(this);
    connect(m_d->listView, &ListView::currentItemChanged, this, &BaseComboBox::showCurrentItem);
    connect(m_d->listView, &ListView::triggerDialog, this, &BaseComboBox::answerButton);
    // The list view's own connection is older: the face is up to date when the choice is reported.
    connect(m_d->listView->list(), &ListWidget::showItem, this, [this](int row) {
        if (item(row))
            emit rowChosen(row);
    });
    connect(m_d->input.get(), &PickerInput::rowChosen, this, &BaseComboBox::chooseRow);
}

BaseComboBox::~BaseComboBox()
{
    m_d->input.reset();
    delete m_d->listView;
    delete m_d->popup;
    delete m_d->edit;
}

void BaseComboBox::showPopup()
{
    QComboBox::showPopup();
    emit addMoreItem();
}

void BaseComboBox::hideShowIcon()
{
    if (m_d->edit)
        m_d->edit->hideIcon();
}

void BaseComboBox::hideSettingBtn()
{
    if (m_d->listView)
        m_d->listView->hideSettingBtn();
}

void BaseComboBox::setCurrentIndex(int row)
{
    if (m_d->listView)
        m_d->listView->setCurrentRow(row);
}

int BaseComboBox::currentRow() const
{
    return m_d->listView ? m_d->listView->currentRow() : -1;
}

QListWidgetItem *BaseComboBox::item(int row) const
{
    return m_d->listView ? m_d->listView->item(row) : nullptr;
}

void BaseComboBox::addItem(QPixmap pixmap, QString text)
{
    if (m_d->listView)
        m_d->listView->addItem(pixmap, text);
}

void BaseComboBox::setButtonText(QString text)
{
    if (m_d->listView)
        m_d->listView->setButtonText(text);
}

QString BaseComboBox::buttonText() const
{
    return m_d->listView ? m_d->listView->buttonText() : QString();
}

void BaseComboBox::setItemIconSize(QSize size)
{
    if (m_d->listView)
        m_d->listView->setItemIconSize(size);
}

QSize BaseComboBox::itemIconSize() const
{
    return m_d->listView ? m_d->listView->itemIconSize() : QSize();
}

void BaseComboBox::setViewMode(int mode)
{
    if (m_d->listView)
        m_d->listView->setViewMode(mode);
}

int BaseComboBox::viewMode() const
{
    return m_d->listView ? m_d->listView->viewMode() : int(QListView::ListMode);
}

void BaseComboBox::setListWidgetHeight(int height)
{
    // A host may have cleared the combo box.
    QListWidgetItem *place = m_d->popup ? m_d->popup->item(0) : nullptr;
    // A hint with a negative width is none at all.
    if (place)
        place->setSizeHint({qMax(0, place->sizeHint().width()), height});
}

int BaseComboBox::listWidgetHeight() const
{
    const QListWidgetItem *place = m_d->popup ? m_d->popup->item(0) : nullptr;
    return place ? place->sizeHint().height() : 0;
}

void BaseComboBox::openDialog() {}

void BaseComboBox::showCurrentItem(QPixmap pixmap, QString text)
{
    if (m_d->edit) {
        m_d->edit->setCurrentIcon(pixmap);
        m_d->edit->setCurrentText(text);
    }
    m_d->input->keepRow();
    hidePopup();
}

int BaseComboBox::rowCount() const
{
    return m_d->listView ? m_d->listView->list()->count() : 0;
}

void BaseComboBox::fitListWidgetHeight(int rowHeight)
{
    setListWidgetHeight(qMin(rowCount(), mostVisibleRows) * rowHeight + heightBesidesRows);
}

void BaseComboBox::chooseRow(int row)
{
    setCurrentIndex(row);
    emit rowChosen(row);
}

/// Keys may have moved the list's current row before.
void BaseComboBox::answerButton()
{
    m_d->input->restoreRow();
    const QPointer<BaseComboBox> guard(this);
    emit dialogRequested();
    if (guard)
        openDialog();
}

} // namespace OvCc
