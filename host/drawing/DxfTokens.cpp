// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfTokens.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>

namespace Embedded {

namespace {

/// See isPlainEntity().
constexpr std::string_view kPlainEntities[] = {
        "3DFACE",   "3DSOLID",     "ARC",          "ARC_DIMENSION", "ATTDEF",      "ATTRIB",
        "BODY",     "CIRCLE",      "DGNUNDERLAY",  "DIMENSION",     "DWFUNDERLAY", "ELLIPSE",
        "HATCH",    "HELIX",       "IMAGE",        "INSERT",        "LEADER",      "LIGHT",
        "LINE",     "LWPOLYLINE",  "MLINE",        "MPOLYGON",      "MTEXT",       "OLE2FRAME",
        "OLEFRAME", "PDFUNDERLAY", "PLANESURFACE", "POINT",         "POLYLINE",    "RAY",
        "REGION",   "SHAPE",       "SOLID",        "SPLINE",        "TEXT",        "TOLERANCE",
        "TRACE",    "VERTEX",      "VIEWPORT",     "WIPEOUT",       "XLINE",
};

} // namespace

DxfTokens::DxfTokens(const QByteArray &bytes, ByteRange part)
    : m_bytes(bytes)
    , m_end(part.end)
    , m_position(part.begin)
{
}

DxfTokens::Step DxfTokens::next()
{
    m_line += 2;
    const int begin = m_position;
    const ByteRange codeLine = takeLine();
    const std::optional<int> code = toInt(view(codeLine));
    if (!code) {
        m_group = {0, codeLine, codeLine};
        m_line -= begin == m_end ? 1 : 0;
        return trimmed(view({begin, m_end})).empty() ? Step::End : Step::BadCode;
    }
    if (m_position == m_end)
        return Step::End;
    const ByteRange value = takeLine();
    m_group = {*code, {begin, m_position}, value};
    return Step::Group;
}

void DxfTokens::goTo(const Place &place)
{
    m_group = place.group;
    m_position = place.position;
    m_line = place.line;
}

ByteRange DxfTokens::takeLine()
{
    const char *data = m_bytes.constData();
    const int begin = m_position;
    const void *found = std::memchr(data + begin, '\n', static_cast<std::size_t>(m_end - begin));
    int end = found ? static_cast<int>(static_cast<const char *>(found) - data) : m_end;
    m_position = found ? end + 1 : end;
    while (end > begin && data[end - 1] == '\r')
        --end;
    return {begin, end};
}

std::string_view DxfTokens::view(ByteRange range) const
{
    return {m_bytes.constData() + range.begin, static_cast<std::size_t>(range.end - range.begin)};
}

bool DxfRecordPlace::advance(const DxfGroup &group, std::string_view value)
{
    if (group.code == 1001) {
        isInExtendedData = true;
        application = value;
        return true;
    }
    if (group.code == 102) {
        isInAppGroup = value.substr(0, 1) == "{";
        application = value;
        return true;
    }
    return false;
}

DxfEntityPlace::Names DxfEntityPlace::advance(const DxfTokens &tokens)
{
    const DxfGroup &group = tokens.group();
    const auto value = [&] { return trimmed(tokens.view(group.value)); };
    switch (group.code) {
    case 0:
        *this = {};
        isInRecord = true;
        type = value();
        return Names::Nothing;
    case 8:
        if (!isInRecord || record.isInExtension() || (hasLayer && !isPlainEntity(type)))
            return Names::Nothing;
        hasLayer = true;
        return Names::OwnLayer;
    case 102:
    case 1001:
        record.advance(group, value());
        return Names::Nothing;
    case 1003:
        return isViewport() && record.application == "ACAD" ? Names::FrozenLayer : Names::Nothing;
    default:
        return Names::Nothing;
    }
}

bool isPlainEntity(std::string_view type)
{
    return std::binary_search(std::begin(kPlainEntities), std::end(kPlainEntities), type);
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::optional<int> toInt(std::string_view text)
{
    text = trimmed(text);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    int number = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional<int>(number) : std::nullopt;
}

quint64 toHandle(std::string_view text)
{
    text = trimmed(text);
    quint64 handle = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, handle, 16);
    return error == std::errc() && stop == end ? handle : 0;
}

} // namespace Embedded
