// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerEditor.h"

#include "ErasureQuestion.h"
#include "Phrases.h"
#include "viewer/canvas/Drawing.h"

#include <OvCustomControl/LayerLink.h>
#include <OvCustomControl/LayerManager.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <QHash>
#include <QWidget>

namespace Tessa {

namespace {

/// Why the drawing refuses, to go on after a colon.
/// @param rule what it says of values that no layer can have
QString reasonFor(Kcore::ErrorStatus status, const QString &rule)
{
    switch (status) {
    case Kcore::eInvalidInput:
        return rule;
    case Kcore::eDuplicateKey:
        return LayerEditor::tr("there is another layer of that name");
    case Kcore::eCannotBeErasedByCaller:
        return LayerEditor::tr("every drawing has this layer");
    case Kcore::eLayerIsCurrent:
        return LayerEditor::tr("it is the current layer");
    case Kcore::eLayerInUse:
        return LayerEditor::tr("there are entities on it");
    case Kcore::eKeyNotFound:
        return LayerEditor::tr("the drawing has no such layer");
    default:
        return LayerEditor::tr("it is in use elsewhere");
    }
}

} // namespace

LayerEditor::LayerEditor(const OvCc::LayerLink &link, const OvCc::LayerManager &panel,
                         QWidget *window)
    : QObject(window)
    , m_panel(panel)
    , m_window(window)
{
    using OvCc::LayerLink;
    connect(&link, &LayerLink::changesBegin, this, &LayerEditor::beginGesture);
    connect(&link, &LayerLink::changesEnd, this, &LayerEditor::endGesture);
    connect(&link, &LayerLink::currentLayerRequested, this, &LayerEditor::makeCurrent);
    connect(&link, &LayerLink::addRequested, this, &LayerEditor::add);
    connect(&link, &LayerLink::renameRequested, this, &LayerEditor::rename);
    connect(&link, &LayerLink::removeRequested, this, &LayerEditor::erase);
    connect(&link, &LayerLink::mergeRequested, this, &LayerEditor::merge);
    connect(&link, &LayerLink::colorRequested, this, &LayerEditor::setColor);
    connect(&link, &LayerLink::linetypeRequested, this, &LayerEditor::setLinetype);
    connect(&link, &LayerLink::lineWeightRequested, this, &LayerEditor::setLineWeight);
    connect(&link, &LayerLink::descriptionRequested, this, &LayerEditor::setDescription);
}

LayerEditor::~LayerEditor() = default;

void LayerEditor::setDrawing(Drawing *drawing)
{
    m_step.reset();
    m_drawing = drawing;
}

void LayerEditor::beginGesture(const QString &text)
{
    m_gesture = text;
    // What the selection shows and hides leaves no trace: its steps become one, which comes to nothing.
    const int mergeId = m_panel.visibilityFollowsSelection() ? int(qHash(text) & 0x7fffffff) : -1;
    if (m_drawing)
        m_step = std::make_unique<KcHost::UndoGroup>(*m_drawing->database, text, mergeId);
}

void LayerEditor::endGesture(int, int refusedLayers)
{
    m_step.reset();
    if (refusedLayers == 1)
        emit refused(tr("%1: the drawing refused.").arg(m_gesture));
    else if (refusedLayers > 1)
        emit refused(tr("%1: the drawing refused %2 of them.")
                             .arg(m_gesture, QString::number(refusedLayers)));
}

void LayerEditor::makeCurrent(const QString &name)
{
    tellRefusal(KcHost::setCurrentLayer(*m_drawing->database, name),
                tr("Layer %1 cannot be made the current one").arg(quoted(name)));
}

void LayerEditor::add(const QString &name)
{
    tellRefusal(KcHost::addLayer(*m_drawing->database, name),
                tr("Layer %1 cannot be added").arg(quoted(name)));
}

void LayerEditor::rename(const QString &from, const QString &to)
{
    tellRefusal(KcHost::renameLayer(*m_drawing->database, from, to),
                tr("Layer %1 cannot be renamed to %2").arg(quoted(from), quoted(to)));
}

/// Asks where entities lie on layers that could go with them.
void LayerEditor::erase(const QStringList &names)
{
    OvCc::LayerItemData current;
    OvLayerUtility().getCurrentLayer(current);
    const QHash<QString, int> usage = KcHost::layerUsage(*m_drawing->database);
    int layers = 0;
    int entities = 0;
    for (const QString &name : names) {
        const int used = usage.value(name);
        if (used > 0 && name != QLatin1String("0") && name != current.name) {
            ++layers;
            entities += used;
        }
    }
    const ErasureAnswer answer =
            layers > 0 ? askAboutErasure(m_window, layers, entities) : ErasureAnswer::EmptyLayers;
    if (answer == ErasureAnswer::Cancel)
        return;
    changeEach(names, tr("Delete layers"), tr("Not deleted: %1."),
               answer == ErasureAnswer::WithEntities ? &KcHost::eraseLayerWithEntities
                                                     : &KcHost::eraseLayer);
}

void LayerEditor::merge(const QStringList &names, const QString &into)
{
    changeEach(names, tr("Merge layers"), tr("Not merged: %1."),
               [&into](KcDbDatabase &drawing, const QString &name) {
                   return KcHost::mergeLayer(drawing, name, into);
               });
}

/// By its index where the drawing has exactly that colour among its numbered ones.
void LayerEditor::setColor(const QStringList &names, const QColor &color)
{
    KcHost::LayerChange change;
    const quint32 rgb = color.rgb() & 0xffffff;
    if (const int index = KcHost::colorIndex(rgb); index > 0)
        change.color = index;
    else
        change.trueColor = rgb;
    this->change(names, tr("Change color"), change);
}

void LayerEditor::setLinetype(const QStringList &names, const QString &linetype)
{
    KcHost::LayerChange change;
    change.linetype = linetype;
    this->change(names, tr("Change linetype"), change);
}

void LayerEditor::setLineWeight(const QStringList &names, int lineWeight)
{
    KcHost::LayerChange change;
    change.lineWeight = lineWeight;
    this->change(names, tr("Change lineweight"), change);
}

void LayerEditor::setDescription(const QStringList &names, const QString &description)
{
    KcHost::LayerChange change;
    change.description = description;
    this->change(names, tr("Change description"), change);
}

void LayerEditor::change(const QStringList &names, const QString &step,
                         const KcHost::LayerChange &change)
{
    changeEach(names, step, tr("Not changed: %1."),
               [&change](KcDbDatabase &drawing, const QString &name) {
                   return KcHost::changeLayer(drawing, name, change);
               });
}

/// Changes layers in one step.
/// @param otherwise what to tell of those that the drawing refuses
void LayerEditor::changeEach(const QStringList &names, const QString &step,
                             const QString &otherwise, const Change &change)
{
    QStringList reasons;
    {
        const KcHost::UndoGroup group(*m_drawing->database, step);
        for (const QString &name : names) {
            const Kcore::ErrorStatus status = change(*m_drawing->database, name);
            if (status != Kcore::eOk)
                reasons.append(tr("%1 (%2)").arg(quoted(name),
                                                 reasonFor(status, tr("no layer can have that"))));
        }
    }
    if (!reasons.isEmpty())
        emit refused(otherwise.arg(listed(reasons)));
}

/// @param sentence is completed by the reason
void LayerEditor::tellRefusal(Kcore::ErrorStatus status, const QString &sentence)
{
    const QString names = tr("a name has 1 to 255 characters, and none of <>/\\\":;?*|=");
    if (status != Kcore::eOk)
        emit refused(tr("%1: %2.").arg(sentence, reasonFor(status, names)));
}

} // namespace Tessa
