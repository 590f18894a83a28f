#include "BaseComboBox.h"

#include "FacePress.h"
#include "PickerInput.h"

#include <OvCustomControl/BaseEdit.h>
#include <OvCustomControl/ListView.h>
#include <OvCustomControl/ListWidget.h>

namespace OvCc {

namespace {

constexpr int rowHeightInLists = 20;
constexpr int heightBesidesRows = 30;
constexpr int mostVisibleRows = 10;

} // namespace

BaseComboBox::BaseComboBox(QWidget *parent)
    : QComboBox(parent)
    , m_listView(new ListView)
    , m_edit(new BaseEdit(nullptr))
    , m_popup(new QListWidget(this))
{
    setContextMenuPolicy(Qt::NoContextMenu);
    setLineEdit(m_edit);
    m_listView->setItemHeight(rowHeightInLists);

    setModel(m_popup->model());
    setView(m_popup);
    auto *place = new QListWidgetItem(m_popup);
    // The combo box would take a release beside the rows for the choice of its single item.
    place->setFlags(Qt::ItemIsEnabled);
    m_popup->setItemWidget(place, m_listView);
    m_popup->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_popup->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    m_input = std::make_unique<PickerInput>(this, m_listView->list());
    new FacePress(this);
    connect(m_listView, &ListView::currentItemChanged, this, &BaseComboBox::showCurrentItem);
    connect(m_listView, &ListView::triggerDialog, this, &BaseComboBox::answerButton);
    // The list view's own connection is older: the face is up to date when the choice is reported.
    connect(m_listView->list(), &ListWidget::showItem, this, [this](int row) {
        if (item(row))
            emit rowChosen(row);
    });
    connect(m_input.get(), &PickerInput::rowChosen, this, &BaseComboBox::chooseRow);
}

BaseComboBox::~BaseComboBox()
{
    m_input.reset();
    delete m_listView;
    delete m_popup;
    delete m_edit;
}

void BaseComboBox::showPopup()
{
    QComboBox::showPopup();
    emit addMoreItem();
}

void BaseComboBox::hideShowIcon()
{
    if (m_edit)
        m_edit->hideIcon();
}

void BaseComboBox::hideSettingBtn()
{
    if (m_listView)
        m_listView->hideSettingBtn();
}

void BaseComboBox::setCurrentIndex(int row)
{
    if (m_listView)
        m_listView->setCurrentRow(row);
}

int BaseComboBox::currentRow() const
{
    return m_listView ? m_listView->currentRow() : -1;
}

QListWidgetItem *BaseComboBox::item(int row) const
{
    return m_listView ? m_listView->item(row) : nullptr;
}

void BaseComboBox::addItem(QPixmap pixmap, QString text)
{
    if (m_listView)
        m_listView->addItem(pixmap, text);
}

void BaseComboBox::setButtonText(QString text)
{
    if (m_listView)
        m_listView->setButtonText(text);
}

void BaseComboBox::setItemIconSize(QSize size)
{
    if (m_listView)
        m_listView->setItemIconSize(size);
}

void BaseComboBox::setViewMode(int mode)
{
    if (m_listView)
        m_listView->setViewMode(mode);
}

void BaseComboBox::setListWidgetHeight(int height)
{
    if (!m_popup)
        return;
    QListWidgetItem *place = m_popup->item(0);
    // A hint with a negative width is none at all.
    place->setSizeHint({qMax(0, place->sizeHint().width()), height});
}

void BaseComboBox::openDialog() {}

void BaseComboBox::showCurrentItem(QPixmap pixmap, QString text)
{
    if (m_edit) {
        m_edit->setCurrentIcon(pixmap);
        m_edit->setCurrentText(text);
    }
    m_input->keepRow();
    hidePopup();
}

int BaseComboBox::rowCount() const
{
    return m_listView ? m_listView->list()->count() : 0;
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
    m_input->restoreRow();
    const QPointer<BaseComboBox> guard(this);
    emit dialogRequested();
    if (guard)
        openDialog();
}

} // namespace OvCc
