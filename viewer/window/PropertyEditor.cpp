// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "PropertyEditor.h"

#include "viewer/canvas/Drawing.h"

#include <OvCustomControl/ColorText.h>
#include <OvCustomControl/LineTypeComboBox.h>
#include <OvCustomControl/LineWeights.h>
#include <OvCustomControl/LineWidthComboBox.h>
#include <OvCustomControl/PropertyManager.h>
#include <OvCustomControl/QOvColorComboBox.h>
#include <OvCustomControl/Swatches.h>

#include <QInputDialog>
#include <QListWidgetItem>
#include <QPainter>

#include <cmath>
#include <optional>
#include <utility>

namespace Tessa {

namespace {

/// The indexes that a drawing has for colours in the picker.
constexpr int colorByBlockIndex = 0;
constexpr int redIndex = 1;
constexpr int colorByLayerIndex = 256;

constexpr QSize lineSwatchSize(48, 16);
constexpr double swatchWidth = 40.0;

int rowOfColor(const OvCc::QOvColorComboBox &picker, QRgb color)
{
    if (color == colorByLayer)
        return OvCc::ColorByLayerRow;
    if (color == colorByBlock)
        return OvCc::ColorByBlockRow;
    int row = OvCc::RedRow;
    while (picker.item(row) && picker.colorOf(row) != QColor(color))
        ++row;
    return picker.item(row) ? row : -1;
}

int rowOfText(const OvCc::BaseComboBox &picker, const QString &text)
{
    int row = 0;
    while (picker.item(row) && picker.item(row)->text().compare(text, Qt::CaseInsensitive) != 0)
        ++row;
    return picker.item(row) ? row : -1;
}

/// One or more periods of the linetype.
QPixmap lineTypeSwatch(const Linetype &linetype)
{
    QPixmap swatch(lineSwatchSize);
    swatch.fill(Qt::transparent);
    QPainter painter(&swatch);
    QPen pen(Qt::black, 1, Qt::SolidLine, Qt::FlatCap);
    double period = 0;
    for (const double dash : linetype.dashes)
        period += std::abs(dash);
    if (period > 0) {
        QVector<qreal> pattern;
        for (const double dash : linetype.dashes)
            pattern += qMax(1.0, std::abs(dash) / period * swatchWidth / 2);
        if (pattern.size() % 2 == 1)
            pattern += 1;
        pen.setDashPattern(pattern);
    }
    painter.setPen(pen);
    const double edge = (lineSwatchSize.width() - swatchWidth) / 2;
    painter.drawLine(QPointF(edge, 8.5), QPointF(lineSwatchSize.width() - edge, 8.5));
    return swatch;
}

/// What all of them have in common; nothing where they differ.
template <class T>
std::optional<T> commonOf(const Drawing *drawing, const QSet<int> &entities, T EntityStyle::*member)
{
    // What a new entity has.
    if (entities.isEmpty())
        return EntityStyle().*member;
    const auto &all = drawing->geometry.modelSpace().entities;
    const T first = all.at(*entities.begin()).style.*member;
    for (const int entity : entities) {
        if (all.at(entity).style.*member != first)
            return std::nullopt;
    }
    return first;
}

void showVaries(OvCc::BaseComboBox *picker)
{
    picker->showCurrentItem({}, PropertyEditor::tr("Varies"));
}

} // namespace

PropertyEditor::PropertyEditor(QObject *parent)
    : QObject(parent)
    , m_properties(colorByLayer, KcDb::kLnWtByLayer, lineTypeByLayer)
{
}

void PropertyEditor::attach(OvCc::PropertyManager *panel)
{
    using OvCc::PropertyManager;
    m_panels.push_back(panel);
    panel->lineWeightPicker()->addRemainingRows();
    connect(panel, &PropertyManager::colorChosen, this, &PropertyEditor::pickColor);
    connect(panel, &PropertyManager::lineWeightChosen, this, &PropertyEditor::pickLineWeight);
    connect(panel, &PropertyManager::lineTypeChosen, this, &PropertyEditor::pickLineType);
    OvCc::LineTypeComboBox *picker = panel->lineTypePicker();
    connect(picker, &OvCc::BaseComboBox::dialogRequested, this,
            [this, picker] { offerLineTypes(picker); });
    show(*panel);
}

void PropertyEditor::setDrawing(const Drawing *drawing)
{
    m_drawing = drawing;
    setSelection({});
}

/// A picker whose drop-down is open must not lose it for nothing.
void PropertyEditor::setSelection(const QSet<int> &entities)
{
    m_selection = entities;
    const Properties properties{commonOf(m_drawing, entities, &EntityStyle::color),
                                commonOf(m_drawing, entities, &EntityStyle::lineWeight),
                                commonOf(m_drawing, entities, &EntityStyle::linetype)};
    if (std::exchange(m_properties, properties) != properties)
        showAll();
}

void PropertyEditor::setEnabled(bool enabled)
{
    for (OvCc::PropertyManager *panel : m_panels)
        panel->setEnabled(enabled);
}

void PropertyEditor::moveToLayer(const QString &name)
{
    KcHost::EntityChange pick;
    pick.layer = name;
    change(tr("Move to layer"), pick);
}

void PropertyEditor::pickColor(int row, const QColor &color)
{
    KcHost::EntityChange pick;
    if (row == OvCc::ColorByLayerRow)
        pick.color = colorByLayerIndex;
    else if (row == OvCc::ColorByBlockRow)
        pick.color = colorByBlockIndex;
    else if (row < OvCc::FirstCustomColorRow)
        pick.color = row - OvCc::RedRow + redIndex;
    else
        pick.trueColor = color.rgb();
    change(tr("Change color"), pick);
}

void PropertyEditor::pickLineWeight(int lineWeight)
{
    KcHost::EntityChange pick;
    pick.lineWeight = lineWeight;
    change(tr("Change lineweight"), pick);
}

void PropertyEditor::pickLineType(const QString &name)
{
    const OvCc::LineTypeComboBox &picker = *m_panels.front()->lineTypePicker();
    KcHost::EntityChange pick;
    if (name == picker.item(OvCc::LineTypeByLayerRow)->text())
        pick.linetype = QStringLiteral("ByLayer");
    else if (name == picker.item(OvCc::LineTypeByBlockRow)->text())
        pick.linetype = QStringLiteral("ByBlock");
    else
        pick.linetype = name;
    change(tr("Change linetype"), pick);
}

/// Answers the button "Others..." with the linetypes of the drawing.
void PropertyEditor::offerLineTypes(OvCc::LineTypeComboBox *picker)
{
    if (!m_drawing)
        return;
    bool isAccepted = false;
    const QString name =
            QInputDialog::getItem(picker, tr("Linetype"), tr("Linetypes of the drawing:"),
                                  KcHost::linetypes(*m_drawing->database), 0, false, &isAccepted);
    if (!isAccepted)
        return;
    const Geometry &geometry = m_drawing->geometry;
    if (rowOfText(*picker, name) < 0)
        picker->addItem(lineTypeSwatch(geometry.linetypes.at(geometry.linetypeOf(name))), name);
    pickLineType(name);
}

void PropertyEditor::change(const QString &step, const KcHost::EntityChange &change)
{
    if (m_selection.isEmpty()) {
        emit refused(tr("Nothing is selected: click on entities of the drawing first."));
        showAll();
        return;
    }
    int locked = 0;
    int failed = 0;
    {
        const KcHost::UndoGroup group(*m_drawing->database, step);
        const QSet<int> entities = m_selection;
        for (const int index : entities) {
            const Entity &entity = m_drawing->geometry.modelSpace().entities.at(index);
            switch (KcHost::changeEntity(*m_drawing->database, entity.record, change)) {
            case Kcore::eOk:
                break;
            case Kcore::eOnLockedLayer:
                ++locked;
                break;
            default:
                ++failed;
            }
        }
    }
    if (locked > 0)
        emit refused(tr("Entities on locked layers stay as they are: %n.", "", locked));
    else if (failed > 0)
        emit refused(tr("Entities that the drawing cannot change so: %n.", "", failed));
    setSelection(m_selection);
    showAll();
}

/// Shows the properties, whatever was picked.
void PropertyEditor::showAll() const
{
    for (const OvCc::PropertyManager *panel : m_panels)
        show(*panel);
}

void PropertyEditor::show(const OvCc::PropertyManager &panel) const
{
    const auto &[color, weight, linetype] = m_properties;
    if (!color) {
        showVaries(panel.colorPicker());
    } else if (const int row = rowOfColor(*panel.colorPicker(), *color); row >= 0) {
        panel.colorPicker()->setCurrentIndex(row);
    } else {
        const QColor shown(*color);
        panel.colorPicker()->showCurrentItem(creatColorPix(shown), OvCc::componentsOf(shown));
    }

    if (!weight)
        showVaries(panel.lineWeightPicker());
    else if (const int row = OvCc::LineWidthComboBox::rowOf(*weight); row >= 0)
        panel.lineWeightPicker()->setCurrentIndex(row);
    else
        panel.lineWeightPicker()->showCurrentItem(
                {}, OvCc::fixedLineWeightLabel(*weight, OvCc::LineWeightUnit::Millimetres));

    if (!linetype) {
        showVaries(panel.lineTypePicker());
    } else if (*linetype < 0) {
        panel.lineTypePicker()->setCurrentIndex(
                *linetype == lineTypeByLayer ? OvCc::LineTypeByLayerRow : OvCc::LineTypeByBlockRow);
    } else {
        const Linetype &shown = m_drawing->geometry.linetypes.at(*linetype);
        if (const int row = rowOfText(*panel.lineTypePicker(), shown.name); row >= 0)
            panel.lineTypePicker()->setCurrentIndex(row);
        else
            panel.lineTypePicker()->showCurrentItem(lineTypeSwatch(shown), shown.name);
    }
}

} // namespace Tessa
