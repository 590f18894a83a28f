// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfReader.h"

#include <algorithm>
#include <utility>

namespace Embedded {

namespace {

constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

bool isBinary(const QByteArray &bytes)
{
    return bytes.mid(7, 11) == " Binary DXF" && bytes.mid(20, 2) == QByteArray("\x1A\0", 2);
}

bool isDwg(const QByteArray &bytes)
{
    return bytes.startsWith("AC") && bytes.size() >= 6 && bytes.at(2) >= '0' && bytes.at(2) <= '9';
}

Drawing drawingOf(const QByteArray &bytes)
{
    Drawing drawing;
    drawing.bytes = bytes;
    return drawing;
}

} // namespace

DxfReader::DxfReader(const QString &fileName, const QByteArray &bytes)
    : m_drawing(drawingOf(bytes))
    , m_hasByteOrderMark(bytes.startsWith(kByteOrderMark))
    , m_cursor(fileName, m_drawing, m_hasByteOrderMark ? 3 : 0)
    , m_tables(m_drawing, m_cursor)
    , m_entities(m_drawing, m_cursor)
    , m_isHeaderAhead(bytes.contains("HEADER"))
{
    if (m_hasByteOrderMark)
        m_drawing.text.setUtf8();
}

std::optional<Drawing> DxfReader::read()
{
    if (!checkSignature() || !checkFirstGroup())
        return std::nullopt;
    readSections();
    if (m_cursor.hasFailed())
        return std::nullopt;
    finish();
    return std::move(m_drawing);
}

bool DxfReader::checkSignature()
{
    const QByteArray &bytes = m_drawing.bytes;
    if (bytes.isEmpty())
        m_cursor.fail(1, QStringLiteral("the file is empty"));
    else if (isBinary(bytes))
        m_cursor.fail(1,
                      QStringLiteral("the file is a binary DXF, and only ASCII DXF can be read"));
    else if (isDwg(bytes))
        m_cursor.fail(1, QStringLiteral("the file is a DWG, and only ASCII DXF can be read"));
    return !m_cursor.hasFailed();
}

bool DxfReader::checkFirstGroup()
{
    if (!m_cursor.next() || !(m_cursor.isAt("SECTION") || m_cursor.isAt("EOF")))
        m_cursor.fail(m_cursor.line(), QStringLiteral("the file is not a DXF"));
    m_drawing.firstGroup = m_cursor.group().bytes.begin;
    return !m_cursor.hasFailed();
}

/// Begins with the first group, which is there already.
void DxfReader::readSections()
{
    do {
        if (m_cursor.isAt("SECTION"))
            readSection();
    } while (!m_cursor.isAt("EOF") && m_cursor.next());
    const bool hasEndMark = m_cursor.isAt("EOF");
    if (!hasEndMark)
        m_cursor.warn(m_cursor.line(), QStringLiteral("the file ends without its end mark"));
    if (!m_hasBody) {
        const ByteRange last = m_cursor.group().bytes;
        m_drawing.bodyBegin = hasEndMark ? last.begin : last.end;
    }
    for (const DxfCursor::Place &section : m_late) {
        m_cursor.goTo(section);
        readContent();
    }
}

void DxfReader::readSection()
{
    const int begin = m_cursor.group().bytes.begin;
    if (!m_cursor.enterSection())
        return;
    const std::string_view section = m_cursor.section();
    if (!m_hasBody && section != "HEADER" && section != "CLASSES") {
        m_hasBody = true;
        m_drawing.bodyBegin = begin;
    }
    if (section == "HEADER") {
        readHeader();
    } else if (m_isHeaderAhead) {
        m_late.push_back(m_cursor.place());
        skipContent();
    } else {
        readContent();
    }
}

void DxfReader::readContent()
{
    const std::string_view section = m_cursor.section();
    if (section == "TABLES")
        m_tables.read();
    else if (section == "BLOCKS" || section == "ENTITIES")
        m_entities.read();
    else if (section == "OBJECTS")
        readObjects();
    else
        skipContent();
}

void DxfReader::skipContent()
{
    while (m_cursor.nextInSection()) {
    }
}

void DxfReader::readHeader()
{
    if (m_drawing.headerEnd >= 0) {
        m_cursor.warn(m_cursor.line(), QStringLiteral("the section \"HEADER\" comes twice; "
                                                      "the first one counts"));
        skipContent();
        return;
    }
    m_isHeaderAhead = false;
    std::string_view name;
    while (m_cursor.nextInSection()) {
        if (m_cursor.code() == 0) // a record that has no place here, but keeps its groups
            name = {};
        else if (m_cursor.code() == 9)
            name = m_cursor.value();
        else
            readVariable(name);
    }
    m_drawing.headerEnd = m_cursor.group().bytes.begin;
    chooseCodec();
}

void DxfReader::readVariable(std::string_view name)
{
    if (name == "$ACADVER" && m_cursor.code() == 1) {
        readVersion();
    } else if (name == "$DWGCODEPAGE" && m_cursor.code() == 3) {
        m_codePage = {m_cursor.group(), m_cursor.line()};
    } else if (name == "$CLAYER" && m_cursor.code() == 8) {
        m_currentLayer = {m_cursor.group(), m_cursor.line()};
        m_drawing.currentLayerValues.push_back(m_cursor.group().value);
    } else if (name == "$HANDSEED" && m_cursor.code() == 5) {
        m_handleSeed = toHandle(m_cursor.value());
        m_drawing.nextHandleValue = m_cursor.group().value;
    } else if (name == "$TILEMODE" && m_cursor.code() == 70) {
        m_drawing.isInModelSpace = toInt(m_cursor.value()).value_or(1) != 0;
    } else if (name == "$PSTYLEMODE" && m_cursor.code() == 290) {
        m_drawing.hasNamedPlotStyles = toInt(m_cursor.value()).value_or(1) == 0;
    }
}

void DxfReader::readVersion()
{
    const std::optional<int> number = m_cursor.value().substr(0, 2) == "AC"
                                              ? toInt(m_cursor.value().substr(2))
                                              : std::nullopt;
    m_drawing.version = number.value_or(kR12);
    if (!number || *number < kR12 || *number > kR2018) {
        m_cursor.warn(m_cursor.line(), QStringLiteral("the version %1 is none from R12 to R2018")
                                               .arg(quoted(m_cursor.text())));
    }
}

void DxfReader::chooseCodec()
{
    if (m_drawing.version >= kR2007) {
        m_drawing.text.setUtf8();
    } else if (m_codePage.line > 0 && !m_hasByteOrderMark) {
        const std::string_view name = trimmed(m_drawing.view(m_codePage.group.value));
        if (!m_drawing.text.setCodePage(name)) {
            m_cursor.warn(m_codePage.line,
                          QStringLiteral("the code page %1 is unknown; ANSI_1252 is taken instead")
                                  .arg(quoted(m_cursor.text(m_codePage.group))));
        }
    }
}

/// Finds the named plot styles: the entries of a dictionary that another one, which comes first,
/// calls ACAD_PLOTSTYLENAME.
void DxfReader::readObjects()
{
    quint64 stylesHandle = 0;
    quint64 ownHandle = 0;
    DxfGroup key;
    const int begin = m_cursor.group().bytes.end;
    while (m_cursor.nextInSection()) {
        if (m_cursor.code() == 0) {
            ownHandle = 0;
            key = {};
        } else if (m_cursor.code() == 5) {
            ownHandle = toHandle(m_cursor.value());
        } else if (m_cursor.code() == 3) {
            key = m_cursor.group();
        } else if ((m_cursor.code() == 350 || m_cursor.code() == 360) && !key.value.isNull()) {
            if (stylesHandle != 0 && ownHandle == stylesHandle)
                m_drawing.plotStyles.insert(toHandle(m_cursor.value()), m_cursor.text(key));
            else if (trimmed(m_drawing.view(key.value)) == "ACAD_PLOTSTYLENAME")
                stylesHandle = toHandle(m_cursor.value());
        }
    }
    m_drawing.objects.push_back({begin, m_cursor.group().bytes.begin});
}

void DxfReader::finish()
{
    if (m_drawing.findLayer(QStringLiteral("0")) < 0) {
        Layer zero;
        zero.name = L"0";
        m_drawing.addLayer(std::move(zero));
    }
    m_tables.finish();
    resolveCurrentLayer();
    m_entities.finish();
    m_drawing.nextHandle = std::max(m_handleSeed, m_cursor.highestHandle() + 1);
}

void DxfReader::resolveCurrentLayer()
{
    int layer = m_drawing.findLayer(QStringLiteral("0"));
    if (m_currentLayer.line > 0) {
        const int named = m_drawing.findLayer(m_cursor.text(m_currentLayer.group));
        if (named >= 0) {
            layer = named;
        } else {
            m_drawing.missingCurrentLayer = m_cursor.text(m_currentLayer.group);
            m_cursor.warn(
                    m_currentLayer.line,
                    QStringLiteral("the current layer %1 does not exist; \"0\" is taken instead")
                            .arg(quoted(m_drawing.missingCurrentLayer)));
        }
    }
    m_drawing.currentLayer = m_drawing.storedCurrentLayer = layer;
}

} // namespace Embedded
