#include "LayerComboBox.h"

#include "property/FacePress.h"

#include <OvCustomControl/LayerEdit.h>
#include <OvCustomControl/LayerItem.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <OvHost.h>

#include <QListWidget>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <memory>

namespace OvCc {

namespace {

constexpr int rowHeight = 25;
constexpr int widestList = 400;

/// Rows that come or go in the middle of the list cost a walk over all rows each. Beyond this many
/// it is cheaper to build the list anew.
constexpr int mostPatches = 32;

bool isSame(const LayerItemData &one, const LayerItemData &other)
{
    return one.isOn == other.isOn && one.isLocked == other.isLocked
           && one.isFrozen == other.isFrozen && one.color == other.color && one.name == other.name;
}

/// The drop-down. A combo box opens it on the row of its own index, but that follows no layer.
class LayerList : public QListWidget
{
public:
    explicit LayerList(LayerComboBox *combo)
        : m_combo(combo)
    {
    }

protected:
    void showEvent(QShowEvent *event) override
    {
        setCurrentRow(m_combo->getDisplayItem());
        QListWidget::showEvent(event);
    }

private:
    LayerComboBox *m_combo;
};

} // namespace

/// List and face may have been deleted by the host.
struct LayerComboBox::Private
{
    LayerItem *rowAt(int row) const;
    void matchRows(const QList<LayerItemData> &layers);
    void insertRow(int row, const LayerItemData &layer);
    void fitList(int rowWidth);
    void installFace();

    LayerComboBox *const q;
    QPointer<QListWidget> list = new LayerList(q);
    QPointer<LayerEdit> face = new LayerEdit(nullptr);
    bool isUpdating = false;
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
    for (int row = 0; row < m_d->list->count(); ++row) {
        const LayerItem *item = m_d->rowAt(row);
        if (!item)
            return 0;
        if (item->currentLayerData().name == current.name)
            return row;
    }
    return 0;
}

void LayerComboBox::clearListWidget()
{
    if (m_d->list)
        m_d->list->clear();
}

void LayerComboBox::slotUpdate()
{
    if (m_d->isUpdating)
        return;
    const QScopedValueRollback<bool> updating(m_d->isUpdating, true);

    const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
    if (m_d->list)
        m_d->matchRows(*layers);
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
    const LayerItem *item = m_d->rowAt(getDisplayItem());
    if (!item || item->currentLayerData().name != data.name)
        return;
    if (m_d->face)
        m_d->face->setLabelChange(index, data);
    const QPointer<LayerComboBox> guard(this);
    ovSetLayerTableChanges();
    if (guard)
        emit layerComboBoxChanged();
}

LayerItem *LayerComboBox::Private::rowAt(int row) const
{
    return qobject_cast<LayerItem *>(list->itemWidget(list->item(row)));
}

/// Keeps the rows at both ends whose layers are still there, and replaces what lies between them.
void LayerComboBox::Private::matchRows(const QList<LayerItemData> &layers)
{
    const auto isRowOf = [this](int row, const LayerItemData &layer) {
        const LayerItem *item = rowAt(row);
        return item && item->currentLayerData().name == layer.name;
    };
    const int present = list->count();
    const int wanted = layers.size();
    const int common = qMin(present, wanted);
    int head = 0;
    while (head < common && isRowOf(head, layers.at(head)))
        ++head;
    int tail = 0;
    while (tail < common - head && isRowOf(present - 1 - tail, layers.at(wanted - 1 - tail)))
        ++tail;

    const int patches = present - head - tail + (tail > 0 ? wanted - head - tail : 0);
    if (patches > mostPatches) {
        list->clear();
        head = tail = 0;
    }
    while (list->count() > head + tail)
        delete list->takeItem(head);
    for (int row = head; row < wanted - tail; ++row)
        insertRow(row, layers.at(row));

    int widest = 0;
    for (int row = 0; row < wanted; ++row) {
        LayerItem *item = rowAt(row);
        if (!isSame(item->currentLayerData(), layers.at(row)))
            item->setCurrentLayer(layers.at(row));
        widest = qMax(widest, item->sizeHint().width());
    }
    fitList(widest);
}

void LayerComboBox::Private::insertRow(int row, const LayerItemData &layer)
{
    auto *item = new LayerItem(list);
    item->setCurrentLayer(layer);
    connect(item, &LayerItem::statusChanged, q, &LayerComboBox::slotLabelChange);

    auto *place = new QListWidgetItem;
    place->setSizeHint(QSize(0, rowHeight));
    list->insertItem(row, place);
    list->setItemWidget(place, item);
}

void LayerComboBox::Private::fitList(int rowWidth)
{
    const int width =
            rowWidth + 2 * list->frameWidth() + list->verticalScrollBar()->sizeHint().width();
    list->setMinimumWidth(qMin(width, widestList));
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

} // namespace OvCc
