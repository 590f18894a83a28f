// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfEdits.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace Embedded {

namespace {

/// A QByteArray counts its bytes in an int, and needs a few for itself.
constexpr qint64 kMostBytes = std::numeric_limits<int>::max() - 64;

/// The bytes themselves, not a copy.
QByteArray part(const QByteArray &bytes, int begin, int end)
{
    return QByteArray::fromRawData(bytes.constData() + begin, end - begin);
}

} // namespace

QByteArray DxfStyle::group(int code, const QByteArray &value) const
{
    return QByteArray::number(code).rightJustified(codeWidth) + lineEnd + value + lineEnd;
}

DxfEdits::DxfEdits(const QByteArray &bytes, int firstGroup)
    : m_bytes(bytes)
    , m_firstGroup(firstGroup)
{
}

void DxfEdits::replace(ByteRange bytes, const QByteArray &text)
{
    m_edits.push_back({bytes, text});
}

/// A number that stands to the right keeps its last digit's place.
void DxfEdits::replaceNumber(ByteRange value, const QByteArray &number)
{
    const QByteArray old = part(m_bytes, value.begin, value.end);
    const int digits = old.trimmed().size();
    const int leading = digits == 0 ? 0 : old.indexOf(old.trimmed());
    const QByteArray text = leading == 0 ? number : number.rightJustified(leading + digits);
    replace(value, text + old.mid(leading + digits));
}

/// Text at the end of a file whose last line is open begins a line of its own.
void DxfEdits::insert(int at, const QByteArray &text)
{
    const bool isLineOpen = at == m_bytes.size() && !m_bytes.endsWith('\n');
    replace({at, at}, isLineOpen ? styleAt(at).lineEnd + text : text);
}

DxfStyle DxfEdits::styleAt(int position) const
{
    const int begin = position < m_bytes.size() ? position : m_firstGroup;
    const int feed = m_bytes.indexOf('\n', begin);
    const bool hasReturn = feed > begin && m_bytes.at(feed - 1) == '\r';
    return {feed - begin - (hasReturn ? 1 : 0), hasReturn ? "\r\n" : "\n"};
}

void DxfEdits::sort()
{
    std::stable_sort(m_edits.begin(), m_edits.end());
}

void DxfEdits::merge(DxfEdits &&others)
{
    const auto present = static_cast<std::ptrdiff_t>(m_edits.size());
    std::move(others.m_edits.begin(), others.m_edits.end(), std::back_inserter(m_edits));
    std::inplace_merge(m_edits.begin(), m_edits.begin() + present, m_edits.end());
}

QByteArray DxfEdits::apply() const
{
    qint64 size = 0;
    forEachPiece([&](const QByteArray &piece) { size += piece.size(); });
    if (size > kMostBytes)
        return {};
    QByteArray result;
    result.reserve(static_cast<int>(size));
    forEachPiece([&](const QByteArray &piece) { result += piece; });
    return result;
}

template <class Function>
void DxfEdits::forEachPiece(Function function) const
{
    int done = 0;
    for (const Edit &edit : m_edits) {
        if (edit.bytes.begin < done)
            continue;
        function(part(m_bytes, done, edit.bytes.begin));
        function(edit.text);
        done = edit.bytes.end;
    }
    function(part(m_bytes, done, int(m_bytes.size())));
}

bool DxfEdits::Edit::operator<(const Edit &other) const
{
    return std::make_pair(bytes.begin, bytes.end)
           < std::make_pair(other.bytes.begin, other.bytes.end);
}

} // namespace Embedded
