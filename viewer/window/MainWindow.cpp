// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "MainWindow.h"

#include "Document.h"
#include "DrawingFrame.h"
#include "LayerDock.h"
#include "LayerEditor.h"
#include "LayerMenu.h"
#include "Phrases.h"
#include "PropertyBar.h"
#include "PropertyEditor.h"
#include "Remarks.h"
#include "Selection.h"
#include "StatusBar.h"
#include "UndoCommands.h"
#include "ViewRibbon.h"
#include "viewer/canvas/Canvas.h"
#include "viewer/canvas/CanvasPanes.h"
#include "viewer/canvas/EntityFollower.h"

#include <KcHost/KcHost.h>
#include <OvCustomControl/LayerComboBox.h>
#include <OvCustomControl/LayerControl.h>
#include <OvCustomControl/LayerLink.h>
#include <OvCustomControl/PropertyManager.h>
#include <OvCustomControl/StackWidget.h>
#include <OvCustomControl/TextStyleComboBox.h>
#include <OvCustomControl/VisualStyleComboBox.h>

#include <QAction>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QStyle>
#include <QToolBar>

#include <utility>

namespace Tessa {

namespace {

constexpr QSize initialSize(1280, 800);
constexpr QSize windowFrame(16, 48); // with the title bar, at most
constexpr int widestDock = 512;      // to begin with
constexpr int labelMargin = 6;

/// The only file that is dragged; empty if it is anything else.
QString draggedFile(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    return urls.size() == 1 ? urls.first().toLocalFile() : QString();
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_document(new Document(this))
    , m_panes(new CanvasPanes)
    , m_frame(new DrawingFrame(m_panes))
    , m_link(new OvCc::LayerLink(this))
    , m_layers(new OvCc::LayerComboBox)
    , m_dock(new LayerDock(*m_link))
    , m_ribbon(new ViewRibbon)
    , m_pickers(new PropertyBar)
    , m_properties(new PropertyEditor(this))
    , m_layerEditor(new LayerEditor(*m_link, *m_dock->panel(), this))
    , m_layerMenu(new LayerMenu(*m_link, *m_dock->panel(), this))
    , m_undo(new UndoCommands(this))
    , m_selection(new Selection(*m_panes, this))
    , m_status(new StatusBar)
    , m_remarks(new Remarks(*m_status, this))
{
    setCentralWidget(m_frame);
    addDockWidget(Qt::RightDockWidgetArea, m_dock);
    createFileMenu();
    createEditMenu();
    createViewMenu();
    menuBar()->addMenu(m_layerMenu);
    createPropertyBar();
    createRibbon();
    setStatusBar(m_status);
    setAcceptDrops(true);
    resize(initialSize.boundedTo(screen()->availableSize() - windowFrame));
    resizeDocks({m_dock}, {qMin(m_dock->sizeHint().width(), widestDock)}, Qt::Horizontal);

    connectDocument();
    connectHost();
    showState();
    m_panes->setFocus();
}

MainWindow::~MainWindow()
{
    KcHost::setLayerModifiedHandler({});
    KcHost::setEntityModifiedHandler({});
    KcHost::setWorkingDatabase(nullptr);
    m_panes->setDrawing(nullptr);
    m_dock->setDrawing(nullptr);
    m_properties->setDrawing(nullptr);
    m_layerEditor->setDrawing(nullptr);
    m_undo->setStack(nullptr);
}

void MainWindow::createFileMenu()
{
    QMenu *file = menuBar()->addMenu(tr("&File"));
    m_open = file->addAction(style()->standardIcon(QStyle::SP_DialogOpenButton), tr("&Open..."),
                             m_document, &Document::chooseAndOpen);
    m_open->setShortcut(QKeySequence::Open);
    m_save = file->addAction(style()->standardIcon(QStyle::SP_DialogSaveButton), tr("&Save"),
                             m_document, &Document::save);
    m_save->setShortcut(QKeySequence::Save);
    m_saveAs = file->addAction(tr("Save &as..."), m_document, &Document::saveAs);
    m_saveAs->setShortcut(QKeySequence::SaveAs);
    m_close = file->addAction(tr("&Close"), m_document, &Document::close);
    m_close->setShortcut(QKeySequence::Close);
    file->addSeparator();
    file->addAction(tr("&Quit"), this, &QWidget::close)->setShortcut(QKeySequence::Quit);
}

void MainWindow::createEditMenu()
{
    QMenu *edit = menuBar()->addMenu(tr("&Edit"));
    edit->addActions({m_undo->undoAction(), m_undo->redoAction()});
    edit->addSeparator();
    const auto addOnCanvas = [this, edit](const QString &text, const QKeySequence &keys,
                                          void (CanvasPanes::*act)()) {
        QAction *action = edit->addAction(text, m_panes, act);
        action->setShortcut(keys);
        // Elsewhere these keys select rows and letters.
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        m_panes->addAction(action);
    };
    addOnCanvas(tr("Select &all"), QKeySequence::SelectAll, &CanvasPanes::selectAll);
    addOnCanvas(tr("&Deselect"), QKeySequence(), &CanvasPanes::deselect);
}

void MainWindow::createViewMenu()
{
    QMenu *view = menuBar()->addMenu(tr("&View"));
    const auto addOnCanvas = [this, view](const QString &text, const QKeySequence &keys,
                                          void (Canvas::*act)()) {
        QAction *action =
                view->addAction(text, this, [this, act] { (m_panes->current()->*act)(); });
        action->setShortcut(keys);
        return action;
    };
    QAction *fit = addOnCanvas(tr("&Fit"), Qt::Key_Home, &Canvas::fit);
    addOnCanvas(tr("Zoom &in"), QKeySequence::ZoomIn, &Canvas::zoomIn);
    addOnCanvas(tr("Zoom &out"), QKeySequence::ZoomOut, &Canvas::zoomOut);
    view->addSeparator();
    QAction *hand = view->addAction(tr("&Pan"));
    hand->setCheckable(true);
    hand->setToolTip(tr("Drag the drawing with the left button"));
    connect(hand, &QAction::toggled, m_panes, &CanvasPanes::setHandMode);
    view->addSeparator();
    view->addAction(m_dock->toggleViewAction());
    view->addAction(m_remarks->listAction());
    createToolBar({fit, hand});
}

void MainWindow::createToolBar(const QList<QAction *> &viewActions)
{
    QToolBar *tools = addToolBar(tr("Tools"));
    tools->setMovable(false);
    tools->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    tools->addAction(m_open);
    tools->addAction(m_save);
    tools->addSeparator();
    tools->addActions({m_undo->undoAction(), m_undo->redoAction()});
    tools->addSeparator();
    auto *layerLabel = new QLabel(tr("Layer"));
    layerLabel->setContentsMargins(labelMargin, 0, labelMargin, 0);
    tools->addWidget(layerLabel);
    m_layers->setObjectName(QStringLiteral("layers"));
    tools->addWidget(m_layers);
    tools->addSeparator();
    tools->addActions(viewActions);
}

void MainWindow::createPropertyBar()
{
    addToolBarBreak();
    QToolBar *bar = addToolBar(tr("Properties"));
    bar->setMovable(false);
    bar->addWidget(m_pickers);
    bar->addSeparator();

    m_properties->attach(m_pickers->panel());
    connect(m_selection, &Selection::changed, this, &MainWindow::followSelection);
    connect(m_properties, &PropertyEditor::refused, this, &MainWindow::tellRefusal);
    connect(m_pickers, &PropertyBar::faceStyleChosen, this, &MainWindow::showInStyle);
    connect(m_pickers->textStyles(), &OvCc::BaseComboBox::dialogRequested, this, [this] {
        m_status->showMessage(tr("All texts are shown in one style: there is none to manage."));
    });
}

void MainWindow::createRibbon()
{
    QToolBar *bar = addToolBar(tr("Ribbon"));
    bar->setMovable(false);
    bar->addWidget(m_ribbon);
    m_ribbon->attach(m_frame->views());
    m_properties->attach(m_ribbon->pickers()->propertyManager());

    connect(m_ribbon, &ViewRibbon::viewChosen, this,
            [this](ViewDirection view) { m_panes->current()->setView(view); });
    connect(m_ribbon, &ViewRibbon::arrangementChosen, m_panes, &CanvasPanes::setArrangement);
    connect(m_panes, &CanvasPanes::currentChanged, this, &MainWindow::followCanvas);
    connect(m_panes, &CanvasPanes::pointerMoved, m_status, &StatusBar::setPosition);
    connect(m_frame, &DrawingFrame::closeWanted, m_document, &Document::close);
}

void MainWindow::connectDocument()
{
    connect(m_document, &Document::opening, this, &MainWindow::followOpening);
    connect(m_document, &Document::replaced, this, &MainWindow::showDrawing);
    connect(m_document, &Document::opened, this, &MainWindow::finishOpening);
    connect(m_document, &Document::aboutToSave, m_dock, &LayerDock::finishEditing);
    connect(m_undo, &UndoCommands::aboutToAct, m_dock, &LayerDock::finishEditing);
    connect(m_undo, &UndoCommands::cleanChanged, this,
            [this](bool isClean) { setWindowModified(!isClean); });
    connect(m_document, &Document::saved, this, &MainWindow::followSaving);
    connect(m_document, &Document::refused, this, &MainWindow::tellRefusal);
    connect(m_document, &Document::failed, this, &MainWindow::showError);
}

void MainWindow::connectHost()
{
    for (OvCc::LayerComboBox *box : layerBoxes())
        m_link->add(box);
    m_link->setChoiceMakesCurrent(false);
    KcHost::setLayerModifiedHandler([this](const QString &name) { followLayerChange(name); });
    KcHost::setEntityModifiedHandler([this](int record) { followEntityChange(record); });
    connect(m_link, &OvCc::LayerLink::updated, this, &MainWindow::postUpdate);
    connect(m_link, &OvCc::LayerLink::layerChosen, this, &MainWindow::followChoice);
    connect(m_layerEditor, &LayerEditor::refused, this, &MainWindow::tellRefusal);
    connect(m_layerMenu, &LayerMenu::aboutToAct, m_dock, &LayerDock::finishEditing);
    connect(m_layerMenu, &LayerMenu::refused, this, &MainWindow::tellRefusal);
}

void MainWindow::open(const QString &fileName)
{
    m_document->open(fileName);
}

const Drawing *MainWindow::drawing() const
{
    return m_document->drawing();
}

void MainWindow::followOpening(const QString &fileName)
{
    m_status->setWork(tr("Reading %1 …").arg(QFileInfo(fileName).fileName()));
    showState();
}

void MainWindow::finishOpening(const QString &error)
{
    m_status->setWork({});
    if (!error.isEmpty())
        m_status->clearMessage();
    showState();
    emit opened(error);
}

/// Nothing may look at the drawing before this one any more at the end.
void MainWindow::showDrawing()
{
    Drawing *drawing = m_document->drawing();
    m_properties->setDrawing(nullptr);
    m_panes->setDrawing(drawing);
    KcHost::setWorkingDatabase(drawing ? drawing->database.get() : nullptr);
    m_follower = drawing ? std::make_unique<EntityFollower>(*drawing) : nullptr;
    m_layerEditor->setDrawing(drawing);
    m_dock->setDrawing(drawing);
    m_properties->setDrawing(drawing);
    m_selection->setDrawing(drawing);
    m_undo->setStack(drawing ? KcHost::undoStack(*drawing->database) : nullptr);
    updateAll();
    m_frame->setTitle(m_document->title());
    m_status->clearMessage();
    m_remarks->setRead(m_document->title(), drawing ? drawing->warnings : QStringList());
    m_layerMenu->setDrawing(drawing);
}

void MainWindow::followSaving(const QStringList &remarks)
{
    m_frame->setTitle(m_document->title());
    showState();
    m_status->showMessage(tr("Saved %1.").arg(m_document->title()));
    m_remarks->setSaved(m_document->title(), remarks);
    m_layerMenu->followSaving();
}

void MainWindow::followLayerChange(const QString &name)
{
    if (!drawing())
        return;
    m_document->drawing()->layers.reload(name);
    m_link->layerChanged(name);
    postUpdate();
}

void MainWindow::followEntityChange(int record)
{
    if (!m_follower)
        return;
    m_follower->follow(record);
    postUpdate();
}

void MainWindow::postUpdate()
{
    if (!std::exchange(m_isUpdateDue, true))
        QMetaObject::invokeMethod(this, &MainWindow::updateAll, Qt::QueuedConnection);
}

/// Puts right what shows layers and entities.
void MainWindow::updateAll()
{
    m_isUpdateDue = true;
    m_link->flush();
    m_isUpdateDue = false;
    m_panes->refresh();
    m_selection->update();
    showState();
}

void MainWindow::followSelection()
{
    m_properties->setSelection(m_selection->entities());
    for (OvCc::LayerComboBox *box : layerBoxes())
        box->setShownLayers(m_selection->layers());
    m_dock->showUsage(m_selection->layers());
    m_status->setSelection(m_selection->entities().size(), m_selection->layers());
}

/// A layer that was chosen in a layer box is for what is selected.
void MainWindow::followChoice(const QString &layer)
{
    if (m_selection->entities().isEmpty())
        m_layerEditor->makeCurrent(layer);
    else
        m_properties->moveToLayer(layer);
}

void MainWindow::showInStyle(FaceStyle style)
{
    m_panes->current()->setFaceStyle(style);
    const bool isSmooth = style == FaceStyle::Gouraud || style == FaceStyle::GouraudEdges;
    if (!drawing() || !drawing()->geometry.hasFaces())
        m_status->showMessage(tr("There are no faces here: all visual styles look the same."));
    else if (isSmooth)
        m_status->showMessage(tr("The faces are flat, and are shown so."));
    else
        m_status->clearMessage();
}

/// Commands for the view show that of the current canvas.
void MainWindow::followCanvas()
{
    const Canvas &canvas = *m_panes->current();
    m_ribbon->showView(canvas.view());
    m_pickers->showFaceStyle(canvas.faceStyle());
}

void MainWindow::showState()
{
    const Drawing *drawing = m_document->drawing();
    const bool isLoading = m_document->isLoading();
    m_open->setEnabled(!isLoading);
    m_save->setEnabled(drawing != nullptr);
    m_saveAs->setEnabled(drawing != nullptr);
    m_close->setEnabled(drawing && !isLoading);
    // A change now would be lost with the drawing that is about to be replaced.
    const bool isEditable = drawing && !isLoading;
    for (OvCc::LayerComboBox *box : layerBoxes())
        box->setEnabled(isEditable);
    m_dock->widget()->setEnabled(isEditable);
    m_properties->setEnabled(isEditable);
    m_layerMenu->menuAction()->setEnabled(isEditable);
    m_undo->setEnabled(isEditable);

    if (!drawing) {
        setWindowTitle(tr("Tessa"));
        m_status->setCounts({});
        return;
    }
    setWindowTitle(tr("%1[*] – Tessa").arg(m_document->title()));
    const QLocale locale;
    m_status->setCounts(tr("Entities: %1, layers: %2")
                                .arg(locale.toString(m_follower->count()),
                                     locale.toString(m_dock->layerCount())));
}

void MainWindow::tellRefusal(const QString &reason)
{
    m_status->showMessage(reason);
}

void MainWindow::showError(const QString &error)
{
    printLine(error);
    auto *box = new QMessageBox(QMessageBox::Warning, tr("Tessa"), error, QMessageBox::Ok, this);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

/// A minimised window takes its floating pickers with it.
void MainWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::WindowStateChange)
        m_ribbon->setPickersShown(!isMinimized());
    QMainWindow::changeEvent(event);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->setAccepted(m_document->confirmLoss());
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!m_document->isLoading() && !draggedFile(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    open(draggedFile(*event->mimeData()));
}

void MainWindow::moveEvent(QMoveEvent *event)
{
    QMainWindow::moveEvent(event);
    m_ribbon->followWindow();
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    m_ribbon->followWindow();
}

std::array<OvCc::LayerComboBox *, 3> MainWindow::layerBoxes() const
{
    return {m_layers, m_ribbon->layerBar()->layerComboBox(), m_frame->layers()};
}

} // namespace Tessa
