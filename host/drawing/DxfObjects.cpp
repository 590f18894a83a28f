// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfObjects.h"

namespace Embedded {

DxfObjects::DxfObjects(const QByteArray &bytes, const std::vector<ByteRange> &sections)
    : m_bytes(bytes)
{
    for (const ByteRange section : sections)
        addSection(section);
    for (int index = 0; index < static_cast<int>(m_objects.size()); ++index) {
        m_byHandle.insert(m_objects[index].handle, index);
        m_byOwner.insert(m_objects[index].owner, index);
    }
}

void DxfObjects::addSection(ByteRange section)
{
    DxfTokens tokens(m_bytes, section);
    DxfRecordPlace place;
    while (tokens.next() == DxfTokens::Step::Group) {
        if (tokens.group().code == 0) {
            place = {};
            m_objects.emplace_back();
            m_objects.back().bytes.begin = tokens.group().bytes.begin;
        }
        if (m_objects.empty())
            continue;
        readGroup(m_objects.back(), place, tokens);
        m_objects.back().bytes.end = tokens.group().bytes.end;
    }
}

std::vector<ByteRange> DxfObjects::takeExtension(ByteRange record)
{
    Object owner;
    DxfTokens tokens(m_bytes, record);
    DxfRecordPlace place;
    while (tokens.next() == DxfTokens::Step::Group)
        readGroup(owner, place, tokens);

    const auto first = m_byHandle.constFind(owner.extension);
    if (owner.extension == 0 || first == m_byHandle.constEnd())
        return {};
    const quint64 dictionaryOwner = m_objects[*first].owner;
    if (dictionaryOwner != 0 && dictionaryOwner != owner.handle)
        return {};
    std::vector<ByteRange> found;
    QList<int> open{*first};
    while (!open.isEmpty()) {
        Object &object = m_objects[open.takeLast()];
        if (object.isTaken)
            continue;
        object.isTaken = true;
        found.push_back(object.bytes);
        if (object.handle != 0)
            open += m_byOwner.values(object.handle);
    }
    return found;
}

void DxfObjects::readGroup(Object &object, DxfRecordPlace &place, const DxfTokens &tokens)
{
    const DxfGroup &group = tokens.group();
    const std::string_view value = trimmed(tokens.view(group.value));
    if (place.advance(group, value))
        return;
    if (place.isInAppGroup) {
        if (group.code == 360 && place.application == "{ACAD_XDICTIONARY")
            object.extension = toHandle(value);
    } else if (place.isInExtendedData) {
        return;
    } else if (group.code == 5 && object.handle == 0) {
        object.handle = toHandle(value);
    } else if (group.code == 330 && object.owner == 0) {
        object.owner = toHandle(value);
    }
}

} // namespace Embedded
