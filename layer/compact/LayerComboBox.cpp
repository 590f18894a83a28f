#include "LayerComboBox.h"

#include "layer/compact/LayerList.h"
#include "layer/data/LayerFlags.h"
#include "property/FacePress.h"

#include <OvCustomControl/LayerEdit.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <OvHost.h>

#include <QKeyEvent>
#include <QPointer>
#include <QScopedValueRollback>

#include <memory>

namespace OvCc {

/// List and face may have been deleted by the host.
struct LayerComboBox::Private
{
    void installFace();
    void setFlag(int index, const QString &name, bool value);

    LayerComboBox *const q;
    QPointer<LayerList> list = new LayerList(
            q, [this](int index, const QString &name, bool value) { setFlag(index, name, value); });
    QPointer<LayerEdit> face = new LayerEdit(nullptr);
    bool isUpdating = false;
    QString nameAtClosing{}; ///< of the row that was current in the drop-down
};

LayerComboBox::LayerComboBox(QWidget *parent)
    : QComboBox(parent)
    , m_d(new Private{this})
{
    setFixedSize(150, 20);
    setContextMenuPolicy(Qt::NoContextMenu);
    setModel(m_d->list->model());
    setView(m_d->list);
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &LayerComboBox::slotRowChanged);
    // Hosts may have reloaded the rows since the drop-down closed.
    connect(this, QOverload<int>::of(&QComboBox::activated), this, [this] {
        if (!m_d->nameAtClosing.isNull())
            emit layerChosen(m_d->nameAtClosing);
    });
    view()->setMouseTracking(false);
}

LayerComboBox::~LayerComboBox()
{
    // From its installation on, the face is the combo box's own.
    if (lineEdit() != m_d->face)
        delete m_d->face;
}

int LayerComboBox::getDisplayItem()
{
    LayerItemData current;
    if (!m_d->list || !OvLayerUtility().getCurrentLayer(current))
        return 0;
    return qMax(0, m_d->list->rowOf(current.name));
}

LayerItem *LayerComboBox::layerItem(int row)
{
    return m_d->list ? m_d->list->layerItem(row) : nullptr;
}

void LayerComboBox::clearListWidget()
{
    if (m_d->list)
        m_d->list->clear();
}

/// Qt calls it first when a row is chosen.
void LayerComboBox::hidePopup()
{
    m_d->nameAtClosing = m_d->list ? m_d->list->nameAt(m_d->list->currentRow()) : QString();
    QComboBox::hidePopup();
}

void LayerComboBox::slotUpdate()
{
    if (m_d->isUpdating)
        return;
    const QScopedValueRollback<bool> updating(m_d->isUpdating, true);

    const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
    if (m_d->list)
        m_d->list->setLayers(*layers);
    if (layers->isEmpty()) {
        if (m_d->face)
            m_d->face->hide();
        return;
    }

    m_d->installFace();
    const int row = getDisplayItem();
    if (m_d->list) {
        // The user may have scrolled to the very row that asked for this update.
        m_d->list->setAutoScroll(!m_d->list->isVisible());
        m_d->list->setCurrentRow(row);
        m_d->list->setAutoScroll(true);
        m_d->list->setMouseTracking(false);
    }
    setCurrentIndex(0);
    slotRowChanged(row);
    m_d->face->show();
}

void LayerComboBox::slotRowChanged(int)
{
    LayerItemData current;
    if (m_d->face && OvLayerUtility().getCurrentLayer(current))
        m_d->face->setCurrentLayer(current);
}

void LayerComboBox::slotLabelChange(int index, LayerItemData data)
{
    const int row = getDisplayItem();
    if (!m_d->list || row >= m_d->list->count() || m_d->list->nameAt(row) != data.name)
        return;
    if (m_d->face)
        m_d->face->setLabelChange(index, data);
    const QPointer<LayerComboBox> guard(this);
    ovSetLayerTableChanges();
    if (guard)
        emit layerComboBoxChanged();
}

/// Nothing is typed or chosen at the closed box: only the keys that open it are its own.
void LayerComboBox::keyPressEvent(QKeyEvent *event)
{
    const bool isAltDown =
            event->key() == Qt::Key_Down && event->modifiers().testFlag(Qt::AltModifier);
    if (isAltDown || event->key() == Qt::Key_F4)
        QComboBox::keyPressEvent(event);
    else
        event->ignore();
}

void LayerComboBox::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

/// A face that the host took away is gone, or still there with a parent, for Qt to delete it later.
void LayerComboBox::Private::installFace()
{
    if (face && q->lineEdit() == face)
        return;
    if (!face || face->parent())
        face = new LayerEdit(nullptr);
    q->setLineEdit(face);
    new FacePress(q);
    // Where popups are like menus, Qt takes the scroll bar from those of combo boxes without an edit.
    q->view()->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

/// One click, from the host's leave to what became of it. The row may be gone at any time, and the
/// combo box with it.
void LayerComboBox::Private::setFlag(int index, const QString &name, bool value)
{
    const StatusFlag &flag = statusFlags.at(size_t(index));
    const bool isShown = value != flag.isInverted;
    const QPointer<LayerComboBox> box(q);
    emit box->changesBegin(flagChangeText(flag.column, isShown));
    if (!box)
        return;
    const FlagChange change = setLayerFlag(name, flag.column, isShown);
    if (!box)
        return;
    emit box->changesEnd(change == FlagChange::Made, change == FlagChange::Refused);
    if (box && change == FlagChange::Made)
        emit box->layersToggled({name});
}

} // namespace OvCc
