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

ListView::ListView(QWidget *parent)
    : QWidget(parent)
    , m_list(new ListWidget)
    , m_button(new QPushButton)
{
    m_list->setObjectName(QStringLiteral("customListView"));
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    // The popup around it has a frame.
    m_list->setFrameShape(QFrame::NoFrame);
    m_button->setObjectName(QStringLiteral("customSettingBtn"));
    m_button->setFixedHeight(buttonHeight);
    m_button->setFocusPolicy(Qt::NoFocus);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_list);
    column->addWidget(m_button);

    connect(m_list, &ListWidget::showItem, this, &ListView::slotRowChanged);
    connect(m_button, &QPushButton::clicked, this, &ListView::slotButtonPress);
}

ListView::~ListView() = default;

void ListView::setItemIconSize(QSize size)
{
    m_list->setIconSize(size);
}

void ListView::setViewMode(int mode)
{
    m_list->setViewMode(static_cast<QListView::ViewMode>(mode));
    // A press that moves on chooses another row; it does not drag the picture away.
    m_list->setMovement(QListView::Static);
}

int ListView::viewMode() const
{
    return m_list->viewMode();
}

void ListView::setItemHeight(int height)
{
    m_itemHeight = height;
}

int ListView::itemHeight() const
{
    return m_itemHeight;
}

void ListView::setCurrentRow(int row)
{
    if (!item(row))
        return;
    m_list->setCurrentRow(row);
    slotRowChanged(row);
}

void ListView::addItem(QPixmap pixmap, QString text)
{
    auto *item = new QListWidgetItem(QIcon(pixmap), text, m_list);
    if (viewMode() == QListView::ListMode) {
        // A hint with a negative width is none at all.
        item->setSizeHint({qMax(0, item->sizeHint().width()), m_itemHeight});
        return;
    }
    if (pixmap.height() > tallestSwatch)
        item->setSizeHint(gridSize);
    m_list->setResizeMode(QListView::Adjust);
    m_list->setTextElideMode(Qt::ElideRight);
    m_list->setGridSize(gridSize);
    m_list->setIconSize(pictureSize);
}

void ListView::setButtonText(QString text)
{
    m_button->setText(text);
}

void ListView::hideSettingBtn()
{
    m_button->hide();
}

QListWidgetItem *ListView::currentItem() const
{
    return m_list->currentItem();
}

int ListView::currentRow() const
{
    return m_list->currentRow();
}

QListWidgetItem *ListView::item(int row) const
{
    return m_list->item(row);
}

ListWidget *ListView::list() const
{
    return m_list;
}

void ListView::slotRowChanged(int row)
{
    const QListWidgetItem *shown = item(row);
    if (!shown)
        return;
    const QSize size = viewMode() == QListView::IconMode ? facePictureSize : m_list->iconSize();
    emit currentItemChanged(shown->icon().pixmap(size, QIcon::Normal, QIcon::Off), shown->text());
}

void ListView::slotButtonPress()
{
    // A dialog closes the popup under the mouse, and nobody tells the button that the mouse left.
    m_button->setMouseTracking(true);
    m_button->setAttribute(Qt::WA_UnderMouse, false);
    emit triggerDialog();
}

} // namespace OvCc
