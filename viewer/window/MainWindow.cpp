// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "MainWindow.h"

#include "Document.h"
#include "DrawingFrame.h"
#include "LayerDock.h"
#include "PropertyBar.h"
#include "PropertyEditor.h"
#include "RemarksDialog.h"
#include "StatusBar.h"
#include "ViewRibbon.h"
#include "viewer/canvas/Canvas.h"
#include "viewer/canvas/CanvasPanes.h"
#include "viewer/canvas/ShownEntities.h"

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

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace Tessa {

namespace {

constexpr QSize initialSize(1280, 800);
constexpr QSize windowFrame(16, 48); // with the title bar, at most
constexpr int widestDock = 512;      // to begin with
constexpr int labelMargin = 6;

/// What the canvas does for each row of the visual style picker. A drawing is shown in one projection
/// only, so both wireframes look the same.
constexpr FaceStyle visualStyles[] = {
        FaceStyle::Wireframe, FaceStyle::Wireframe, FaceStyle::Hidden,       FaceStyle::Flat,
        FaceStyle::Gouraud,   FaceStyle::FlatEdges, FaceStyle::GouraudEdges,
};
static_assert(std::size(visualStyles) == OvCc::GouraudEdgesStyle + 1);

/// The only file that is dragged; empty if it is anything else.
QString draggedFile(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    return urls.size() == 1 ? urls.first().toLocalFile() : QString();
}

void printLine(const QString &line)
{
    std::fprintf(stderr, "tessa-viewer: %s\n", qUtf8Printable(line));
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
    , m_status(new StatusBar)
{
    setCentralWidget(m_frame);
    addDockWidget(Qt::RightDockWidgetArea, m_dock);
    createFileMenu();
    createViewMenu();
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
    KcHost::setWorkingDatabase(nullptr);
    m_panes->setDrawing(nullptr);
    m_dock->setDrawing(nullptr);
    m_properties->setDrawing(nullptr);
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
    m_listRemarks = view->addAction(tr("&Remarks..."), this, &MainWindow::listRemarks);
    m_listRemarks->setEnabled(false);
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
    connect(m_panes, &CanvasPanes::selectionChanged, m_properties, &PropertyEditor::setSelection);
    connect(m_properties, &PropertyEditor::changed, this, &MainWindow::followEntityChange);
    connect(m_properties, &PropertyEditor::refused, this, &MainWindow::tellRefusal);
    connect(m_pickers->visualStyles(), &OvCc::BaseComboBox::rowChosen, this,
            &MainWindow::showInStyle);
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
    connect(m_document, &Document::saved, this, &MainWindow::followSaving);
    connect(m_document, &Document::refused, this, &MainWindow::tellRefusal);
    connect(m_document, &Document::failed, this, &MainWindow::showError);
}

void MainWindow::connectHost()
{
    for (OvCc::LayerComboBox *box : layerBoxes())
        m_link->add(box);
    KcHost::setLayerModifiedHandler([this](const QString &name) { followLayerChange(name); });
    connect(m_link, &OvCc::LayerLink::updated, this, &MainWindow::followUpdate);
    connect(m_dock, &LayerDock::refused, this, &MainWindow::tellRefusal);
    connect(m_status, &StatusBar::remarksWanted, this, &MainWindow::listRemarks);
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
    m_dock->setDrawing(drawing);
    m_properties->setDrawing(drawing);
    followUpdate();
    m_frame->setTitle(m_document->title());
    m_status->clearMessage();
    m_remarks.clear();
    addRemarks(drawing ? drawing->warnings : QStringList());
}

void MainWindow::followSaving(const QStringList &remarks)
{
    m_frame->setTitle(m_document->title());
    showState();
    m_status->showMessage(tr("Saved %1.").arg(m_document->title()));
    m_remarks = drawing()->warnings;
    addRemarks(remarks);
}

void MainWindow::followLayerChange(const QString &name)
{
    if (!drawing())
        return;
    m_document->drawing()->layers.reload(name);
    m_panes->refresh();
    if (!isWindowModified())
        setWindowModified(true);
    m_link->layerChanged(name);
}

void MainWindow::followEntityChange()
{
    m_panes->refresh();
    setWindowModified(true);
}

void MainWindow::showInStyle(int row)
{
    m_panes->current()->setFaceStyle(visualStyles[row]);
    const bool isSmooth =
            visualStyles[row] == FaceStyle::Gouraud || visualStyles[row] == FaceStyle::GouraudEdges;
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
    const auto style =
            std::find(std::begin(visualStyles), std::end(visualStyles), canvas.faceStyle());
    m_pickers->visualStyles()->setCurrentIndex(int(style - std::begin(visualStyles)));
}

/// What a layer hides now must not be changed unseen.
void MainWindow::deselectHidden()
{
    const QSet<int> selected = m_panes->current()->selection();
    if (selected.isEmpty())
        return;
    ShownEntities entities(*drawing(), {});
    QSet<int> shown;
    for (const int index : selected) {
        if (entities.shows(drawing()->geometry.modelSpace().entities.at(index)))
            shown.insert(index);
    }
    if (shown.size() == selected.size())
        return;
    m_panes->setSelection(shown);
    m_properties->setSelection(shown);
}

void MainWindow::followUpdate()
{
    deselectHidden();
    showState();
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

    if (!drawing) {
        setWindowTitle(tr("Tessa"));
        m_status->setCounts({});
        return;
    }
    setWindowTitle(tr("%1[*] – Tessa").arg(m_document->title()));
    const QLocale locale;
    m_status->setCounts(
            tr("Entities: %1, layers: %2")
                    .arg(locale.toString(int(drawing->geometry.modelSpace().entities.size())),
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

/// Tells the user of the first remark, and keeps all for the list.
void MainWindow::addRemarks(const QStringList &remarks)
{
    for (const QString &remark : remarks)
        printLine(remark);
    if (!remarks.isEmpty())
        m_status->showMessage(remarks.first());
    m_remarks += remarks;
    m_status->setRemarkCount(m_remarks.size());
    m_listRemarks->setEnabled(!m_remarks.isEmpty());
}

void MainWindow::listRemarks()
{
    const QString title = tr("Remarks on %1").arg(m_document->title());
    auto *dialog = new RemarksDialog(title, m_remarks, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
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
