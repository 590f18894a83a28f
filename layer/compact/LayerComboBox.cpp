// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerComboBox.h"

#include "layer/compact/LayerList.h"
#include "layer/data/HostNotice.h"
#include "layer/data/HostRecords.h"
#include "layer/data/LayerFlags.h"
#include "layer/data/LayerSearch.h"
#include "property/FacePress.h"

#include <OvCustomControl/LayerEdit.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <QKeyEvent>
#include <QPointer>
#include <QScopedValueRollback>

#include <memory>
#include <optional>

namespace OvCc {

namespace {

/// What the face shows: a layer, or a text alone, which is its name then.
struct Face
{
    LayerItemData layer{};
    bool isText = false;

    bool operator==(const Face &other) const
    {
        return isText == other.isText && isSame(layer, other.layer);
    }
};

Face textFace(const QString &text)
{
    Face face{{}, true};
    face.layer.name = text;
    return face;
}

} // namespace

/// List and face may have been deleted by the host.
struct LayerComboBox::Private
{
    bool followDrawing(const QString &inHand);
    std::optional<bool> followLayer(const QString &name);
    bool isShowing(const Face &wanted) const;
    std::optional<Face> wantedFace() const;
    void showFace();
    QString nameInHand() const;
    bool showCurrentLayer(const QString &inHand);
    void installFace();
    void setFlag(int index, const QString &name, bool value);

    LayerComboBox *const q;
    QPointer<LayerList> list = new LayerList(
            q, [this](int index, const QString &name, bool value) { setFlag(index, name, value); });
    QPointer<LayerEdit> face = new LayerEdit(nullptr);
    Face onFace{};
    QStringList shown{};
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
    m_d->followDrawing({});
}

bool LayerComboBox::refresh()
{
    return m_d->followDrawing(m_d->nameInHand());
}

/// @param inHand see showCurrentLayer()
bool LayerComboBox::Private::followDrawing(const QString &inHand)
{
    if (isUpdating)
        return false;
    const QScopedValueRollback<bool> updating(isUpdating, true);

    const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
    const bool areRowsOther = list && list->setLayers(*layers);
    if (layers->isEmpty()) {
        if (face)
            face->hide();
        return areRowsOther;
    }
    return showCurrentLayer(inHand) || areRowsOther;
}

bool LayerComboBox::refreshLayers(const QStringList &names)
{
    if (m_d->isUpdating)
        return false;
    if (names.size() > mostSearches)
        return refresh();
    bool isAnyOther = false;
    for (const QString &name : names) {
        const std::optional<bool> isOther = m_d->followLayer(name);
        if (!isOther)
            return refresh() || isAnyOther;
        isAnyOther |= *isOther;
    }
    const std::optional<Face> wanted = m_d->wantedFace();
    if (!wanted)
        return refresh() || isAnyOther;
    if (m_d->isShowing(*wanted))
        return isAnyOther;
    const QScopedValueRollback<bool> updating(m_d->isUpdating, true);
    return m_d->showCurrentLayer(m_d->nameInHand()) || isAnyOther;
}

/// @return whether its row is another one now; nothing if the layer came or went
std::optional<bool> LayerComboBox::Private::followLayer(const QString &name)
{
    const std::optional<FoundLayer> found = findLayer(name);
    if (!found)
        return std::nullopt;
    const LayerItemData layer = layerRecord(*found->record);
    found->record->close();
    if (!list || list->nameAt(found->position) != name)
        return std::nullopt;
    return list->setLayer(found->position, layer);
}

bool LayerComboBox::Private::isShowing(const Face &wanted) const
{
    return face && q->lineEdit() == face && q->currentIndex() == 0 && onFace == wanted;
}

/// Nothing if it would be the current layer, and there is none.
std::optional<Face> LayerComboBox::Private::wantedFace() const
{
    if (shown.size() > 1)
        return textFace(tr("Varies"));
    if (shown.isEmpty()) {
        LayerItemData current;
        return OvLayerUtility().getCurrentLayer(current) ? std::optional(Face{current})
                                                         : std::nullopt;
    }
    const std::optional<FoundLayer> found = findLayer(shown.constFirst());
    if (!found)
        return textFace(shown.constFirst());
    const LayerItemData layer = layerRecord(*found->record);
    found->record->close();
    return Face{layer};
}

/// The name in the row that the user is about to choose, or may be; a null text while the drop-down is
/// closed.
QString LayerComboBox::Private::nameInHand() const
{
    return list && list->isVisible() ? list->nameAt(list->currentRow()) : QString();
}

/// @param inHand the layer in whose row the user stays, if it has one
/// @return whether the face is another one now
bool LayerComboBox::Private::showCurrentLayer(const QString &inHand)
{
    installFace();
    const int row = list ? list->startRow() : 0;
    if (list) {
        const int rowInHand = inHand.isNull() ? -1 : list->rowOf(inHand);
        // The user may have scrolled to the very row that asked for this update.
        list->setAutoScroll(!list->isVisible());
        list->setCurrentRow(rowInHand < 0 ? row : rowInHand);
        list->setAutoScroll(true);
        list->setMouseTracking(false);
    }
    q->setCurrentIndex(0);
    const Face before = onFace;
    q->slotRowChanged(row);
    face->show();
    return !(onFace == before);
}

void LayerComboBox::slotRowChanged(int)
{
    m_d->showFace();
}

void LayerComboBox::Private::showFace()
{
    const std::optional<Face> wanted = wantedFace();
    if (!wanted)
        return;
    onFace = *wanted;
    if (face && onFace.isText)
        face->showText(onFace.layer.name);
    else if (face)
        face->setCurrentLayer(onFace.layer);
}

void LayerComboBox::setShownLayers(const QStringList &names)
{
    QStringList shown = names;
    shown.removeAll({});
    shown.removeDuplicates();
    if (shown == m_d->shown)
        return;
    m_d->shown = shown;
    if (m_d->list)
        m_d->list->setStart(shown.size() == 1 ? shown.constFirst() : QString());
    m_d->showFace();
}

QStringList LayerComboBox::shownLayers() const
{
    return m_d->shown;
}

void LayerComboBox::slotLabelChange(int index, LayerItemData data)
{
    const int row = getDisplayItem();
    if (!m_d->list)
        return;
    const bool isCurrent = row < m_d->list->count() && m_d->list->nameAt(row) == data.name;
    const bool isOnFace = m_d->shown.isEmpty() ? isCurrent : m_d->shown == QStringList(data.name);
    if (!isCurrent && !isOnFace)
        return;
    if (isOnFace) {
        m_d->onFace = {data};
        if (m_d->face)
            m_d->face->setLabelChange(index, data);
    }
    const QPointer<LayerComboBox> guard(this);
    tellHost({data.name});
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
    const FlagChange change = setLayerFlag(findLayer(name), flag.column, isShown);
    if (!box)
        return;
    emit box->changesEnd(change == FlagChange::Made, change == FlagChange::Refused);
    if (box && change == FlagChange::Made)
        emit box->layersToggled({name});
}

} // namespace OvCc
