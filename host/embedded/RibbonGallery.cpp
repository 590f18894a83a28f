#include "GalleryButton.h"
#include "GalleryGrid.h"

#include <NsRc.h>

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QStyleOption>
#include <QToolTip>

#include <array>

using Embedded::GalleryButton;
using Embedded::GalleryGrid;

namespace NsRc {

namespace {

constexpr int marginAround = 1;
constexpr int mostRowsByItself = 3;
constexpr int cellPadding = 4;
constexpr int aboveIcon = 2; // with the space below, this leaves 16 pixels of a cell of 21
constexpr int belowIcon = 3;
constexpr QSize anyIconSize(64, 64);
constexpr int wheelStep = 120;
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

/// A cell's parts, for a text that runs from left to right.
struct CellParts
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

} // namespace

struct RibbonGallery::Private
{
    explicit Private(RibbonGallery *gallery);

    int count() const { return group ? group->getItemCount() : 0; }
    RibbonGalleryItem *item(int index) const { return group ? group->item(index) : nullptr; }
    int checkedIndex() const { return group ? group->indexOf(checked) : -1; }
    int frameWidth() const;
    bool isLabelShown(const RibbonGalleryItem &item) const;
    CellParts partsOf(int index) const;
    int startIndex() const;
    int indexByKey(int key) const;
    QString toolTipAt(int index) const;

    void arrange();
    void followGroup();
    void scrollTo(int row);
    void setCurrent(int index);
    void check(const RibbonGalleryItem *item);
    void press(RibbonGalleryItem *item);
    void openMenu();

    void paintFrame(QPainter &painter) const;
    void paintCell(QPainter &painter, int index) const;

    RibbonGallery *const q;
    GalleryButton *const scrollUp;
    GalleryButton *const scrollDown;
    GalleryButton *const openMenuButton;
    QPointer<RibbonGalleryGroup> group;
    QPointer<OfficePopupMenu> menu;
    GalleryGrid grid;
    QRect buttonColumn;                         ///< empty without buttons
    const RibbonGalleryItem *checked = nullptr; ///< may be gone, and is only compared
    const RibbonGalleryItem *pressed =
            nullptr;            ///< the mouse button is down on it; may be gone, too
    bool isPressInside = false; ///< the mouse button went down here, on an item or beside it
    bool isDraggedIn = false;   ///< it went down elsewhere, to open the menu around this
    int current = -1;           ///< under the mouse, or where the keys went
    int wheelTurn = 0;          ///< what is too little for a row yet
    Qt::ScrollBarPolicy policy = Qt::ScrollBarAsNeeded;
    bool areLabelsVisible = true;
    bool isBorderVisible = false;
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

bool RibbonGallery::Private::isLabelShown(const RibbonGalleryItem &item) const
{
    return areLabelsVisible || !hasPicture(item);
}

CellParts RibbonGallery::Private::partsOf(int index) const
{
    return CellParts(grid.rect(index), areLabelsVisible || hasPicture(*item(index)),
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

RibbonGallery::RibbonGallery(QWidget *parent)
    : QWidget(parent)
    , m_d(new Private(this))
{
    setContentsMargins(marginAround, marginAround, marginAround, marginAround);
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    connect(m_d->scrollUp, &QAbstractButton::clicked, this,
            [this] { m_d->scrollTo(m_d->grid.topRow - 1); });
    connect(m_d->scrollDown, &QAbstractButton::clicked, this,
            [this] { m_d->scrollTo(m_d->grid.topRow + 1); });
    connect(m_d->openMenuButton, &QAbstractButton::pressed, this, [this] { m_d->openMenu(); });
    m_d->arrange();
}

RibbonGallery::~RibbonGallery()
{
    if (m_d->group)
        m_d->group->disconnect(this);
    delete m_d->menu;
}

void RibbonGallery::setLabelsVisible(bool visible)
{
    m_d->areLabelsVisible = visible;
    update();
}

void RibbonGallery::setBorderVisible(bool visible)
{
    m_d->isBorderVisible = visible;
    m_d->arrange();
    updateGeometry();
}

void RibbonGallery::setGalleryGroup(RibbonGalleryGroup *group)
{
    if (m_d->group)
        m_d->group->disconnect(this);
    m_d->group = group;
    m_d->checked = m_d->pressed = nullptr;
    m_d->current = -1;
    m_d->grid.topRow = 0;
    if (group) {
        connect(group, &RibbonGalleryGroup::changed, this, [this] { m_d->followGroup(); });
        connect(group, &QObject::destroyed, this, [this] { m_d->followGroup(); });
    }
    m_d->followGroup();
}

RibbonGalleryGroup *RibbonGallery::galleryGroup() const
{
    return m_d->group;
}

void RibbonGallery::setCheckedIndex(int index)
{
    m_d->check(m_d->item(index));
}

void RibbonGallery::setCheckedItem(const RibbonGalleryItem *item)
{
    m_d->check(item);
}

RibbonGalleryItem *RibbonGallery::checkedItem() const
{
    return m_d->item(m_d->checkedIndex());
}

void RibbonGallery::setPopupMenu(OfficePopupMenu *menu)
{
    if (menu == m_d->menu)
        return;
    delete m_d->menu;
    m_d->menu = menu;
    m_d->openMenuButton->setDown(false);
    if (menu) {
        menu->setParent(this, menu->windowFlags());
        connect(menu, &QMenu::aboutToHide, m_d->openMenuButton,
                [this] { m_d->openMenuButton->setDown(false); });
        // A widget says so while it still is there for a QPointer.
        connect(menu, &QObject::destroyed, this, [this] {
            m_d->menu.clear();
            m_d->arrange();
        });
    }
    m_d->arrange();
    updateGeometry();
}

OfficePopupMenu *RibbonGallery::popupMenu() const
{
    return m_d->menu;
}

void RibbonGallery::setScrollBarPolicy(Qt::ScrollBarPolicy policy)
{
    m_d->policy = policy;
    m_d->arrange();
    updateGeometry();
}

QSize RibbonGallery::sizeHint() const
{
    const GalleryGrid &grid = m_d->grid;
    const bool isWhole = m_d->policy == Qt::ScrollBarAlwaysOff;
    const int rows = isWhole ? grid.count : qMin(grid.count, mostRowsByItself);
    const bool hasButtons = m_d->menu || m_d->policy == Qt::ScrollBarAlwaysOn
                            || (!isWhole && grid.count > mostRowsByItself);
    const int column = hasButtons ? m_d->scrollUp->sizeHint().width() : 0;

    const QMargins margins = contentsMargins();
    const int frame = m_d->frameWidth();
    return {grid.cell.width() + column + qMax(frame, margins.left()) + qMax(frame, margins.right()),
            grid.cell.height() * qMax(1, rows) + qMax(frame, margins.top())
                    + qMax(frame, margins.bottom())};
}

void RibbonGallery::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    m_d->arrange();
}

bool RibbonGallery::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        const int index = m_d->grid.indexAt(help->pos());
        QToolTip::showText(help->globalPos(), m_d->toolTipAt(index), this,
                           index < 0 ? QRect() : m_d->grid.rect(index));
        return true;
    }
    const bool isHandled = QWidget::event(event);
    if (event->type() == QEvent::ContentsRectChange)
        m_d->arrange();
    return isHandled;
}

void RibbonGallery::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    m_d->setCurrent(m_d->startIndex());
    if (m_d->current >= 0)
        m_d->scrollTo(m_d->grid.topRowFor(m_d->current));
}

void RibbonGallery::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    if (!underMouse())
        m_d->setCurrent(-1);
}

void RibbonGallery::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_d->pressed = nullptr;
    m_d->isPressInside = m_d->isDraggedIn = false;
    m_d->setCurrent(-1);
}

void RibbonGallery::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    const bool isAlt = event->modifiers() & Qt::AltModifier;
    if (m_d->menu && (key == Qt::Key_F4 || (isAlt && key == Qt::Key_Down))) {
        m_d->openMenu();
        return;
    }
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
        RibbonGalleryItem *item = m_d->item(m_d->current);
        if (item && !event->isAutoRepeat())
            m_d->press(item);
        return;
    }
    const int index = m_d->indexByKey(key);
    if (index < 0) {
        QWidget::keyPressEvent(event);
        return;
    }
    m_d->setCurrent(index);
    m_d->scrollTo(m_d->grid.topRowFor(index));
}

void RibbonGallery::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    m_d->setCurrent(-1);
}

void RibbonGallery::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        m_d->pressed = nullptr;
    else if (!m_d->isPressInside && window()->windowType() == Qt::Popup)
        m_d->isDraggedIn = true;
    const int index = m_d->grid.indexAt(event->pos());
    const bool isElsewhere = m_d->pressed && m_d->item(index) != m_d->pressed;
    m_d->setCurrent(isElsewhere ? -1 : index);
}

void RibbonGallery::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const int index = m_d->grid.indexAt(event->pos());
    m_d->pressed = m_d->item(index);
    m_d->isPressInside = true;
    m_d->setCurrent(index);
    update();
}

void RibbonGallery::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    RibbonGalleryItem *item = m_d->item(m_d->grid.indexAt(event->pos()));
    const bool isPressed = item && (item == m_d->pressed || m_d->isDraggedIn);
    m_d->pressed = nullptr;
    m_d->isPressInside = m_d->isDraggedIn = false;
    update();
    if (isPressed)
        m_d->press(item);
}

void RibbonGallery::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_d->isBorderVisible)
        m_d->paintFrame(painter);
    painter.setClipRect(m_d->grid.area);
    const int first = m_d->grid.topRow * m_d->grid.columns();
    for (int index = first; index < m_d->grid.endOfSight(); ++index)
        m_d->paintCell(painter, index);
}

void RibbonGallery::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_d->arrange();
    const int index = m_d->checkedIndex();
    if (index >= 0)
        m_d->scrollTo(m_d->grid.topRowFor(index));
}

void RibbonGallery::wheelEvent(QWheelEvent *event)
{
    if (m_d->grid.lastTopRow() == 0) {
        event->ignore();
        return;
    }
    m_d->wheelTurn += event->angleDelta().y();
    const int rows = m_d->wheelTurn / wheelStep;
    m_d->wheelTurn -= rows * wheelStep;
    m_d->scrollTo(m_d->grid.topRow - rows);
    m_d->setCurrent(m_d->grid.indexAt(event->position().toPoint()));
}

} // namespace NsRc
