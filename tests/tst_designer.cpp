// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "PickerSupport.h"
#include "ui_AllWidgets.h"

#include <QBuffer>
#include <QDirIterator>
#include <QPluginLoader>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUiLoader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

using namespace OvCc;

namespace {

const QString formFile = QStringLiteral(OVCC_SOURCE_DIR "/tests/designer/AllWidgets.ui");

/// What QUiLoader makes of @p form by the plugin.
std::unique_ptr<QWidget> load(QByteArray form)
{
    QUiLoader loader;
    loader.clearPluginPaths();
    loader.addPluginPath(QFileInfo(OVCC_DESIGNER_PLUGIN).path());
    QBuffer device(&form);
    return std::unique_ptr<QWidget>(loader.load(&device));
}

/// Clicks on all that can be seen of @p form, and closes the menus and lists that this opens.
void clickEverywhere(const QWidget &form)
{
    QTimer closing;
    QObject::connect(&closing, &QTimer::timeout, &closing, [] {
        if (QWidget *popup = QApplication::activePopupWidget())
            popup->close();
    });
    closing.start(0);
    const auto widgets = form.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (widget->isVisible() && widget->window() == &form)
            click(widget);
    }
}

} // namespace

/// The plugin and the forms that hold its widgets, all without a working drawing.
class tst_Designer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void offers();
    void forms();
};

/// Whatever is said fails the test, but for what the screen that is none says.
void tst_Designer::initTestCase()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
        QVERIFY2(text.startsWith("This plugin does not support"), qPrintable(text));
    });
}

/// On offer is what the public headers declare with the constructor that uic calls, but no dialogs. It
/// is what it says to be, is drawn in both sizes, described, and in the form that is tried here. Where
/// Designer makes one, the user's settings stay as they are.
void tst_Designer::offers()
{
    QPluginLoader loader(OVCC_DESIGNER_PLUGIN);
    const auto *plugin =
            qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    const QByteArray form = fileContent(formFile);
    const QByteArray page = fileContent(OVCC_SOURCE_DIR "/docs/designer.md");
    static const QRegularExpression property("`([a-z]\\w+)`");
    QMap<QString, QString> offered;
    QList<QImage> pictures;
    const auto widgets = plugin->customWidgets();
    for (QDesignerCustomWidgetInterface *widget : widgets) {
        widget->initialize(nullptr);
        const QByteArray name = widget->name().toUtf8();
        const QByteArray bare = name.mid(name.indexOf("::") + 2);
        offered.insert(bare, widget->includeFile());
        const auto made = load(widget->domXml().toUtf8());
        QCOMPARE(made->metaObject()->className(), name.constData());
        QVERIFY(made->width() >= qMin(made->minimumSizeHint().width(), made->maximumWidth()));
        QVERIFY2(form.contains("<widget class=\"" + name), name);
        const QByteArray row = "| `" + bare + "` | " + widget->toolTip().toUtf8() + " |";
        QVERIFY2(page.contains(row), name);
        const QByteArray told = page.mid(page.indexOf(row) + row.size()).split('\n').first();
        for (auto found = property.globalMatch(told); found.hasNext();)
            QVERIFY2(made->property(qPrintable(found.next().captured(1))).isValid(), told);
        for (const int size : {16, 22}) {
            pictures.append(widget->icon().pixmap(64, size).toImage());
            QCOMPARE(pictures.last().size(), QSize(size, size));
            QCOMPARE(pictures.indexOf(pictures.last()), pictures.size() - 1);
        }
    }
    QVERIFY(QDir(QStandardPaths::writableLocation(QStandardPaths::ConfigLocation)).isEmpty());

    QMap<QString, QString> declared;
    static const QRegularExpression constructor("explicit (\\w+)(?<!Dialog)\\(QWidget \\*");
    QDirIterator headers(OVCC_INCLUDE_DIR "/OvCustomControl", QDir::Files);
    while (headers.hasNext()) {
        const QList<QByteArray> forward = fileContent(headers.next()).split('"');
        const QByteArray header = fileContent(forward.value(1, ":/"));
        const QString name = constructor.match(header).captured(1);
        if (name.isEmpty())
            continue;
        declared.insert(name, "<OvCustomControl/" + headers.fileName() + '>');
        QVERIFY2(header.contains("@image html " + name.toUtf8() + ".png"), qPrintable(name));
    }
    QCOMPARE(offered, declared);
}

/// However a form was made, it looks the same, has what it says, connections included, and no click
/// does harm.
void tst_Designer::forms()
{
    QList<QImage> pictures;
    const auto loaded = load(fileContent(formFile));
    const auto pieces = fileContent(formFile).split('<');
    QWidget compiled;
    Ui::AllWidgets().setupUi(&compiled);
    for (QWidget *form : {loaded.get(), &compiled}) {
        const auto find = [form](const char *name) { return form->findChild<QWidget *>(name); };
        for (const QByteArray &piece : pieces) {
            if (piece.startsWith("widget class=\"OvCc"))
                QVERIFY2(find(piece.split('"').at(3)), piece);
        }
        QCOMPARE(find("qOvColorComboBox")->property("currentRow"), int(RedRow));
        QCOMPARE(find("layerControl")->property("folded"), false);
        QCOMPARE(find("viewButton")->property("view"), int(SouthwestView));
        QCOMPARE(find("listView")->property("buttonText"), "Others...");
        pictures.append(form->grab().toImage());

        showOnScreen(*form);
        for (const bool isHidden : {true, false}) {
            click(find("layerControl"), {178, 12});
            QCOMPARE(find("propertyManager")->isHidden(), isHidden);
        }
        click(find("minMaxButton"), {50, 10});
        QVERIFY(find("layerManager")->isHidden());
        find("layerManager")->show();
        clickRow(*form->findChild<LineTypeComboBox *>(), ContinuousRow);
        QCOMPARE(find("searchLayerEdit")->property("text"), "Continuous");
        clickRow(*form->findChild<QOvColorComboBox *>(), BlueRow);
        QCOMPARE(find("viewButton")->property("view"), int(BlueRow));
        clickEverywhere(*form);
    }
    QCOMPARE(pictures.at(0), pictures.at(1));
}

QTEST_MAIN(tst_Designer)
#include "tst_designer.moc"
