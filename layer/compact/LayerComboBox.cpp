#include "LayerComboBox.h"

#include "property/FacePress.h"

#include <OvCustomControl/LayerEdit.h>
#include <OvCustomControl/LayerItem.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <OvHost.h>

#include <QListWidget>
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

LayerComboBox::LayerComboBox(QWidget *parent)
    : QComboBox(parent)
    , m_list(new LayerList(this))
    , m_face(new LayerEdit(nullptr))
{
    setFixedSize(150, 20);
    setContextMenuPolicy(Qt::NoContextMenu);
    setModel(m_list->model());
    setView(m_list);
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &LayerComboBox::slotRowChanged);
    view()->setMouseTracking(false);
}

LayerComboBox::~LayerComboBox()
{
    // From its installation on, the face is the combo box's own.
    if (lineEdit() != m_face)
        delete m_face;
}

int LayerComboBox::getDisplayItem()
{
    LayerItemData current;
    if (!m_list || !OvLayerUtility().getCurrentLayer(current))
        return 0;
    for (int row = 0; row < m_list->count(); ++row) {
        const LayerItem *item = rowAt(row);
        if (!item)
            return 0;
        if (item->currentLayerData().name == current.name)
            return row;
    }
    return 0;
}

void LayerComboBox::clearListWidget()
{
    if (m_list)
        m_list->clear();
}

void LayerComboBox::slotUpdate()
{
    if (m_isUpdating)
        return;
    const QScopedValueRollback<bool> updating(m_isUpdating, true);

    const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
    if (m_list)
        matchRows(*layers);
    if (layers->isEmpty()) {
        if (m_face)
            m_face->hide();
        return;
    }

    installFace();
    const int row = getDisplayItem();
    if (m_list) {
        // The user may have scrolled to the very row that asked for this update.
        m_list->setAutoScroll(!m_list->isVisible());
        m_list->setCurrentRow(row);
        m_list->setAutoScroll(true);
        m_list->setMouseTracking(false);
    }
    setCurrentIndex(0);
    slotRowChanged(row);
    m_face->show();
}

void LayerComboBox::slotRowChanged(int)
{
    LayerItemData current;
    if (m_face && OvLayerUtility().getCurrentLayer(current))
        m_face->setCurrentLayer(current);
}

void LayerComboBox::slotLabelChange(int index, LayerItemData data)
{
    const LayerItem *item = rowAt(getDisplayItem());
    if (!item || item->currentLayerData().name != data.name)
        return;
    if (m_face)
        m_face->setLabelChange(index, data);
    const QPointer<LayerComboBox> guard(this);
    ovSetLayerTableChanges();
    if (guard)
        emit layerComboBoxChanged();
}

LayerItem *LayerComboBox::rowAt(int row) const
{
    return qobject_cast<LayerItem *>(m_list->itemWidget(m_list->item(row)));
}

/// Keeps the rows at both ends whose layers are still there, and replaces what lies between them.
void LayerComboBox::matchRows(const QList<LayerItemData> &layers)
{
    const auto isRowOf = [this](int row, const LayerItemData &layer) {
        const LayerItem *item = rowAt(row);
        return item && item->currentLayerData().name == layer.name;
    };
    const int present = m_list->count();
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
        clearListWidget();
        head = tail = 0;
    }
    while (m_list->count() > head + tail)
        delete m_list->takeItem(head);
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

void LayerComboBox::insertRow(int row, const LayerItemData &layer)
{
    auto *item = new LayerItem(m_list);
    item->setCurrentLayer(layer);
    connect(item, &LayerItem::statusChanged, this, &LayerComboBox::slotLabelChange);

    auto *place = new QListWidgetItem;
    place->setSizeHint(QSize(0, rowHeight));
    m_list->insertItem(row, place);
    m_list->setItemWidget(place, item);
}

void LayerComboBox::fitList(int rowWidth)
{
    const int width =
            rowWidth + 2 * m_list->frameWidth() + m_list->verticalScrollBar()->sizeHint().width();
    m_list->setMinimumWidth(qMin(width, widestList));
}

/// A face that the host took away is gone, or still there with a parent, for Qt to delete it later.
void LayerComboBox::installFace()
{
    if (m_face && lineEdit() == m_face)
        return;
    if (!m_face || m_face->parent())
        m_face = new LayerEdit(nullptr);
    setLineEdit(m_face);
    new FacePress(this);
    // Where popups are like menus, Qt takes the scroll bar from those of combo boxes without an edit.
    view()->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

} // namespace OvCc
