// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Support.h"

#include <LayerWindow.h>

#include <QLabel>
#include <QTemporaryDir>

using namespace OvCc;
using namespace OwnDatabase;

namespace {

/// A statement of another program, one that shares no code with this one, and what is done while that
/// has its transaction open.
void otherProgram(const QString &file, const QString &statement,
                  const std::function<void()> &meanwhile = nullptr)
{
    QProcess python;
    python.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    python.start("/usr/bin/python3",
                 {"-c",
                  "import sqlite3, sys; file = sqlite3.connect(sys.argv[1]); "
                  "file.execute(sys.argv[2]); print('done', flush=True); input(); file.commit()",
                  file, statement});
    QVERIFY(python.waitForReadyRead());
    if (meanwhile)
        meanwhile();
    python.write("\n");
    QVERIFY(python.waitForFinished());
}

} // namespace

class tst_OwnDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath("drawing.sqlite");
        m_drawing = std::make_unique<OpenDrawing>(open(m_path));
        for (const char *name : {"Doors", "Walls"})
            QCOMPARE(addLayer(**m_drawing, name), Kcore::eOk);
    }
    void cleanup() { m_drawing.reset(); }
    void followsOtherPrograms();
    void refusals();
    void commands();
    void badFiles();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    std::unique_ptr<OpenDrawing> m_drawing;
};

void tst_OwnDatabase::followsOtherPrograms()
{
    LayerWindow window(**m_drawing);
    const auto *table = window.findChild<LayerTableWidget *>();
    auto *box = window.findChild<LayerComboBox *>();
    const auto shown = [&](int column) {
        QStringList texts;
        for (int row = 0; row < table->model()->rowCount(); ++row)
            texts += table->model()->index(row, column).data().toString();
        return texts.join(' ');
    };
    KcDbLayerTableRecord *doors = getLayerByName("Doors");
    otherProgram(m_path, "INSERT INTO layer (name, off) VALUES ('Attic', 1)");
    QTRY_COMPARE(shown(NameColumn), QString("0 Attic Doors Walls"));
    QCOMPARE(box->count(), 4);
    otherProgram(m_path, "UPDATE drawing SET current = 3");
    QTRY_COMPARE(box->getDisplayItem(), 2);
    otherProgram(m_path, "UPDATE layer SET name = 'Zoo', locked = 1 WHERE name = 'Attic'");
    QTRY_COMPARE(shown(NameColumn), QString("0 Doors Walls Zoo"));
    QCOMPARE(shown(UnlockedColumn), QString("true true true false"));
    otherProgram(m_path, "DELETE FROM layer WHERE name = 'Doors'");
    QTRY_COMPARE(shown(NameColumn), QString("0 Walls Zoo"));
    QCOMPARE(doors->close(), Kcore::eOk);
    QVERIFY(!getLayerByName("Doors"));

    // And it sees what is clicked here.
    QTest::mouseClick(box->layerItem(2)->findChildren<QPushButton *>().at(LockStatus),
                      Qt::LeftButton);
    QTRY_COMPARE(shown(UnlockedColumn), QString("true true true"));
    const auto other = open(m_path);
    KcHost::setWorkingDatabase(other.get());
    QCOMPARE(layerRows().at(2).at(UnlockedColumn), QString("true"));
}

/// Whatever the reason, the drawing stays as it is and the widgets say so.
void tst_OwnDatabase::refusals()
{
    const auto isThawed = [](int row) { return layerRows().at(row).at(ThawedColumn) == "true"; };
    OvLayerUtility layers;
    otherProgram(m_path, "UPDATE layer SET locked = 1", [&] {
        layers.setLayerFrozen("Walls", true);
        QCOMPARE(addLayer(**m_drawing, "X"), Kcore::eOpenAlready);
    });
    QVERIFY(isThawed(2));
    layers.setLayerFrozen("Walls", true);
    QVERIFY(!isThawed(2));

    // Before the next look at the file, here nobody knows of it.
    otherProgram(m_path, "UPDATE drawing SET current = 2");
    layers.setLayerFrozen("Doors", true);
    QVERIFY(isThawed(1));
    QCOMPARE(eraseLayer(**m_drawing, "Doors"), Kcore::eRefused);
    otherProgram(m_path, "DELETE FROM layer WHERE name = 'Walls'");
    layers.setLayerFrozen("Walls", false);
    QVERIFY(!isThawed(2));
    QCOMPARE(renameLayer(**m_drawing, "Walls", "X"), Kcore::eErased);
    QCOMPARE(addLayer(**m_drawing, "dOORS"), Kcore::eRefused);
    QTRY_COMPARE(layerRows().size(), 2);
}

void tst_OwnDatabase::commands()
{
    LayerWindow window(**m_drawing);
    auto *panel = window.findChild<LayerManager *>();
    const auto names = [] {
        QStringList names;
        const QList<QStringList> rows = layerRows();
        for (const QStringList &row : rows)
            names += row.at(NameColumn) + (row.at(CurrentColumn) == "true" ? "*" : "");
        return names.join(' ');
    };
    panel->newLayer();
    panel->table()->selectRow(1);
    panel->makeCurrent();
    QCOMPARE(names(), QString("0 Doors* Layer1 Walls"));
    panel->deleteLayers(); // the current one stays
    QTRY_COMPARE(panel->table()->model()->rowCount(), 4);
    panel->table()->selectRow(3);
    panel->deleteLayers();
    QCOMPARE(names(), QString("0 Doors* Layer1"));
    emit panel->table()->layerRenamed("Layer1", "Yard");
    emit window.findChild<LayerComboBox *>()->layerChosen("Yard");
    QCOMPARE(names(), QString("0 Doors Yard*"));
    QTRY_COMPARE(panel->findChild<QLabel *>()->text(), QString("Current layer: Yard"));
}

void tst_OwnDatabase::badFiles()
{
    QFile text(m_folder->filePath("text"));
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write(QByteArray(2000, 'x')) && text.flush());
    for (const QString &path : {text.fileName(), m_folder->filePath("no/folder")}) {
        QString error;
        QVERIFY(!open(path, &error));
        QVERIFY2(error.contains(path), qPrintable(error));
    }
}

QTEST_MAIN(tst_OwnDatabase)
#include "tst_owndatabase.moc"
