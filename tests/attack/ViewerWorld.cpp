// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ViewerWorld.h"

#include "tests/DrawingFiles.h"
#include "tests/PickerSupport.h"

#include "viewer/canvas/Canvas.h"
#include "viewer/canvas/CanvasPanes.h"
#include "viewer/canvas/DrawingLoader.h"
#include "viewer/window/Document.h"
#include "viewer/window/LayerDock.h"
#include "viewer/window/MainWindow.h"
#include "viewer/window/PropertyEditor.h"
#include "viewer/window/UndoCommands.h"

#include <QtWidgets>

using namespace OvCc;
using namespace Tessa;

namespace Attack {

namespace {

constexpr auto pressed = QEvent::MouseButtonPress;
constexpr auto released = QEvent::MouseButtonRelease;
constexpr int mostAnswers = 20; // to one event, before what asks is closed

template <class Values>
auto pick(const Values &list, quint32 number)
{
    return std::begin(list)[number % quint32(std::size(list))];
}

template <class T>
T pick(std::initializer_list<T> list, quint32 number)
{
    return list.begin()[number % list.size()];
}

/// Small drawings of several versions with odd names, a broken one, one without tables, and a sample.
QStringList makeDrawings(const QString &folder)
{
    const QString entities =
            "0 LINE|8 Blue|10 0|20 40|11 50|21 45|0 TEXT|8 Red|62 3|10 2|20 32|40 4|1 Text|0 XLINE|"
            "8 0|10 30|20 15|11 1|21 0.2|0 INSERT|8 Blue|2 B|10 30|20 30|0 3DFACE|8 Red|10 50|20 0|"
            "30 0|11 60|21 0|31 5|12 60|22 10|32 5|13 50|23 10|33 0|"
            + square(0, 0, "8 Red") + square(20, 0, "8 Off") + square(40, 0, "8 Frozen|62 4");
    const QByteArray small = fileContent(::file(block("B", square(0, 0, "8 0")), entities));
    const auto with = [&small](const char *before, const QByteArray &after) {
        return QByteArray(small).replace(before, after);
    };
    const QByteArrayList contents{
            small,
            with("AC1018", "AC1009"),
            with("AC1018", "AC1032"),
            with("Red", QByteArray(255, 'N')).replace("Off", "N & \"A\""),
            small.left(600),
            "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\nA\n11\n9\n0\nENDSEC\n0\nEOF\n",
            fileContent(OVCC_SOURCE_DIR "/viewer/sample/gardenhouse.dxf")};
    QStringList files;
    for (const QByteArray &content : contents) {
        files += folder + '/' + QString(1 + files.size() * 9, 'a') + ".dxf";
        QFile file(files.last());
        if (file.open(QIODevice::WriteOnly))
            file.write(content);
    }
    return files;
}

class ViewerWorld : public World
{
public:
    static const std::pair<Kind, void (ViewerWorld::*)(const Event &)> kinds[];

    ViewerWorld()
    {
        // What depends on the clock happens at once, or never.
        QApplication::setDoubleClickInterval(0);
        QApplication::setCursorFlashTime(0);
        m_timer.setSingleShot(true);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { answer(); });
        m_editor.attach(&m_panel);
        reopen({});
        drop({});
        settle();
    }

    void play(const Event &event) override
    {
        const bool wasLoading = document().isLoading();
        m_window->show();
        m_random.seed(event.c);
        expectQuestions(Mode::Playing);
        (this->*kinds[event.kind].second)(event);
        m_mode = Mode::Idle;
        // The next event may find a drawing that is still being read, but not the one after it.
        if (wasLoading || !document().isLoading())
            settle();
    }

    QString wrong() override
    {
        m_wrong.clear();
        m_window->showNormal();
        m_window->activateWindow();
        closeDialogs();
        for (const Canvas *canvas : canvases())
            QTest::mouseRelease(canvas->viewport(), Qt::LeftButton, {}, {-1, -1});
        m_window->layerDock()->finishEditing();
        settle();
        checkScreen();
        checkCommands();
        if (database()) {
            checkLayers();
            checkSelection();
            checkFile();
            checkUndo();
        }
        checkCommands();
        return m_wrong;
    }

private:
    enum class Mode { Idle, Playing, Settling, Saving };

    /// A widget in sight; what lies over the window goes first, then what there is most to do with.
    QWidget *target(const Event &event) const
    {
        const QWidget *over = asking();
        QWidgetList widgets = (over ? over : m_window.get())->findChildren<QWidget *>();
        if (!over && event.a % 2) {
            const LayerTableWidget &table = *m_window->layerDock()->panel()->table();
            widgets = {table.viewport(), table.frozenView()->viewport()};
            for (const Canvas *canvas : canvases())
                widgets += canvas->viewport();
        }
        const auto isHidden = [](const QWidget *it) { return !it->isVisible(); };
        widgets.erase(std::remove_if(widgets.begin(), widgets.end(), isHidden), widgets.end());
        return widgets.isEmpty() ? m_window.get() : pick(widgets, event.a / 2);
    }

    /// Presses and the like, each but the first some pixels further.
    void gesture(const Event &event, std::initializer_list<QEvent::Type> types,
                 QPoint step = {}) const
    {
        using namespace Qt;
        const QPointer<QWidget> widget = target(event);
        QPoint at(int(event.b % quint32(widget->width() + 1)),
                  int(event.b / 5000 % quint32(widget->height() + 1)));
        for (const auto type : types) {
            if (widget && widget->window()->windowHandle())
                ::mouse(type, widget, at,
                        pick({LeftButton, LeftButton, LeftButton, MiddleButton, RightButton},
                             event.c),
                        pick({NoModifier, NoModifier, ControlModifier, ShiftModifier},
                             event.c / 5));
            at += step;
        }
    }

    void press(const Event &event) { gesture(event, {pressed}); }
    void move(const Event &event) { gesture(event, {QEvent::MouseMove}); }
    void release(const Event &event) { gesture(event, {released}); }
    void click(const Event &event) { gesture(event, {pressed, released}); }
    void doubleClick(const Event &event)
    {
        gesture(event, {pressed, released, QEvent::MouseButtonDblClick, released});
    }
    void wheel(const Event &event) { ::wheel(target(event), {int(event.b % 5) * 120 - 240}); }

    void drag(const Event &event)
    {
        gesture(event, {pressed, QEvent::MouseMove, QEvent::MouseMove, released},
                {int(event.c / 20 % 200) - 100, int(event.c / 4000 % 100) - 50});
    }

    /// What has the focus may go with the press of a key.
    void key(const Event &event)
    {
        using namespace Qt;
        const Key key = pick({Key_Return, Key_Escape, Key_Tab, Key_Up, Key_Down, Key_Left,
                              Key_Right, Key_Home, Key_Space, Key_Delete, Key_F2, Key_A, Key_0,
                              Key_Ampersand, Key_Slash},
                             event.c);
        const KeyboardModifier modifier = pick(
                {NoModifier, NoModifier, NoModifier, ControlModifier, AltModifier, ShiftModifier},
                event.b);
        for (const auto act : {QTest::Press, QTest::Release}) {
            QWidget *popup = QApplication::activePopupWidget();
            QWidget *focus = popup ? popup->focusWidget() : QApplication::focusWidget();
            focus = focus || !popup ? focus : popup;
            QTest::sendKeyEvent(act, focus ? focus : target(event), key, QString(QChar(key & 0x7f)),
                                modifier);
        }
    }

    void action(const Event &event)
    {
        QAction *action = pick(all<QAction>(), event.a);
        const auto *owner = qobject_cast<QWidget *>(action->parent());
        if (event.b % 2 && !action->shortcut().isEmpty())
            QTest::keySequence(m_window.get(), action->shortcut());
        else if (action->isEnabled() && (!owner || owner->isEnabled()))
            action->trigger();
    }

    /// Mostly one of the small drawings.
    void drop(const Event &event)
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(pick(m_files.mid(0, event.b % 4 ? 5 : -1), event.a))});
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QDropEvent drop({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_window.get(), &enter);
        if (enter.isAccepted())
            QApplication::sendEvent(m_window.get(), &drop);
    }

    void look(const Event &event)
    {
        const bool isOne = event.b % 2;
        const QString sheet = event.b % 3 ? "" : fileContent(OVCC_SOURCE_DIR "/docs/slate.qss");
        QEvent language(QEvent::LanguageChange);
        LayerDock *dock = m_window->layerDock();
        const std::function<void()> changes[]{
                [&] { m_window->hide(); },
                [&] { m_window->setWindowState(isOne ? Qt::WindowMinimized : Qt::WindowNoState); },
                [&] { m_window->move(int(event.b % 100), int(event.c % 100)); },
                [&] { m_window->resize(isOne ? 1 : 800, isOne ? 1 : 500); },
                [&] { m_window->resize(int(event.b % 900), int(event.c % 700)); },
                [&] { dock->setFloating(!dock->isFloating()); },
                [&] { dock->setVisible(!dock->isVisible()); },
                [&] { m_window->addDockWidget(Qt::DockWidgetArea(1 << event.b % 4), dock); },
                [&] { QApplication::setStyle(isOne ? "Fusion" : "Windows"); },
                [&] { qApp->setStyleSheet(sheet); },
                [&] { QApplication::setPalette(isOne ? QColor(event.c) : QPalette()); },
                [&] { QApplication::setFont(QFont("Sans", int(event.b % 12) + 4)); },
                [&] { QApplication::setLayoutDirection(Qt::LayoutDirection(isOne)); },
                [&] { QLocale::setDefault(isOne ? QLocale::German : QLocale::C); },
                [&] { QApplication::sendEvent(qApp, &language); },
        };
        pick(changes, event.a)();
    }

    /// The host tells one window only.
    void reopen(const Event &)
    {
        if (m_window)
            m_window->close();
        m_window = nullptr;
        m_window = std::make_unique<MainWindow>();
        m_window->setAnimated(false);
        m_window->resize(800, 500);
        m_window->show();
        m_window->activateWindow();
        QObject::connect(&document(), &Document::saved, m_window.get(),
                         [this](const QStringList &remarks) { m_lost = remarks; });
    }

    void layer(const Event &event)
    {
        if (!database())
            return;
        const auto rows = layerRows();
        const QString name = pick(rows, event.a).at(NameColumn);
        const QString fresh = pick({"Zinc", "zinc", "N & n", "0", "", "a/b"}, event.c);
        const bool isOne = event.c % 2;
        KcHost::LayerChange change;
        change.linetype = pick({"Dash", "Continuous", "none"}, event.a);
        change.trueColor = event.c;
        change.description = fresh;
        const std::function<void()> changes[]{
                [&] { KcHost::addLayer(*database(), fresh); },
                [&] { KcHost::eraseLayer(*database(), name); },
                [&] { KcHost::eraseLayerWithEntities(*database(), name); },
                [&] { KcHost::renameLayer(*database(), name, fresh); },
                [&] { KcHost::mergeLayer(*database(), name, pick(rows, event.c).at(NameColumn)); },
                [&] { KcHost::setCurrentLayer(*database(), name); },
                [&] { KcHost::changeLayer(*database(), name, change); },
                [&] { OvLayerUtility().setLayerOff(name, isOne); },
                [&] { OvLayerUtility().setLayerFrozen(name, isOne); },
                [&] { OvLayerUtility().setLayerLock(name, isOne); },
        };
        pick(changes, event.b)();
    }

    void entity(const Event &event)
    {
        if (!database() || drawing()->geometry.modelSpace().entities.empty())
            return;
        KcHost::EntityChange change;
        if (event.b % 3 == 0)
            change.layer = pick(layerRows(), event.c).at(NameColumn);
        else if (event.b % 3 == 1)
            change.color = int(event.c % 257);
        else
            change.linetype = pick({"ByLayer", "ByBlock", "Dash"}, event.c);
        const auto &entities = drawing()->geometry.modelSpace().entities;
        KcHost::changeEntity(*database(), entities[event.a % entities.size()].record, change);
    }

    void undo(const Event &event)
    {
        if (database())
            steps().setIndex(event.b % 4 ? steps().index() + int(event.a % 5) - 2
                                         : int(event.a % quint32(steps().count() + 1)));
    }

    /// A layer is open elsewhere during a click.
    void hold(const Event &event)
    {
        KcDbLayerTableRecord *layer =
                database() ? getLayerByName(pick(layerRows(), event.c).at(NameColumn)) : nullptr;
        click(event);
        if (layer)
            layer->close();
    }

    /// Writes or removes the file of a drawing or of states, or puts a folder in its place.
    void file(const Event &event)
    {
        QString path = drawing() && event.c % 3 ? drawing()->fileName : pick(m_files, event.a);
        if (event.c % 4 == 0)
            path.replace(".dxf", ".states.json");
        const QByteArray before = fileContent(path);
        if (!path.startsWith(m_folder.path()) || (!QFile::remove(path) && !QDir().rmdir(path)))
            return;
        if (event.b % 5 == 0)
            QDir().mkdir(path);
        QFile file(path);
        if (event.b % 5 > 1 && file.open(QIODevice::WriteOnly))
            file.write(pick({before + "999\n9\n", QByteArray("{\"A\": 1}"), m_first}, event.b));
    }

    static QWidget *asking()
    {
        QWidget *popup = QApplication::activePopupWidget();
        return popup ? popup : QApplication::activeModalWidget();
    }

    static void closeDialogs()
    {
        while (QWidget *widget = asking())
            widget->close();
    }

    void settle()
    {
        expectQuestions(Mode::Settling);
        QCoreApplication::processEvents();
        while (document().isLoading())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_mode = Mode::Idle;
    }

    void expectQuestions(Mode mode)
    {
        m_mode = mode;
        m_answers = 0;
        m_timer.start(0);
    }

    /// Comes in the event loops of dialogs, menus and drags, as long as there is one.
    void answer()
    {
        if (m_mode == Mode::Idle)
            return;
        m_timer.start(0);
        const auto number = [this] { return quint32(m_random.generate()); };
        QWidget *asked = m_mode == Mode::Playing ? asking() : QApplication::activeModalWidget();
        auto *box = qobject_cast<QMessageBox *>(asked);
        if (!asked && m_mode == Mode::Playing)
            QTest::keyClick(m_window.get(), Qt::Key_Escape); // ends a drag
        else if (!asked)
            return;
        else if (m_mode == Mode::Saving && box && box->button(QMessageBox::Cancel))
            box->buttons().constFirst()->click(); // overwrites the file
        else if (++m_answers > mostAnswers || m_mode == Mode::Saving)
            asked->close();
        else if (auto *files = qobject_cast<QFileDialog *>(asked))
            choose(*files, number());
        else
            (this
                     ->*pick({&ViewerWorld::click, &ViewerWorld::click, &ViewerWorld::key,
                              &ViewerWorld::layer, &ViewerWorld::file},
                             number()))({0, number(), number(), number()});
    }

    /// Nothing but names: a click could reach the files of others.
    void choose(const QFileDialog &files, quint32 number) const
    {
        const QStringList odd{m_folder.filePath("new.dxf"), m_folder.filePath("none/a"),
                              m_folder.path(), ""};
        auto *name = files.findChild<QLineEdit *>("fileNameEdit");
        name->setText(pick(m_files + odd, number));
        QTest::keyPress(name, number / 99 % 4 ? Qt::Key_Return : Qt::Key_Escape);
    }

    template <class Widget>
    const QList<Widget *> all() const
    {
        return m_window->findChildren<Widget *>();
    }

    const QVector<Canvas *> canvases() const { return m_window->panes()->shown(); }
    Document &document() const { return *m_window->findChild<Document *>(); }
    const Drawing *drawing() const { return m_window->drawing(); }
    KcDbDatabase *database() const { return drawing() ? drawing()->database.get() : nullptr; }
    QUndoStack &steps() const { return *KcHost::undoStack(*database()); }

    void expect(bool holds, const char *what)
    {
        if (!holds && m_wrong.isEmpty())
            m_wrong = what;
    }

    /// @return whether the file can hold all of the drawing, and does
    bool save()
    {
        m_lost.clear();
        expectQuestions(Mode::Saving);
        const bool isSaved = document().save();
        closeDialogs();
        settle();
        return isSaved && m_lost.isEmpty();
    }

    void checkCommands()
    {
        const QUndoStack none;
        const QUndoStack &stack = database() ? steps() : none;
        const auto *commands = m_window->findChild<UndoCommands *>();
        const auto check = [this](const QAction *action, bool can, const QString &step) {
            expect(action->isEnabled() == can, "whether the commands are enabled");
            expect(action->text().replace("&&", "&").endsWith(step), "the texts of the commands");
        };
        check(commands->undoAction(), stack.canUndo(), stack.undoText());
        check(commands->redoAction(), stack.canRedo(), stack.redoText());
        expect(m_window->isWindowModified() != stack.isClean(), "the mark of the title");
    }

    void checkLayers()
    {
        const QAbstractItemModel &model = *m_window->layerDock()->panel()->table()->model();
        QList<QStringList> rows;
        for (int row = 0; row < model.rowCount(); ++row) {
            rows += QStringList();
            for (int column = 0; column < LayerColumnCount; ++column)
                rows.last() += model.index(row, column).data().toString();
        }
        sortByName(rows);
        expect(rows == layerRows(), "the layer manager");

        const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
        LayerItemData current;
        OvLayerUtility().getCurrentLayer(current);
        for (LayerComboBox *box : all<LayerComboBox>()) {
            expect(box->count() == layers->size(), "the number of rows in a layer box");
            for (int row = 0; row < qMin(box->count(), int(layers->size())); ++row) {
                const LayerItemData is = box->layerItem(row)->currentLayerData();
                const LayerItemData &layer = layers->at(row);
                expect(is.name == layer.name && is.isOn == layer.isOn && is.color == layer.color
                               && is.isFrozen == layer.isFrozen && is.isLocked == layer.isLocked,
                       "a row in a layer box");
            }
            const QStringList shown = box->shownLayers() + QStringList(current.name);
            const QString face = box->lineEdit()->findChildren<QLabel *>().last()->text();
            expect(face == (shown.size() > 2 ? "Varies" : shown.first()), "a layer box's face");
        }
    }

    void checkSelection()
    {
        const QSet<int> selection = m_window->panes()->current()->selection();
        QSet<QString> layers;
        for (const int index : selection) {
            const Entity &entity = drawing()->geometry.modelSpace().entities.at(index);
            layers += drawing()->layers.nameOf(entity.style.layer);
            expect(!entity.isErased, "the selection of what is gone");
        }
        for (const LayerComboBox *box : all<LayerComboBox>()) {
            const QStringList shown = box->shownLayers();
            expect(QSet<QString>(shown.begin(), shown.end()) == layers, "the selection's layers");
        }
        for (const Canvas *canvas : canvases())
            expect(canvas->selection() == selection, "the selection of a canvas");
        m_editor.setDrawing(drawing());
        m_editor.setSelection(selection);
        const auto textsOf = [](const PropertyManager &panel) {
            return textOf(*panel.colorPicker()) + textOf(*panel.lineWeightPicker())
                   + textOf(*panel.lineTypePicker());
        };
        for (const PropertyManager *panel : all<PropertyManager>())
            expect(textsOf(*panel) == textsOf(m_panel), "the pickers");
        m_editor.setDrawing(nullptr);
    }

    /// What is saved and read again: the layers, and each canvas with the same view.
    void checkFile()
    {
        if (!save())
            return;
        QString error;
        const std::unique_ptr<Drawing> saved = readDrawing(drawing()->fileName, error);
        expect(saved != nullptr, "the file");
        if (!saved)
            return;
        const auto rows = layerRows();
        KcHost::setWorkingDatabase(saved->database.get());
        expect(layerRows() == rows, "the layers in the file");
        KcHost::setWorkingDatabase(database());
        for (Canvas *canvas : canvases()) {
            auto *item = static_cast<DrawingItem *>(canvas->scene()->items().constFirst());
            const QRectF scene = canvas->sceneRect();
            const double reach = qMax(scene.width(), scene.height());
            const auto picture = [&](const Drawing *drawing) {
                item->setDrawing(drawing);
                item->setRoom(item->mapRectFromScene(
                        {scene.center() - QPointF(reach, reach), 2 * QSizeF(reach, reach)}));
                return canvas->viewport()->grab().toImage();
            };
            const QImage expected = picture(saved.get());
            expect(picture(drawing()) == expected, "a canvas");
            item->setSelection(canvas->selection());
        }
    }

    /// All undone, the file has its first bytes.
    void checkUndo()
    {
        const auto rows = layerRows();
        const int index = steps().index();
        steps().setIndex(0);
        if (save())
            expect(fileContent(drawing()->fileName) == KcHost::fileContent(*database()),
                   "the bytes");
        steps().setIndex(index);
        settle();
        expect(layerRows() == rows, "the layers after redo");
        checkLayers();
    }

    /// What was painted, in parts, beside what would be painted now; lines without ends differ a bit.
    void checkScreen()
    {
        QEvent update(QEvent::UpdateRequest);
        QApplication::sendEvent(m_window.get(), &update);
        const QWidget &panes = *m_window->panes();
        const QPixmap screen = m_window->screen()->grabWindow(m_window->winId());
        const QRect place = panes.visibleRegion().boundingRect().translated(
                                    panes.mapTo(m_window.get(), QPoint()))
                            & screen.rect(); // which is late where the window was minimized
        if (place.isEmpty())
            return;
        const QImage is = screen.copy(place).toImage().convertToFormat(QImage::Format_RGB32);
        const QImage now = m_window->grab(place).toImage().convertToFormat(QImage::Format_RGB32);
        const auto isNear = [](uchar one, uchar other) { return std::abs(one - other) < 100; };
        expect(is.size() == now.size()
                       && std::equal(is.bits(), is.bits() + is.sizeInBytes(), now.bits(), isNear),
               "the screen");
    }

    QTemporaryDir m_folder;
    const QStringList m_files = makeDrawings(m_folder.path());
    const QByteArray m_first = fileContent(m_files.first());
    PropertyManager m_panel; ///< shows what those of the window are to show
    PropertyEditor m_editor;
    std::unique_ptr<MainWindow> m_window;
    QRandomGenerator m_random; ///< for the answers to one event
    QTimer m_timer;
    int m_answers = 0;
    Mode m_mode = Mode::Idle;
    QStringList m_lost; ///< what the file saved last cannot hold
    QString m_wrong;
};

const std::pair<Kind, void (ViewerWorld::*)(const Event &)> ViewerWorld::kinds[]{
        {{"press", 6}, &ViewerWorld::press},
        {{"move", 8}, &ViewerWorld::move},
        {{"release", 8}, &ViewerWorld::release},
        {{"click", 24}, &ViewerWorld::click},
        {{"double-click", 4}, &ViewerWorld::doubleClick},
        {{"drag", 8}, &ViewerWorld::drag},
        {{"wheel", 6}, &ViewerWorld::wheel},
        {{"key", 16}, &ViewerWorld::key},
        {{"action", 8}, &ViewerWorld::action},
        {{"drop", 1}, &ViewerWorld::drop},
        {{"look", 4}, &ViewerWorld::look},
        {{"reopen", 1}, &ViewerWorld::reopen},
        {{"layer", 6}, &ViewerWorld::layer},
        {{"entity", 4}, &ViewerWorld::entity},
        {{"undo", 3}, &ViewerWorld::undo},
        {{"hold", 2}, &ViewerWorld::hold},
        {{"file", 2}, &ViewerWorld::file}};

} // namespace

WorldKind viewer()
{
    QVector<Kind> kinds;
    for (const auto &[kind, play] : ViewerWorld::kinds)
        kinds += kind;
    return {kinds, [] { return std::unique_ptr<World>(std::make_unique<ViewerWorld>()); }};
}

} // namespace Attack
