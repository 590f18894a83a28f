// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "tests/Support.h"
#include "viewer/window/MainWindow.h"

#include <QElapsedTimer>
#include <QGestureRecognizer>
#include <QPixmapCache>
#include <QPluginLoader>
#include <QRandomGenerator>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <atomic>
#include <cstdio>

#include <malloc.h>
#include <unistd.h>

extern Q_DECL_IMPORT quintptr qtHookData[]; // what Qt keeps for tools that follow its objects

using namespace OvCc;

namespace {

std::atomic<int> objects, finds;
QObject *lastMade = nullptr, *pixmapCache = nullptr;

void report(const QByteArray &what, double count)
{
    std::printf("%s: %g\n", what.constData(), count);
    ++finds;
}

struct Kind
{
    QByteArray name;
    std::function<QObject *()> make;
    int livesAtOnce = 100;
    double bytes = 1e9; ///< that a life left in the best round but the first
};

QObject *makeLinked()
{
    auto *window = new QWidget;
    auto *link = new LayerLink(window);
    link->add(new LayerManager(window));
    link->add(new LayerComboBox(window));
    new StackWidget(new LayerControl(window), window);
    return window;
}

QObject *makeWindow()
{
    auto *window = new Tessa::MainWindow;
    QSignalSpy opened(window, &Tessa::MainWindow::opened);
    window->open(QStringLiteral(OVCC_SOURCE_DIR "/viewer/sample/floorplan.dxf"));
    if (!opened.wait(60000))
        report("a window opens no drawing", 1);
    return window;
}

template <class... Classes>
void addKinds(std::vector<Kind> &kinds)
{
    (kinds.push_back({Classes::staticMetaObject.className(), [] { return new Classes(nullptr); }}),
     ...);
}

/// What Qt Designer offers, and the rest.
std::vector<Kind> allKinds()
{
    std::vector<Kind> kinds{{"a link", makeLinked}, {"a window", makeWindow, 5}};
    addKinds<LayerModel, LayerDelegate, OvLineWeightDialog, LayerLineWeightDialog,
             LayerLineTypeDialog, LayerWarningDialog>(kinds);
    QPluginLoader plugin(OVCC_DESIGNER_PLUGIN);
    const auto *offer = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(plugin.instance());
    const auto widgets = offer->customWidgets();
    for (QDesignerCustomWidgetInterface *each : widgets)
        kinds.push_back({each->name().toLatin1(), [each] { return each->createWidget(nullptr); }});
    return kinds;
}

std::unique_ptr<QObject> shown(const Kind &kind)
{
    std::unique_ptr<QObject> object(kind.make());
    if (auto *widget = qobject_cast<QWidget *>(object.get()))
        widget->show();
    QCoreApplication::processEvents();
    return object;
}

/// Takes away what is left on purpose, too: a dialog for each delegate, thirteen titles for each table.
void live(Kind &kind, bool isFirst)
{
    const double bytes = double(mallinfo2().uordblks);
    const int before = objects, titles = int(headerList.size());
    int tables = 0, dialogs = 0;
    for (int life = 0; life < kind.livesAtOnce; ++life) {
        const auto object = shown(kind);
        const auto all = object->findChildren<QObject *>() << object.get();
        for (const QObject *each : all) {
            tables += each->inherits("OvCc::LayerTableWidget") ? 1 : 0;
            dialogs += each->inherits("OvCc::LayerDelegate") ? 1 : 0;
        }
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    const QWidgetList windows = QApplication::topLevelWidgets();
    if (windows.size() != dialogs || headerList.size() != titles + 13 * tables)
        report(kind.name + " leaves other windows or titles", windows.size() - dialogs);
    qDeleteAll(windows);
    headerList = headerList.mid(0, titles);
    QPixmapCache::clear();
    QTimerEvent names(0); // which clear() leaves
    QCoreApplication::sendEvent(pixmapCache, &names);
    if (isFirst)
        return;
    if (objects != before)
        report(kind.name + " leaves objects", objects - before);
    kind.bytes = qMin(kind.bytes, (double(mallinfo2().uordblks) - bytes) / kind.livesAtOnce);
}

/// What an application of its own shows in each widget.
QList<QImage> picturesOf(int argc, char **argv, bool isOther)
{
    const QApplication application(argc, argv);
    QPixmapCache::insert("any", QPixmap(1, 1)); // which makes the cache, the first time
    pixmapCache = pixmapCache ? pixmapCache : lastMade;
    QApplication::setStyle(isOther ? "Windows" : "Fusion");
    QApplication::setFont(QFont("DejaVu Sans", isOther ? 12 : 9));
    const OpenDrawing drawing(drawingWithLayers({"a", "b"}));
    QList<QImage> pictures;
    for (const Kind &kind : allKinds()) {
        const auto object = shown(kind);
        if (auto *widget = qobject_cast<QWidget *>(object.get()); widget && kind.livesAtOnce > 5)
            pictures.append(widget->grab().toImage());
    }
    return pictures;
}

} // namespace

int main(int argc, char **argv)
{
    // What is free counts as free only where the C library keeps none of it aside.
    if (!::getenv("GLIBC_TUNABLES")) {
        qputenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0");
        ::execv("/proc/self/exe", argv);
    }
    const QStringList words(argv, argv + argc);
    const qint64 seconds = words.value(1) == "--all" ? 3600 : words.value(1, "20").toInt();
    const uint seed = words.value(2, QString::number(::getpid())).toUInt();
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::printf("seed %u\n", seed);
    QElapsedTimer time;
    time.start();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &message) {
        if (!message.startsWith("This plugin does not support"))
            report(message.toUtf8(), 1);
    });
    qtHookData[3] = quintptr(+[](QObject *object) { ++objects, lastMade = object; });
    qtHookData[4] = quintptr(+[](QObject *) { --objects; });

    const QList<QImage> pictures = picturesOf(argc, argv, false);
    const bool isOther = picturesOf(argc, argv, true) != pictures;
    if (!isOther || picturesOf(argc, argv, false) != pictures)
        report("the third application is not like the first", 1);

    const QApplication application(argc, argv);
    QWidget().grabGesture(Qt::PanGesture); // and by nobody else: Qt keeps some of them
    QGestureRecognizer::unregisterRecognizer(Qt::PanGesture);
    const OpenDrawing drawing(drawingWithLayers({"a", "b"}));
    std::vector<Kind> kinds = allKinds();
    QRandomGenerator random(seed);
    std::shuffle(kinds.begin(), kinds.end(), random);
    int rounds = 0;
    do {
        for (Kind &kind : kinds)
            live(kind, rounds == 0);
    } while (++rounds < 2 || (rounds <= 10 && time.elapsed() < seconds * 1000));
    // What Qt keeps for later use settles after some rounds.
    int lives = 0;
    double bytes = 0;
    for (const Kind &kind : kinds) {
        lives += rounds * kind.livesAtOnce;
        bytes = qMax(bytes, kind.bytes);
        if (kind.bytes > 60000.0 / kind.livesAtOnce / rounds)
            report(kind.name + " leaves bytes a life", kind.bytes);
    }
    std::printf("attack-lives: %d lives, %d kinds, %g bytes a life at most, %d finds\n", lives,
                int(kinds.size()), bytes, int(finds));
    return finds > 0;
}
