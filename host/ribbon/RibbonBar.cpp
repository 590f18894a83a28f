// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "RibbonBar.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QStyleOption>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace KcHost {

namespace {

constexpr int rowHeight = 65; // of a gallery
constexpr int groupMargin = 6;
constexpr int groupSpacing = 4;
constexpr int separatorWidth = 4;
constexpr int tabPadding = 12;
constexpr int underlineHeight = 2;
constexpr int buttonIconSize = 32;
constexpr int scrollButtonWidth = 16;
constexpr int scrollStep = 80;
constexpr int wheelStep = 120;
constexpr double titleScale = 0.85;
constexpr double titleOpacity = 0.65;

/// Flat tabs, the chosen one with a line below it.
class RibbonTabs : public QTabBar
{
public:
    explicit RibbonTabs(QWidget *parent)
        : QTabBar(parent)
    {
        setDrawBase(false);
        setExpanding(false);
    }

protected:
    QSize tabSizeHint(int index) const override
    {
        const QSize text = fontMetrics().size(Qt::TextShowMnemonic, tabText(index));
        return {text.width() + 2 * tabPadding, text.height() + tabPadding};
    }

    QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        const QPoint mouse = underMouse() ? mapFromGlobal(QCursor::pos()) : QPoint(-1, -1);
        for (int index = 0; index < count(); ++index)
            paintTab(painter, index, tabRect(index).contains(mouse));
    }

private:
    void paintTab(QPainter &painter, int index, bool isHovered)
    {
        QStyleOptionTab option;
        initStyleOption(&option, index);
        const bool isCurrent = index == currentIndex();
        style()->drawItemText(&painter, option.rect, Qt::AlignCenter | Qt::TextShowMnemonic,
                              option.palette, isEnabled(), option.text, QPalette::WindowText);
        QRect line = option.rect.adjusted(tabPadding / 2, 0, -tabPadding / 2, 0);
        line.setTop(line.bottom() + 1 - underlineHeight);
        if (isCurrent || isHovered)
            painter.fillRect(line, isCurrent ? option.palette.highlight() : option.palette.mid());
        if (isCurrent && hasFocus()) {
            QStyleOptionFocusRect focus;
            focus.initFrom(this);
            focus.rect = option.rect.adjusted(2, 2, -2, -underlineHeight - 1);
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
        }
    }
};

/// As high as its content, whose width it does not ask for. Either wheel scrolls it.
class GroupsArea : public QScrollArea
{
public:
    GroupsArea()
    {
        setFrameShape(QFrame::NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        setWidgetResizable(true);
        setFocusPolicy(Qt::NoFocus);
    }

    QSize sizeHint() const override { return widget()->sizeHint(); }
    QSize minimumSizeHint() const override { return {0, widget()->sizeHint().height()}; }

protected:
    void wheelEvent(QWheelEvent *event) override
    {
        const QPoint turn = event->angleDelta();
        const int mainTurn = qAbs(turn.x()) > qAbs(turn.y()) ? turn.x() : turn.y();
        QScrollBar *bar = horizontalScrollBar();
        const int before = bar->value();
        bar->setValue(before - mainTurn * scrollStep / wheelStep);
        event->setAccepted(bar->value() != before);
    }
};

/// Layouts between which nothing is left, whatever the style thinks of it.
template <class Layout>
Layout *tightLayout(QWidget *widget = nullptr)
{
    auto *layout = new Layout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}

/// Has everything around @p widget ask for its size anew. Left to itself, each layout would tell the
/// next one by an event, and a window would be shown before the last of them has heard of it.
void resizeAround(QWidget *widget)
{
    for (; widget; widget = widget->parentWidget())
        widget->updateGeometry();
}

} // namespace

RibbonGroup::RibbonGroup(const QString &title, QWidget *parent)
    : QWidget(parent)
    , m_row(tightLayout<QHBoxLayout>())
    , m_title(new QLabel(title))
{
    m_row->setSpacing(groupSpacing);
    m_title->setAlignment(Qt::AlignCenter);
    m_title->setTextFormat(Qt::PlainText);
    styleTitle();

    auto *layout = tightLayout<QVBoxLayout>(this);
    layout->setContentsMargins(groupMargin, groupSpacing, groupMargin + separatorWidth, 2);
    layout->setSpacing(2);
    layout->addLayout(m_row, 1);
    layout->addWidget(m_title);
    m_row->addStrut(rowHeight);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

RibbonGroup::~RibbonGroup() = default;

void RibbonGroup::addWidget(QWidget *widget)
{
    if (!widget)
        return;
    m_row->addWidget(widget, 0, Qt::AlignVCenter);
    resizeAround(this);
}

QToolButton *RibbonGroup::addButton(QAction *action)
{
    if (!action)
        return nullptr;
    auto *button = new QToolButton;
    button->setDefaultAction(action);
    button->setAutoRaise(true);
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setIconSize({buttonIconSize, buttonIconSize});
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    // The button itself breaks its connections with an action that leaves it.
    connect(action, &QObject::destroyed, this, [gone = QPointer<QToolButton>(button)] {
        if (gone)
            gone->deleteLater();
    });
    m_row->addWidget(button);
    resizeAround(this);
    return button;
}

void RibbonGroup::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange)
        styleTitle();
}

/// The separator that ends the group.
void RibbonGroup::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    option.state |= QStyle::State_Horizontal;
    const QRect end(width() - separatorWidth, 0, separatorWidth, height());
    option.rect = QStyle::visualRect(layoutDirection(), rect(), end);
    style()->drawPrimitive(QStyle::PE_IndicatorToolBarSeparator, &option, &painter, this);
}

/// Small and dim.
void RibbonGroup::styleTitle()
{
    QFont small = font();
    if (small.pointSizeF() > 0)
        small.setPointSizeF(small.pointSizeF() * titleScale);
    m_title->setFont(small);
    QColor dim = palette().color(QPalette::WindowText);
    dim.setAlphaF(titleOpacity);
    QPalette dimmed = palette();
    dimmed.setColor(QPalette::WindowText, dim);
    m_title->setPalette(dimmed);
}

RibbonPage::RibbonPage(QWidget *parent)
    : QWidget(parent)
    , m_scrollBack(makeScrollButton(-scrollStep))
    , m_area(new GroupsArea)
    , m_scrollForth(makeScrollButton(scrollStep))
    , m_groups(tightLayout<QHBoxLayout>())
{
    auto *content = new QWidget;
    auto *contentLayout = tightLayout<QHBoxLayout>(content);
    contentLayout->addLayout(m_groups);
    contentLayout->addStretch(1);
    content->installEventFilter(this);

    m_area->viewport()->setAutoFillBackground(false);
    m_area->setWidget(content);
    content->setAutoFillBackground(false);

    auto *layout = tightLayout<QHBoxLayout>(this);
    layout->addWidget(m_scrollBack);
    layout->addWidget(m_area, 1);
    layout->addWidget(m_scrollForth);
    connect(m_area->horizontalScrollBar(), &QScrollBar::valueChanged, this,
            &RibbonPage::enableScrollButtons);
    connect(m_area->horizontalScrollBar(), &QScrollBar::rangeChanged, this,
            &RibbonPage::enableScrollButtons);
    showScrollButtons();
    enableScrollButtons();
}

RibbonPage::~RibbonPage() = default;

RibbonGroup *RibbonPage::addGroup(const QString &title)
{
    auto *group = new RibbonGroup(title, m_area->widget());
    m_groups->addWidget(group);
    resizeAround(group);
    return group;
}

/// The groups have another size.
bool RibbonPage::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest) {
        resizeAround(m_area);
        showScrollButtons();
    }
    return QWidget::eventFilter(watched, event);
}

void RibbonPage::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    showScrollButtons();
}

QToolButton *RibbonPage::makeScrollButton(int step)
{
    auto *button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAccessibleName(step < 0 ? tr("Scroll back") : tr("Scroll forth"));
    button->setFixedWidth(scrollButtonWidth);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    connect(button, &QToolButton::clicked, this, [this, step] { scrollBy(step); });
    return button;
}

void RibbonPage::scrollBy(int step)
{
    QScrollBar *bar = m_area->horizontalScrollBar();
    bar->setValue(bar->value() + step);
}

/// Not to be called while the layout is at work, which would go on with the places that it found for
/// the buttons as they were before.
void RibbonPage::showScrollButtons()
{
    const bool isTooNarrow = width() < m_area->widget()->minimumSizeHint().width();
    m_scrollBack->setArrowType(isRightToLeft() ? Qt::RightArrow : Qt::LeftArrow);
    m_scrollForth->setArrowType(isRightToLeft() ? Qt::LeftArrow : Qt::RightArrow);
    m_scrollBack->setVisible(isTooNarrow);
    m_scrollForth->setVisible(isTooNarrow);
}

void RibbonPage::enableScrollButtons()
{
    const QScrollBar *bar = m_area->horizontalScrollBar();
    m_scrollBack->setEnabled(bar->value() > bar->minimum());
    m_scrollForth->setEnabled(bar->value() < bar->maximum());
}

RibbonBar::RibbonBar(QWidget *parent)
    : QWidget(parent)
    , m_tabs(new RibbonTabs(this))
    , m_pages(new QStackedWidget)
{
    auto *layout = tightLayout<QVBoxLayout>(this);
    layout->setContentsMargins(0, 0, 0, 1);
    layout->addWidget(m_tabs);
    layout->addWidget(m_pages);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(m_tabs, &QTabBar::currentChanged, m_pages, &QStackedWidget::setCurrentIndex);
}

RibbonBar::~RibbonBar() = default;

RibbonPage *RibbonBar::addPage(const QString &title)
{
    auto *page = new RibbonPage(m_pages);
    m_pages->addWidget(page);
    m_tabs->addTab(title);
    return page;
}

void RibbonBar::setCurrentPage(RibbonPage *page)
{
    const int index = m_pages->indexOf(page);
    if (index >= 0)
        m_tabs->setCurrentIndex(index);
}

RibbonPage *RibbonBar::currentPage() const
{
    return static_cast<RibbonPage *>(m_pages->currentWidget());
}

/// The line that ends the bar below.
void RibbonBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(0, height() - 1, width(), 1, palette().mid());
}

} // namespace KcHost
