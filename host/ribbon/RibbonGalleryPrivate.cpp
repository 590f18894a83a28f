// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "RibbonGalleryPrivate.h"

#include <QPainter>
#include <QStyleOption>

using Embedded::GalleryButton;

namespace NsRc {

namespace {

constexpr int cellPadding = 4;
constexpr int aboveIcon = 2; // with the space below, this leaves 16 pixels of a cell of 21
constexpr int belowIcon = 3;
constexpr QSize anyIconSize(64, 64);
constexpr double currentTint = 0.15;
constexpr double checkedTint = 0.3;

bool hasPicture(const RibbonGalleryItem &item)
{
    return !item.icon().actualSize(anyIconSize).isEmpty();
}

QColor blend(const QColor &color, const QColor &other, double share)
{
    const auto mix = [share](double one, double two) { return one + (two - one) * share; };
    return QColor::fromRgbF(mix(color.redF(), other.redF()), mix(color.greenF(), other.greenF()),
                            mix(color.blueF(), other.blueF()));
}

} // namespace

/// A cell's parts, for a text that runs from left to right.
struct RibbonGallery::Private::CellParts
{
    CellParts(const QRect &cell, bool isIconVisible, bool isLabelVisible)
        : icon(cell.adjusted(cellPadding, aboveIcon, -cellPadding, -belowIcon))
        , label(cell.adjusted(cellPadding, 0, -cellPadding, 0))
    {
        if (isIconVisible && isLabelVisible) {
            icon.setWidth(qMin(icon.width(), icon.height()));
            label.setLeft(icon.right() + 1 + cellPadding);
        }
    }

    QRect icon;
    QRect label;
};

RibbonGallery::Private::Private(RibbonGallery *gallery)
    : q(gallery)
    , scrollUp(new GalleryButton(GalleryButton::ScrollUp, tr("Scroll up"), gallery))
    , scrollDown(new GalleryButton(GalleryButton::ScrollDown, tr("Scroll down"), gallery))
    , openMenuButton(new GalleryButton(GalleryButton::OpenMenu, tr("More"), gallery))
{
}

int RibbonGallery::Private::frameWidth() const
{
    return isBorderVisible ? q->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, q) : 0;
}

/// The width of a cell that cuts no label.
int RibbonGallery::Private::neededCellWidth() const
{
    int needed = grid.cell.width();
    for (int index = 0; index < count(); ++index) {
        const int text = q->fontMetrics().horizontalAdvance(item(index)->caption());
        const int room = partsIn({{}, grid.cell}, index).label.width();
        if (isLabelShown(*item(index)))
            needed = qMax(needed, grid.cell.width() + text - room);
    }
    return needed;
}

bool RibbonGallery::Private::isLabelShown(const RibbonGalleryItem &item) const
{
    return areLabelsVisible || !hasPicture(item);
}

RibbonGallery::Private::CellParts RibbonGallery::Private::partsOf(int index) const
{
    return partsIn(grid.rect(index), index);
}

RibbonGallery::Private::CellParts RibbonGallery::Private::partsIn(const QRect &cell,
                                                                  int index) const
{
    return CellParts(cell, areLabelsVisible || hasPicture(*item(index)),
                     isLabelShown(*item(index)));
}

/// Where the keys begin; -1 without items.
int RibbonGallery::Private::startIndex() const
{
    const int index = checkedIndex();
    return index >= 0 ? index : qMin(grid.topRow * grid.columns(), count() - 1);
}

/// Where @p key leads to; -1 for nowhere.
int RibbonGallery::Private::indexByKey(int key) const
{
    const int columns = grid.columns();
    const int page = grid.visibleRows() * columns;
    const int last = count() - 1;
    const int forward = q->isRightToLeft() ? Qt::Key_Left : Qt::Key_Right;
    const int lastRowStart = last - last % columns;
    const auto moved = [this, last](int by) {
        return current < 0 ? startIndex() : qBound(0, current + by, last);
    };
    switch (key) {
    case Qt::Key_Up:
        return current >= 0 && current < columns ? -1 : moved(-columns);
    case Qt::Key_Down:
        return current >= lastRowStart ? -1 : moved(columns);
    case Qt::Key_Left:
    case Qt::Key_Right:
        return columns == 1 ? -1 : moved(key == forward ? 1 : -1);
    case Qt::Key_PageUp:
        return moved(-page);
    case Qt::Key_PageDown:
        return moved(page);
    case Qt::Key_Home:
        return qMin(0, last);
    case Qt::Key_End:
        return last;
    default:
        return -1;
    }
}

/// What the cell does not show.
QString RibbonGallery::Private::toolTipAt(int index) const
{
    const RibbonGalleryItem *pointed = item(index);
    if (!pointed)
        return {};
    const QString caption = pointed->caption();
    const int width = q->fontMetrics().horizontalAdvance(caption);
    return isLabelShown(*pointed) && width <= partsOf(index).label.width() ? QString() : caption;
}

void RibbonGallery::Private::arrange()
{
    const int frame = frameWidth();
    const QRect inside = q->contentsRect() & q->rect().adjusted(frame, frame, -frame, -frame);
    grid.direction = q->layoutDirection();
    grid.count = count();
    grid.cell = group ? group->getSize() : QSize(1, 1);
    grid.area = inside;

    const bool isScrollNeeded = menu || grid.lastTopRow() > 0;
    const bool isScrollable =
            policy == Qt::ScrollBarAlwaysOn || (policy == Qt::ScrollBarAsNeeded && isScrollNeeded);
    scrollUp->setVisible(isScrollable);
    scrollDown->setVisible(isScrollable);
    openMenuButton->setVisible(menu);

    QVector<QWidget *> buttons;
    for (GalleryButton *button : {scrollUp, scrollDown, openMenuButton}) {
        if (!button->isHidden())
            buttons.append(button);
    }
    QRect column = inside;
    column.setLeft(inside.right() + 1 - (buttons.isEmpty() ? 0 : scrollUp->sizeHint().width()));
    for (int place = 0; place < buttons.size(); ++place) {
        const int top = column.height() * place / buttons.size();
        const int bottom = column.height() * (place + 1) / buttons.size();
        const QRect button(column.left(), column.top() + top, column.width(), bottom - top);
        buttons.at(place)->setGeometry(QStyle::visualRect(grid.direction, inside, button));
    }
    buttonColumn = QStyle::visualRect(grid.direction, inside, column);
    grid.area.setRight(column.left() - 1);
    grid.area = QStyle::visualRect(grid.direction, inside, grid.area);
    scrollTo(grid.topRow);
}

void RibbonGallery::Private::followGroup()
{
    if (count() < grid.count)
        current = -1;
    arrange();
    q->updateGeometry();
}

void RibbonGallery::Private::scrollTo(int row)
{
    grid.topRow = qBound(0, row, grid.lastTopRow());
    scrollUp->setEnabled(grid.topRow > 0);
    scrollDown->setEnabled(grid.topRow < grid.lastTopRow());
    q->update();
}

void RibbonGallery::Private::setCurrent(int index)
{
    if (current == index)
        return;
    current = index;
    q->update();
}

void RibbonGallery::Private::check(const RibbonGalleryItem *item)
{
    const int index = group ? group->indexOf(item) : -1;
    if (index == checkedIndex())
        return;
    checked = index < 0 ? nullptr : item;
    if (checked)
        scrollTo(grid.topRowFor(index));
    q->update();
}

/// Whoever hears of the press may delete the gallery.
void RibbonGallery::Private::press(RibbonGalleryItem *item)
{
    const QPointer<RibbonGallery> gallery(q);
    emit q->itemPressed(item);
    QPointer<QWidget> around = gallery ? gallery->parentWidget() : nullptr;
    while (around) {
        if (auto *menuAround = qobject_cast<OfficePopupMenu *>(around))
            menuAround->close();
        if (around)
            around = around->parentWidget();
    }
}

void RibbonGallery::Private::openMenu()
{
    const bool isOpened = menu && !menu->isEmpty();
    openMenuButton->setDown(isOpened);
    if (isOpened)
        menu->popup(q->mapToGlobal(q->rect().bottomLeft() + QPoint(0, 1)));
}

void RibbonGallery::Private::paintFrame(QPainter &painter) const
{
    QStyleOptionFrame option;
    option.initFrom(q);
    option.lineWidth = frameWidth();
    option.state &= ~(QStyle::State_HasFocus | QStyle::State_MouseOver);
    option.state |= QStyle::State_Sunken;

    painter.fillRect(q->rect(), option.palette.base());
    if (!buttonColumn.isEmpty()) {
        const int frame = option.lineWidth;
        option.rect = buttonColumn.adjusted(-frame, -frame, frame, frame);
        painter.fillRect(option.rect, option.palette.button());
        q->style()->drawPrimitive(QStyle::PE_Frame, &option, &painter, q);
    }
    option.rect = q->rect();
    q->style()->drawPrimitive(QStyle::PE_Frame, &option, &painter, q);
}

void RibbonGallery::Private::paintCell(QPainter &painter, int index) const
{
    const RibbonGalleryItem &shown = *item(index);
    const bool isChecked = &shown == checked;
    const bool isCurrent = index == current && q->isEnabled();
    QStyleOptionFocusRect option;
    option.initFrom(q);
    option.rect = grid.rect(index);
    option.state.setFlag(QStyle::State_MouseOver, isCurrent);
    option.state.setFlag(QStyle::State_HasFocus, isCurrent && q->hasFocus());
    option.state.setFlag(QStyle::State_On, isChecked);
    option.state |=
            QStyle::State_AutoRaise
            | (isCurrent && &shown == pressed ? QStyle::State_Sunken : QStyle::State_Raised);
    if (isCurrent || isChecked) {
        QStyleOption panel = option;
        const double tint = (isCurrent ? currentTint : 0) + (isChecked ? checkedTint : 0);
        panel.palette.setColor(QPalette::Button,
                               blend(option.palette.color(QPalette::Button),
                                     option.palette.color(QPalette::Highlight), tint));
        q->style()->drawPrimitive(QStyle::PE_PanelButtonTool, &panel, &painter, q);
    }

    const CellParts parts = partsOf(index);
    const auto visual = [&option](QRect part) {
        return QStyle::visualRect(option.direction, option.rect, part);
    };
    if (!parts.icon.isEmpty()) {
        shown.icon().paint(&painter, visual(parts.icon), Qt::AlignCenter,
                           q->isEnabled() ? QIcon::Normal : QIcon::Disabled,
                           isChecked ? QIcon::On : QIcon::Off);
    }
    if (isLabelShown(shown)) {
        const int flags = Qt::AlignVCenter | Qt::TextSingleLine
                          | QStyle::visualAlignment(option.direction, Qt::AlignLeft);
        const QString text =
                option.fontMetrics.elidedText(shown.caption(), Qt::ElideRight, parts.label.width());
        const bool isOnPanel = isCurrent || isChecked;
        const QPalette::ColorRole role = isOnPanel         ? QPalette::ButtonText
                                         : isBorderVisible ? QPalette::Text
                                                           : QPalette::WindowText;
        q->style()->drawItemText(&painter, visual(parts.label), flags, option.palette,
                                 q->isEnabled(), text, role);
    }
    if (isCurrent && q->hasFocus())
        q->style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, q);
}

} // namespace NsRc
