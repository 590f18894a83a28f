// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfLayerWriter.h"

#include <algorithm>
#include <array>

namespace Embedded {

namespace {

/// The groups of a layer that may have to be changed or added, and those before them, in the order
/// in which they stand in a record.
constexpr std::array<int, 9> kOrder = {2, 70, 62, 420, 430, 440, 6, 290, 370};

std::size_t placeOf(int code)
{
    return static_cast<std::size_t>(std::find(kOrder.begin(), kOrder.end(), code) - kOrder.begin());
}

int stateFlags(const LayerState &state)
{
    return (state.isFrozen ? kFrozenFlag : 0) | (state.isLocked ? kLockedFlag : 0);
}

/// What else the flags say.
int otherFlags(std::string_view text)
{
    const int flags = toInt(text).value_or(0);
    return flags < 0 || flags > kHighestFlags ? 0 : flags & ~(kFrozenFlag | kLockedFlag);
}

/// The number with another sign; one that can have none, or is no number, gives way to white.
QByteArray signedColor(std::string_view old, bool isOff)
{
    std::string_view digits = trimmed(old);
    if (!digits.empty() && (digits[0] == '-' || digits[0] == '+'))
        digits.remove_prefix(1);
    const QByteArray number = toInt(digits).value_or(0) <= 0
                                      ? QByteArray::number(kWhite)
                                      : QByteArray(digits.data(), static_cast<int>(digits.size()));
    return isOff ? '-' + number : number;
}

QByteArray signedColor(const LayerState &state)
{
    return QByteArray::number(state.isOff ? -state.color : state.color);
}

} // namespace

DxfLayerWriter::DxfLayerWriter(const Drawing &drawing, DxfEdits &edits)
    : m_drawing(drawing)
    , m_edits(edits)
{
}

void DxfLayerWriter::edit(const Layer &layer)
{
    const LayerState &now = layer.state;
    const LayerState &old = layer.stored;
    m_groups = ownGroups(layer.record);
    if (stateFlags(now) != stateFlags(old))
        set(70, QByteArray::number(otherFlags(valueOf(70)) | stateFlags(now)));
    editColor(layer);
    if (now.linetype != old.linetype)
        set(6, linetypeName(now.linetype));
    if (m_drawing.version >= kR2000 && now.isPlottable != old.isPlottable)
        set(290, now.isPlottable ? "1" : "0");
    if (m_drawing.version >= kR2000 && now.lineWeight != old.lineWeight)
        set(370, QByteArray::number(now.lineWeight));
    if (now.description != old.description)
        editDescription(layer);
}

/// A colour's name in some book goes with the colour.
void DxfLayerWriter::editColor(const Layer &layer)
{
    const LayerState &now = layer.state;
    const LayerState &old = layer.stored;
    if (now.color != old.color)
        set(62, signedColor(now));
    else if (now.isOff != old.isOff)
        set(62, signedColor(valueOf(62), now.isOff));
    if (now.color == old.color && now.trueColor == old.trueColor)
        return;
    removeAll(430);
    if (now.trueColor < 0 || m_drawing.version < kR2004)
        removeAll(420);
    else
        set(420, QByteArray::number(now.trueColor));
}

/// The second text of the application's data is the description.
void DxfLayerWriter::editDescription(const Layer &layer)
{
    const QByteArray text = m_drawing.text.encode(QString::fromStdWString(layer.state.description));
    const DxfStyle style = m_edits.styleAt(layer.record.begin);
    DxfTokens tokens(m_drawing.bytes, layer.record);
    DxfRecordPlace place;
    std::vector<DxfGroup> found;
    while (found.size() < 3 && tokens.next() == DxfTokens::Step::Group) {
        const DxfGroup &group = tokens.group();
        const bool isHead = place.advance(group, trimmed(view(group.value)));
        const int wanted = found.empty() ? 1001 : 1000;
        if (place.application == kDescriptionApplication && (isHead || !found.empty())
            && group.code == wanted)
            found.push_back(group);
    }
    if (found.size() == 3)
        m_edits.replace(found[2].value, text);
    else if (found.size() == 2)
        m_edits.insert(found[1].bytes.end, style.group(1000, text));
    else if (found.size() == 1)
        m_edits.insert(found[0].bytes.end, style.group(1000, {}) + style.group(1000, text));
    else
        m_edits.insert(layer.record.end, descriptionGroups(text, style));
}

/// Replaces the last group of that code, which is the one that counts, or adds one in its place.
void DxfLayerWriter::set(int code, const QByteArray &text)
{
    const auto found = std::find_if(m_groups.rbegin(), m_groups.rend(),
                                    [code](const DxfGroup &group) { return group.code == code; });
    if (found != m_groups.rend()) {
        if (code == 6)
            m_edits.replace(found->value, text);
        else
            m_edits.replaceNumber(found->value, text);
        return;
    }
    const auto last =
            std::find_if(m_groups.rbegin(), m_groups.rend(), [code](const DxfGroup &group) {
                return placeOf(group.code) < placeOf(code);
            });
    m_edits.insert(last->bytes.end, m_edits.styleAt(last->bytes.begin).group(code, text));
}

void DxfLayerWriter::removeAll(int code)
{
    for (const DxfGroup &group : m_groups) {
        if (group.code == code)
            m_edits.remove(group.bytes);
    }
}

std::string_view DxfLayerWriter::valueOf(int code) const
{
    const auto found = std::find_if(m_groups.rbegin(), m_groups.rend(),
                                    [code](const DxfGroup &group) { return group.code == code; });
    return found == m_groups.rend() ? std::string_view() : view(found->value);
}

/// Those of kOrder, in the file's order.
std::vector<DxfGroup> DxfLayerWriter::ownGroups(ByteRange record) const
{
    std::vector<DxfGroup> groups;
    DxfTokens tokens(m_drawing.bytes, record);
    DxfRecordPlace place;
    while (tokens.next() == DxfTokens::Step::Group) {
        const DxfGroup &group = tokens.group();
        place.advance(group, trimmed(view(group.value)));
        if (!place.isInExtension() && placeOf(group.code) < kOrder.size())
            groups.push_back(group);
    }
    return groups;
}

DxfGroup DxfLayerWriter::nameGroup(ByteRange record) const
{
    DxfGroup name;
    const std::vector<DxfGroup> groups = ownGroups(record);
    for (const DxfGroup &group : groups) {
        if (group.code == 2)
            name = group;
    }
    return name;
}

QByteArray DxfLayerWriter::newRecord(const Layer &layer, const DxfStyle &style,
                                     const QByteArray &references) const
{
    const LayerState &state = layer.state;
    QByteArray record = style.group(2, m_drawing.nameBytes(layer))
                        + style.group(70, QByteArray::number(stateFlags(state)))
                        + style.group(62, signedColor(state));
    if (state.trueColor >= 0 && m_drawing.version >= kR2004)
        record += style.group(420, QByteArray::number(state.trueColor));
    record += style.group(6, linetypeName(state.linetype));
    if (m_drawing.version >= kR2000) {
        if (!state.isPlottable)
            record += style.group(290, "0");
        record += style.group(370, QByteArray::number(state.lineWeight));
    }
    record += references;
    if (!state.description.empty()) {
        record += descriptionGroups(
                m_drawing.text.encode(QString::fromStdWString(state.description)), style);
    }
    return record;
}

QByteArray DxfLayerWriter::linetypeName(int linetype) const
{
    return m_drawing.text.encode(QString::fromStdWString(m_drawing.linetypes[linetype]));
}

QByteArray DxfLayerWriter::descriptionGroups(const QByteArray &text, const DxfStyle &style) const
{
    return style.group(1001, kDescriptionApplication) + style.group(1000, {})
           + style.group(1000, text);
}

QStringList DxfLayerWriter::losses(const Layer &layer) const
{
    const LayerState &now = layer.state;
    const LayerState &old = layer.stored;
    const bool isOld = m_drawing.version < kR2000;
    QStringList properties;
    if (isOld && now.isPlottable != old.isPlottable)
        properties += QStringLiteral("plot flag");
    if (m_drawing.version < kR2004 && now.trueColor >= 0 && now.trueColor != old.trueColor)
        properties += QStringLiteral("true colour");
    if (isOld && now.lineWeight != old.lineWeight)
        properties += QStringLiteral("lineweight");
    for (QString &property : properties) {
        property = QStringLiteral("the file's version cannot hold the %1 of the layer \"%2\"")
                           .arg(property, QString::fromStdWString(layer.name));
    }
    return properties;
}

} // namespace Embedded
