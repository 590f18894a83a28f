// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "World.h"

#include "tests/Changes.h"
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
    ViewerWorld()
    {
        add("action", 8, &ViewerWorld::action);
        add("drop", 1, &ViewerWorld::drop);
        add("dock", 3, &ViewerWorld::dock);
        add("reopen", 1, &ViewerWorld::reopen);
        add("entity", 4, &ViewerWorld::entity);
        add("hold", 2, &ViewerWorld::hold);
        add("file", 2, &ViewerWorld::file);
        addBeneath({"layer", "file"});
        m_editor.attach(&m_panel);
        reopen({});
        drop({});
        settle();
    }

    void play(const Act &act, const Event &event) override
    {
        const bool wasLoading = document().isLoading();
        m_window->show();
        World::play(act, event);
        // The next event may find a drawing that is still being read, but not the one after it.
        if (wasLoading || !document().isLoading())
            settle();
    }

protected:
    QWidgetList roots() const override { return {m_window.get()}; }
    QWidget *root(quint32) override { return m_window.get(); }

    /// What there is most to do with goes first.
    QWidgetList targets(quint32 number) override
    {
        if (number % 2)
            return World::targets(number);
        const LayerTableWidget &table = *m_window->layerDock()->panel()->table();
        QWidgetList widgets{table.viewport(), table.frozenView()->viewport()};
        for (const Canvas *canvas : canvases())
            widgets += canvas->viewport();
        return widgets;
    }

    bool answerItself(QWidget *asked) override
    {
        const auto *box = qobject_cast<QMessageBox *>(asked);
        if (mode() == Mode::Saving && box && box->button(QMessageBox::Cancel))
            box->buttons().constFirst()->click(); // overwrites the file
        else if (mode() == Mode::Saving)
            asked->close();
        else if (const auto *files = qobject_cast<QFileDialog *>(asked); files && answers() < 20)
            choose(*files, number());
        else
            return false;
        return true;
    }

    void check() override
    {
        m_window->showNormal();
        m_window->activateWindow();
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
    }

private:
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

    void dock(const Event &event)
    {
        LayerDock *dock = m_window->layerDock();
        if (event.a % 4 == 0)
            dock->setFloating(!dock->isFloating());
        else if (event.a % 4 == 1)
            dock->setVisible(!dock->isVisible());
        else
            m_window->addDockWidget(Qt::DockWidgetArea(1 << event.b % 4), dock);
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

    void entity(const Event &event)
    {
        if (!database() || drawing()->geometry.modelSpace().entities.empty())
            return;
        const auto &entities = drawing()->geometry.modelSpace().entities;
        const QStringList properties[]{{"layer", layerName(event.c)},
                                       {"color", QString::number(event.c % 257)},
                                       {"type", pick({"ByLayer", "ByBlock", "Dash"}, event.c)}};
        const int record = entities[event.a % entities.size()].record;
        ::change(QStringList{"set", QString::number(record)} + pick(properties, event.b));
    }

    /// A layer is open elsewhere during a click.
    void hold(const Event &event)
    {
        KcDbLayerTableRecord *layer = database() ? getLayerByName(layerName(event.c)) : nullptr;
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

    void settle()
    {
        expectQuestions(Mode::Settling);
        QCoreApplication::processEvents();
        while (document().isLoading())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        expectQuestions(Mode::Idle);
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

    const QVector<Canvas *> canvases() const { return m_window->panes()->shown(); }
    Document &document() const { return *m_window->findChild<Document *>(); }
    const Drawing *drawing() const { return m_window->drawing(); }
    KcDbDatabase *database() const { return drawing() ? drawing()->database.get() : nullptr; }
    QUndoStack &steps() const { return *KcHost::undoStack(*database()); }

    /// @return whether the file can hold all of the drawing, and does
    bool save()
    {
        m_lost.clear();
        expectQuestions(Mode::Saving);
        const bool isSaved = document().save();
        while (QWidget *widget = asking())
            widget->close();
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
    QStringList m_lost; ///< what the file saved last cannot hold
};

} // namespace

std::unique_ptr<World> makeViewer()
{
    return std::make_unique<ViewerWorld>();
}

} // namespace Attack
