// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <KcBase.h>

#include <QWidget>

class QAction;
class QHBoxLayout;
class QLabel;
class QScrollArea;
class QStackedWidget;
class QTabBar;
class QToolButton;

namespace KcHost {

/// Widgets side by side above their common title. RibbonPage::addGroup() makes it.
///
/// @ingroup host
class KCSDK_EXPORT RibbonGroup : public QWidget
{
    Q_OBJECT

public:
    ~RibbonGroup() override;

    /// Shows @p widget behind those before it; the group owns it. Null is ignored.
    void addWidget(QWidget *widget);

    /// Shows @p action, which stays the caller's, as a button with its icon above its text; the
    /// button goes with the action. Null is ignored.
    /// @return the button, which is the group's; null without an action
    QToolButton *addButton(QAction *action);

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    RibbonGroup(const QString &title, QWidget *parent);
    friend class RibbonPage;
    void styleTitle();

    QHBoxLayout *m_row;
    QLabel *m_title;
};

/// What a tab of a ribbon bar shows: groups side by side. Where they are wider than the page, the
/// wheel and two buttons at its ends scroll. RibbonBar::addPage() makes it.
///
/// @ingroup host
class KCSDK_EXPORT RibbonPage : public QWidget
{
    Q_OBJECT

public:
    ~RibbonPage() override;

    /// An empty group behind those before it; it belongs to the page.
    RibbonGroup *addGroup(const QString &title);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    explicit RibbonPage(QWidget *parent);
    friend class RibbonBar;
    QToolButton *makeScrollButton(int step);
    void scrollBy(int step);
    void showScrollButtons();
    void enableScrollButtons();

    QToolButton *m_scrollBack;
    QScrollArea *m_area;
    QToolButton *m_scrollForth;
    QHBoxLayout *m_groups;
};

/// A slim ribbon: a row of tabs, below it the groups of the chosen page. It is as high as a gallery
/// of 65 pixels needs, or as its highest widget.
///
/// @ingroup host
/// @image html RibbonBar.png
class KCSDK_EXPORT RibbonBar : public QWidget
{
    Q_OBJECT

public:
    /// A bar without pages.
    explicit RibbonBar(QWidget *parent = nullptr);
    ~RibbonBar() override;

    /// An empty page with a tab behind those before it, the first one chosen; it belongs to the bar.
    RibbonPage *addPage(const QString &title);

    /// Shows @p page, if it is one of the bar's.
    void setCurrentPage(RibbonPage *page);

    /// Null without pages.
    RibbonPage *currentPage() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QTabBar *m_tabs;
    QStackedWidget *m_pages;
};

} // namespace KcHost
