// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Changes.h"
#include "Support.h"
#include "layer/data/HostRecords.h"

#include <QKeySequence>
#include <QMetaMethod>
#include <QTableView>
#include <QTimer>

using namespace OvCc;

/// A drawing with its widgets, and all that these and their link tell.
class Stage : public QObject
{
    Q_OBJECT

public:
    /// @param isWilling whether the host does what the user wants
    /// @param isInside  whether it tells the link, and has the widgets put right, inside every signal
    Stage(bool isLinked, bool isWilling, bool isInside = false)
        : m_isInside(isInside)
    {
        m_panel.setGeometry(0, m_box.height(), 900, 300);
        m_window.resize(900, 320);
        showOnScreen(m_window);
        QApplication::setActiveWindow(&m_window);
        m_box.refresh();
        m_link.add(isLinked ? &m_panel : nullptr);
        m_link.add(isLinked ? &m_box : nullptr);
        m_link.flush();

        const auto obey = [this](auto signal, const char *word) {
            connect(&m_link, signal, this,
                    [word](const auto &...names) { change((QStringList(word) << ... << names)); });
        };
        if (isWilling) {
            obey(&LayerLink::addRequested, "add");
            obey(&LayerLink::removeRequested, "erase");
            obey(&LayerLink::renameRequested, "rename");
            obey(&LayerLink::currentLayerRequested, "current");
        }
        hearAll(m_panel);
        hearAll(m_box);
        hearAll(m_link);
        KcHost::setLayerTableChangesHandler([this] {
            sent.append("*host*");
            if (m_isInside)
                m_link.layersChanged();
        });
    }

    /// @param how the name of a slot, what it acts upon, and more, as it says
    void act(const QString &how)
    {
        QVERIFY(QMetaObject::invokeMethod(this, qPrintable(how.section(' ', 0, 0)),
                                          Q_ARG(QString, how.section(' ', 1, 1)),
                                          Q_ARG(QString, how.section(' ', 2))));
    }
    void update()
    {
        m_isLater = true;
        QCoreApplication::sendPostedEvents(&m_link);
    }

    QStringList sent; ///< by the widgets
    QStringList byLink;
    QStringList later; ///< by all, while the link puts the widgets right

private slots:
    void hear() { hear(sender(), sender()->metaObject()->method(senderSignalIndex()).name()); }

    /// The cell in the column of that title, perhaps "right", "twice" or with an answer to a dialog.
    void click(const QString &layer, const QString &column)
    {
        const QAbstractItemModel &rows = *m_panel.table()->model();
        const QModelIndex name = rows.match(rows.index(0, NameColumn), 0, layer).value(0);
        const int place = headerList.indexOf(column.section(' ', 0, 0));
        const QString how = column.section(' ', 1);
        QTableView *view = place > NameColumn ? m_panel.table() : m_names;
        const QPoint pos = view->visualRect(name.siblingAtColumn(place)).center();
        const Qt::MouseButton button = how == "right" ? Qt::RightButton : Qt::LeftButton;
        const QObject context;
        QTimer::singleShot(0, &context, [how] {
            const QWidget *dialog = QApplication::activeModalWidget();
            QTest::mouseClick(dialog->findChild<QPushButton *>(how), Qt::LeftButton);
        });
        QTest::mousePress(view->viewport(), button, {}, pos);
        sent.append("on release");
        QTest::mouseRelease(view->viewport(), button, {}, pos);
        if (how == "twice") {
            QTest::mouseDClick(view->viewport(), button, {}, pos);
            QTest::mouseRelease(view->viewport(), button, {}, pos);
        }
    }
    void press(const QString &key, const QString &)
    {
        QTest::keySequence(m_names, QKeySequence(key));
    }
    void search(const QString &text, const QString &)
    {
        QTest::keyClicks(m_panel.searchEdit(), text);
    }
    /// One for a layer, and a key that leaves the editor that comes up.
    void command(const QString &name, const QString &more)
    {
        click(more.section(' ', 0, 0), "Name");
        sent.clear();
        QMetaObject::invokeMethod(&m_panel, qPrintable(name));
        if (QWidget *editor = m_names->indexWidget(m_names->currentIndex())) {
            QTest::keyClicks(editor, "x");
            QTest::keySequence(editor, QKeySequence(more.section(' ', 1)));
        }
    }
    /// A button in the drop-down, or the row.
    void box(const QString &layer, const QString &button)
    {
        ::click(m_box.lineEdit());
        int row = 0;
        while (m_box.layerItem(row)->layerName() != layer)
            ++row;
        const LayerItem *item = m_box.layerItem(row);
        if (button == "row") {
            const QPoint place = item->mapTo(m_box.view()->viewport(), QPoint(1, 1));
            m_box.view()->setCurrentIndex(m_box.view()->indexAt(place));
            QTest::keyClick(m_box.view(), Qt::Key_Return);
        } else {
            const auto buttons = item->findChildren<QPushButton *>();
            QTest::mouseClick(buttons.at(button.toInt()), Qt::LeftButton);
            m_box.hidePopup();
        }
    }
    /// What is done while that layer is open.
    void elsewhere(const QString &layer, const QString &how)
    {
        auto *open = walkLayers(&*m_drawing, [&](auto &each) { return layerName(each) != layer; });
        act(how);
        open->close();
    }
    void outside(const QString &word, const QString &names)
    {
        if (word != "nothing")
            change(QStringList(word) + names.split(' '));
        m_link.layersChanged();
    }
    void drawing(const QString &current, const QString &)
    {
        KcHost::setCurrentLayer(*m_other, current);
        KcHost::setWorkingDatabase(current == "none" ? nullptr : m_other.get());
        m_link.drawingChanged();
    }

private:
    void hear(const QObject *sender, const QString &what)
    {
        (m_isLater ? later : sender == &m_link ? byLink : sent).append('`' + what + '`');
        if (m_isInside)
            m_link.flush();
    }
    /// All signals of its class, whatever there may be.
    template <class Sender>
    void hearAll(Sender &sender)
    {
        const QMetaObject &type = Sender::staticMetaObject;
        const QMetaMethod slot = staticMetaObject.method(staticMetaObject.indexOfSlot("hear()"));
        for (int place = type.methodOffset(); place < type.methodCount(); ++place) {
            const QMetaMethod method = type.method(place);
            if (method.methodType() == QMetaMethod::Signal && method.name() != "changesEnd")
                connect(&sender, method, this, slot);
        }
        connect(&sender, &Sender::changesEnd, this, [this, &sender](int changed, int refused) {
            hear(&sender, QString("changesEnd(%1, %2)").arg(changed).arg(refused));
        });
    }

    OpenDrawing m_drawing{drawingWithLayers({"Walls", "Doors"})};
    const std::unique_ptr<KcDbDatabase> m_other = drawingWithLayers({"Plan"});
    QWidget m_window;
    LayerManager m_panel{&m_window};
    LayerComboBox m_box{&m_window};
    LayerLink m_link;
    QTableView *const m_names = m_panel.table()->findChild<QTableView *>("frozenTable");
    const bool m_isInside;
    bool m_isLater = false;
};

namespace {

/// What may happen, as the page calls it, and how it is done, each in all these ways.
QMap<QString, QStringList> gestures()
{
    return {
            {"A click on a flag, single or double",
             {"click Walls On", "click 0 Lock", "click Walls Freeze twice"}},
            {"A click on \"Plot\"", {"click Walls Plot", "click 0 Plot"}},
            {"A click on a flag, refused",
             {"elsewhere Walls click Walls On", "elsewhere 0 click 0 On okBtn"}},
            {"Switching the current layer off, accepted", {"click 0 On okBtn"}},
            {"Switching the current layer off, declined", {"click 0 On noBtn"}},
            {"Freezing the current layer", {"click 0 Freeze noBtn"}},
            {"A click on \"Color\", a name or any other cell, or with another button",
             {"click Walls Color", "click Walls Name", "click 0 Linetype", "click Walls On right"}},
            {"A click on the marker before a name", {"click Walls status"}},
            {"A letter or Space", {"press X", "press Space"}},
            {"An arrow key", {"press Down"}},
            {"A text in the search field", {"search w"}},
            {"`makeCurrent()`, accepted", {"command makeCurrent Walls"}},
            {"`makeCurrent()`, refused", {"command makeCurrent Walls"}},
            {"`makeCurrent()` on the current layer", {"command makeCurrent 0"}},
            {"`newLayer()`, accepted", {"command newLayer 0 Return", "command newLayer Walls Esc"}},
            {"`newLayer()`, refused", {"command newLayer 0 Return", "command newLayer Walls Esc"}},
            {"`renameLayer()`, accepted", {"command renameLayer Walls Return"}},
            {"`renameLayer()`, refused", {"command renameLayer Walls Return"}},
            {"`renameLayer()`, left with Escape", {"command renameLayer Walls Esc"}},
            {"`deleteLayers()`, accepted", {"command deleteLayers Walls"}},
            {"`deleteLayers()`, refused", {"command deleteLayers Walls"}},
            {"A flag of the current layer", {"box 0 0", "box 0 2"}},
            {"A flag of the current layer, refused", {"box 0 1", "elsewhere 0 box 0 2"}},
            {"A flag of another layer", {"box Walls 0", "box Walls 1", "box Walls 2"}},
            {"A flag of another layer, refused", {"elsewhere Walls box Walls 2"}},
            {"A colour", {"box Walls 3", "box 0 3"}},
            {"A row, accepted", {"box Walls row"}},
            {"A row, refused", {"box Walls row"}},
            {"The row of the current layer", {"box 0 row"}},
            {"A layer has another flag, colour or the like", {"outside lock Walls"}},
            {"A layer came, went or has another name",
             {"outside add x", "outside erase Walls", "outside rename Walls x"}},
            {"Another layer is current", {"outside current Walls"}},
            {"Nothing", {"outside nothing"}},
            {"Another drawing, whose current layer has the same name", {"drawing 0"}},
            {"Another drawing, whose current layer has another name", {"drawing Plan"}},
            {"The drawing is closed", {"drawing none"}},
    };
}

/// As a cell of the page says it.
QString cell(const QStringList &told)
{
    QString text = told.isEmpty() ? "–" : told.join(", ");
    return text.replace(", on release", "; on release").replace("on release, ", "on release ");
}

QStringList sorted(QStringList told)
{
    told.sort();
    return told;
}

} // namespace

/// The tables of docs/embed.md: what is sent, and in which order.
class tst_Gestures : public QObject
{
    Q_OBJECT

private slots:
    void page_data();
    void page();
};

void tst_Gestures::page_data()
{
    QTest::addColumn<QStringList>("cells");
    QStringList rows;
    const QList<QByteArray> lines = fileContent(OVCC_SOURCE_DIR "/docs/embed.md").split('\n');
    for (const QByteArray &line : lines) {
        QStringList cells = QString(line).split(" | ");
        if (cells.size() != 5 || cells[1] == "Sent")
            continue;
        cells[0].remove(0, 2);
        cells[4].chop(2);
        QTest::newRow(qPrintable(cells[0])) << cells;
        rows.append(cells[0]);
    }
    QCOMPARE(sorted(rows), gestures().keys());
}

void tst_Gestures::page()
{
    QFETCH(QStringList, cells);
    const bool isWilling = !cells[0].endsWith("refused");
    const QStringList ways = gestures().value(cells[0]);
    for (const QString &way : ways) {
        Stage alone(false, isWilling);
        alone.act(way);
        QCOMPARE(cell(alone.sent), cells[1]);

        Stage linked(true, isWilling);
        linked.act(way);
        linked.update();
        QCOMPARE(cell(linked.sent), cells[1]);
        QCOMPARE(cell(linked.byLink), cells[2]);
        QCOMPARE(cell(linked.later), cells[4]);

        // The same, however early the host has the widgets put right.
        Stage inside(true, isWilling, true);
        inside.act(way);
        inside.update();
        QCOMPARE(sorted(inside.sent + inside.byLink + inside.later),
                 sorted(linked.sent + linked.byLink + linked.later));
    }
}

QTEST_MAIN(tst_Gestures)
#include "tst_gestures.moc"
