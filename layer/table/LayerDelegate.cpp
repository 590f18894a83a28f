// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerDelegate.h"

#include "layer/data/LayerFlags.h"
#include "layer/data/LineWeightRows.h"
#include "layer/table/ColumnTable.h"
#include "layer/table/FlagGestures.h"

#include <OvCustomControl/ColorText.h>
#include <OvCustomControl/LayerLineTypeDialog.h>
#include <OvCustomControl/LayerLineWeightDialog.h>
#include <OvCustomControl/Swatches.h>

#include <QApplication>
#include <QCompleter>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QSet>

namespace OvCc {

namespace {

constexpr int swatchMargin = 2;
constexpr int swatchSpacing = 4;
constexpr int textMargin = 3;

QString textOf(const QModelIndex &index)
{
    return index.data(Qt::DisplayRole).toString();
}

bool flagOf(const QModelIndex &index)
{
    return index.data(Qt::DisplayRole).toBool();
}

/// Columns that a layer row does not have are painted like names.
const ColumnTraits &traitsOf(int column)
{
    const bool isKnown = column >= 0 && column < LayerColumnCount;
    return columnTable.at(isKnown ? column : NameColumn);
}

void paintSelection(QPainter *painter, const QStyleOptionViewItem &option, bool hasFrame)
{
    if (!(option.state & QStyle::State_Selected))
        return;
    const QBrush highlight = option.palette.highlight();
    painter->fillRect(option.rect, highlight);
    if (!(option.state & QStyle::State_HasFocus))
        return;
    painter->setPen(QPen(hasFrame ? QColor(Qt::white) : highlight.color(), 1));
    painter->setBrush(Qt::transparent);
    painter->drawRect(option.rect.adjusted(1, 1, -1, -2));
}

/// The style centres the icon of a flat button as it does everywhere else.
void paintPicture(QPainter *painter, const QStyleOptionViewItem &option, const QPixmap &image)
{
    if (image.isNull())
        return;
    QStyleOptionButton button;
    button.rect = option.rect;
    button.state = QStyle::State_Enabled;
    button.icon = image;
    button.iconSize = image.size();
    button.features = QStyleOptionButton::Flat;
    QApplication::style()->drawControl(QStyle::CE_PushButton, &button, painter);
}

QRect insideOf(const QStyleOptionViewItem &option)
{
    return option.rect.adjusted(textMargin, textMargin, -textMargin, -textMargin);
}

void paintText(QPainter *painter, const QStyleOptionViewItem &option, const QRect &rect,
               const QString &text, const QColor &color)
{
    painter->setPen(color);
    painter->drawText(rect, option.fontMetrics.elidedText(text, Qt::ElideRight, rect.width()),
                      QTextOption());
}

/// Paints @p swatch into @p width pixels at the left of the cell.
/// @return what is left of the cell for a text beside it
QRect paintSwatch(QPainter *painter, const QRect &cell, const QPixmap &swatch, int width)
{
    const QRect place(cell.x() + swatchMargin, cell.y() + (cell.height() - swatch.height()) / 2,
                      width, swatch.height());
    painter->drawPixmap(place, swatch);
    QRect rest = cell;
    rest.setLeft(place.x() + width + swatchSpacing);
    rest.setTop(place.y());
    return rest;
}

void paintColor(QPainter *painter, const QStyleOptionViewItem &option, const NamedColor &color)
{
    const QPixmap swatch = creatColorPix(color.color);
    QRect rest = paintSwatch(painter, option.rect, swatch, swatch.width());
    rest.setTop(rest.top() - 2);
    paintText(painter, option, rest, color.name, Qt::black);
}

void paintLineWeight(QPainter *painter, const QStyleOptionViewItem &option, const QString &label,
                     int thickness)
{
    const QPixmap swatch = drawLineWeight(thickness);
    const QRect rest = paintSwatch(painter, option.rect, swatch, option.rect.width() / 3);
    paintText(painter, option, rest, LayerDelegate::tr(label.toUtf8().constData()), Qt::black);
}

/// The distinct texts of a column, in the order of their first rows.
QStringList completions(const QAbstractItemModel &model, int column)
{
    QStringList texts;
    QSet<QString> known;
    for (int row = 1; row < model.rowCount(); ++row) {
        const QString text = textOf(model.index(row, column));
        if (known.contains(text))
            continue;
        known.insert(text);
        texts.append(text);
    }
    return texts;
}

} // namespace

struct LayerDelegate::Private
{
    explicit Private(LayerDelegate *delegate)
        : q(delegate)
    {
    }

    bool toggle(QAbstractItemModel *model, const QModelIndex &index, QStringList &touched);

    LayerDelegate *const q;
    LayerLineTypeDialog lineTypeDialog{nullptr};
    LayerLineWeightDialog lineWeightDialog{nullptr};
    FlagGestures gestures{q};
    int lineWeight = 0; ///< part of the interface, but nothing here asks for it
};

LayerDelegate::LayerDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
    , m_d(new Private(this))
{
    connect(&m_d->lineWeightDialog, &LayerLineWeightDialog::layerLineWeightChanged, this,
            &LayerDelegate::slotLWeightChanged);
}

LayerDelegate::~LayerDelegate() = default;

FlagGestures &FlagGestures::of(const LayerDelegate &delegate)
{
    return delegate.m_d->gestures;
}

void LayerDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    const ColumnTraits &column = traitsOf(index.column());
    if (column.painting == CellPainting::AsByDefault) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    painter->save();
    paintSelection(painter, option, column.hasFocusFrame);
    switch (column.painting) {
    case CellPainting::AsByDefault:
        break;
    case CellPainting::Picture:
        paintPicture(painter, option, flagImage(column.images, flagOf(index)));
        break;
    case CellPainting::Color:
        paintColor(painter, option, colorOfText(textOf(index)));
        break;
    case CellPainting::LineWeight:
        paintLineWeight(painter, option, textOf(index), lineWeightIndexMap(textOf(index)));
        break;
    case CellPainting::Text:
        paintText(painter, option, insideOf(option), textOf(index), Qt::black);
        break;
    case CellPainting::PaleText:
        paintText(painter, option, insideOf(option), textOf(index), Qt::gray);
        break;
    }
    painter->restore();
}

QWidget *LayerDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    if (index.column() != NameColumn && index.column() != ViewportFreezeColumn)
        return QStyledItemDelegate::createEditor(parent, option, index);

    auto *edit = new QLineEdit(parent);
    edit->setCompleter(new QCompleter(completions(*index.model(), index.column()), edit));
    connect(edit, &QLineEdit::editingFinished, this, &LayerDelegate::commitAndCloseEditor);
    return edit;
}

void LayerDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *edit = qobject_cast<QLineEdit *>(editor))
        edit->setText(textOf(index));
}

void LayerDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                 const QModelIndex &index) const
{
    if (const auto *edit = qobject_cast<QLineEdit *>(editor))
        model->setData(index, edit->text(), Qt::DisplayRole);
}

bool LayerDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                                const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const QPointer<LayerDelegate> self(this);
    QStringList touched;
    const bool isPress = event->type() == QEvent::MouseButtonPress;
    const bool isDoubleClick = event->type() == QEvent::MouseButtonDblClick;
    if (isPress || isDoubleClick) {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        const bool isInside = option.rect.contains(mouse->pos());
        if (isInside && isDoubleClick)
            return true;
        if (isInside && mouse->button() == Qt::LeftButton) {
            if (index.column() == CurrentColumn)
                return true;
            if (!m_d->toggle(model, index, touched))
                return !self;
        }
    }
    FlagGestures::tell(self, touched);
    // A view that is gone, too, is left alone by Qt if the event is used up.
    return !self;
}

int LayerDelegate::lineWeightIndexMap(QString label) const
{
    static const QStringList labels =
            lineWeightLabels(LineWeightDefault, LineWeightUnit::Millimetres, nullptr);
    const int place = labels.indexOf(label);
    if (place < 0)
        return 0;
    return static_cast<int>(lineWeightSwatchWidth(lineWeightRowOf(LineWeightDefault) + place));
}

void LayerDelegate::dropQuestion()
{
    m_d->gestures.dropQuestion();
}

void LayerDelegate::commitAndCloseEditor()
{
    if (auto *edit = qobject_cast<QLineEdit *>(sender())) {
        emit commitData(edit);
        emit closeEditor(edit);
    }
}

void LayerDelegate::slotLWeightChanged(int row)
{
    m_d->lineWeight = row;
}

/// Changes the layer, then the cell, if it is a flag that can be clicked.
/// @param[out] touched gets the name of the layer if its change was attempted
/// @return false if the user would not, or must not
bool LayerDelegate::Private::toggle(QAbstractItemModel *model, const QModelIndex &index,
                                    QStringList &touched)
{
    const auto column = static_cast<LayerColumn>(index.column());
    if (!isFlagColumn(column))
        return true;
    const bool isSet = flagOf(index);
    const bool isCurrent = flagOf(index.sibling(index.row(), CurrentColumn));
    const int guarded = isSet && isCurrent && isGuarded(column) ? 0 : -1;
    FlagOrders orders{{textOf(index.sibling(index.row(), NameColumn)), oneFlag(column, !isSet)}};
    // The host may reload or delete all this on the way. The cell shows the click, taken or not.
    const auto show = [model, isSet, cell = QPersistentModelIndex(index)](const auto &shown) {
        if (cell.isValid() && !shown.empty())
            model->setData(cell, flagText(!isSet), Qt::DisplayRole);
    };
    const auto text = [column, isSet](int layers) {
        return flagChangeText(column, !isSet, layers);
    };
    const auto guard = gestures.change(text, orders, show, guarded);
    for (const FlagOrder &order : orders)
        touched.append(order.name);
    return guard != FlagGestures::Guard::Declined;
}

} // namespace OvCc
