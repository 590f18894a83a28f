#include "DxfReader.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <unordered_map>
#include <utility>

namespace Embedded {

namespace {

constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";
constexpr int kLongestQuote = 60;

QString quoted(const QString &text)
{
    return QLatin1Char('"') + text.left(kLongestQuote) + QLatin1Char('"');
}

bool isBinary(const QByteArray &bytes)
{
    return bytes.mid(7, 11) == " Binary DXF" && bytes.mid(20, 2) == QByteArray("\x1A\0", 2);
}

bool isDwg(const QByteArray &bytes)
{
    return bytes.startsWith("AC") && bytes.size() >= 6 && bytes.at(2) >= '0' && bytes.at(2) <= '9';
}

} // namespace

DxfReader::DxfReader(const QString &fileName, const QByteArray &bytes)
    : m_fileName(fileName)
    , m_hasByteOrderMark(bytes.startsWith(kByteOrderMark))
    , m_tokens(m_drawing.bytes, {m_hasByteOrderMark ? 3 : 0, bytes.size()})
    , m_isHeaderAhead(bytes.contains("HEADER"))
{
    m_drawing.bytes = bytes;
    if (m_hasByteOrderMark)
        m_drawing.text.setUtf8();
}

std::optional<Drawing> DxfReader::read()
{
    if (!checkSignature() || !checkFirstGroup())
        return std::nullopt;
    readSections();
    if (!m_error.isEmpty())
        return std::nullopt;
    finish();
    return std::move(m_drawing);
}

bool DxfReader::checkSignature()
{
    const QByteArray &bytes = m_drawing.bytes;
    if (bytes.isEmpty())
        fail(1, QStringLiteral("the file is empty"));
    else if (isBinary(bytes))
        fail(1, QStringLiteral("the file is a binary DXF, and only ASCII DXF can be read"));
    else if (isDwg(bytes))
        fail(1, QStringLiteral("the file is a DWG, and only ASCII DXF can be read"));
    return m_error.isEmpty();
}

bool DxfReader::checkFirstGroup()
{
    DxfTokens::Step step = m_tokens.next();
    while (step == DxfTokens::Step::Group && m_tokens.group().code == kComment)
        step = m_tokens.next();
    m_group = m_tokens.group();
    if (step != DxfTokens::Step::Group || m_group.code != 0
        || (value() != "SECTION" && value() != "EOF")) {
        fail(m_tokens.line(), QStringLiteral("the file is not a DXF"));
    }
    m_drawing.firstGroup = m_group.bytes.begin;
    m_records = 1;
    return m_error.isEmpty();
}

/// Begins with the first group, which is there already.
void DxfReader::readSections()
{
    do {
        if (m_group.code == 0 && value() == "EOF")
            break;
        if (m_group.code == 0 && value() == "SECTION")
            readSection();
    } while (next());
    const bool hasEndMark = m_group.code == 0 && value() == "EOF";
    if (!hasEndMark)
        warn(m_tokens.line(), QStringLiteral("the file ends without its end mark"));
    if (!m_hasBody)
        m_drawing.bodyBegin = hasEndMark ? m_group.bytes.begin : m_group.bytes.end;
    for (const LateSection &section : m_late) {
        m_section = section.name;
        m_records = section.records;
        m_tokens.goTo(section.place);
        m_group = section.place.group;
        readContent();
    }
}

void DxfReader::readSection()
{
    const int begin = m_group.bytes.begin;
    m_section = {};
    if (!nextInSection())
        return;
    m_section = m_group.code == 2 ? value() : std::string_view();
    if (!m_hasBody && m_section != "HEADER" && m_section != "CLASSES") {
        m_hasBody = true;
        m_drawing.bodyBegin = begin;
    }
    if (m_section == "HEADER") {
        readHeader();
    } else if (m_isHeaderAhead) {
        m_late.push_back({m_section, m_tokens.place(), m_records});
        skipContent();
    } else {
        readContent();
    }
}

void DxfReader::readContent()
{
    if (m_section == "TABLES")
        readTables();
    else if (m_section == "BLOCKS" || m_section == "ENTITIES")
        readEntities();
    else if (m_section == "OBJECTS")
        readObjects();
    else
        skipContent();
}

void DxfReader::skipContent()
{
    while (nextInSection()) {
    }
}

void DxfReader::readHeader()
{
    if (m_drawing.headerEnd >= 0) {
        warn(m_tokens.line(), QStringLiteral("the section \"HEADER\" comes twice; "
                                             "the first one counts"));
        skipContent();
        return;
    }
    m_isHeaderAhead = false;
    std::string_view name;
    while (nextInSection()) {
        if (m_group.code == 9)
            name = value();
        else
            readVariable(name);
    }
    m_drawing.headerEnd = m_group.bytes.begin;
    chooseCodec();
}

void DxfReader::readVariable(std::string_view name)
{
    if (name == "$ACADVER" && m_group.code == 1) {
        readVersion();
    } else if (name == "$DWGCODEPAGE" && m_group.code == 3) {
        m_codePage = {m_group, m_tokens.line()};
    } else if (name == "$CLAYER" && m_group.code == 8) {
        m_currentLayer = {m_group, m_tokens.line()};
        m_drawing.currentLayerValue = m_group.value;
    } else if (name == "$HANDSEED" && m_group.code == 5) {
        m_handleSeed = toHandle(value());
        m_drawing.nextHandleValue = m_group.value;
    } else if (name == "$TILEMODE" && m_group.code == 70) {
        m_drawing.isInModelSpace = toInt(value()).value_or(1) != 0;
    } else if (name == "$PSTYLEMODE" && m_group.code == 290) {
        m_drawing.hasNamedPlotStyles = toInt(value()).value_or(1) == 0;
    }
}

void DxfReader::readVersion()
{
    const std::optional<int> number =
            value().substr(0, 2) == "AC" ? toInt(value().substr(2)) : std::nullopt;
    m_drawing.version = number.value_or(kR12);
    if (!number || *number < kR12 || *number > kR2018) {
        warn(m_tokens.line(),
             QStringLiteral("the version %1 is none from R12 to R2018").arg(quoted(text(m_group))));
    }
}

void DxfReader::chooseCodec()
{
    if (m_drawing.version >= kR2007) {
        m_drawing.text.setUtf8();
    } else if (m_codePage.line > 0 && !m_hasByteOrderMark) {
        const std::string_view name = trimmed(m_tokens.view(m_codePage.group.value));
        if (!m_drawing.text.setCodePage(name)) {
            warn(m_codePage.line,
                 QStringLiteral("the code page %1 is unknown; ANSI_1252 is taken instead")
                         .arg(quoted(text(m_codePage.group))));
        }
    }
}

void DxfReader::readTables()
{
    while (nextInSection()) {
        if (m_group.code == 0)
            beginTableRecord();
        else if (m_recordType == "TABLE")
            readTableHead();
        else if (m_record.line > 0)
            readLayerGroup();
        else if (m_table == "LTYPE" && m_group.code == 2)
            m_drawing.linetypes.push_back(text(m_group).toStdWString());
    }
    finishLayer();
    closeTable();
    m_recordType = {};
    m_drawing.tablesEnd = m_group.bytes.begin;
}

void DxfReader::beginTableRecord()
{
    finishLayer();
    m_recordType = value();
    if (m_recordType == "TABLE" || m_recordType == "ENDTAB") {
        closeTable();
    } else if (m_table == "LAYER" && m_recordType == "LAYER") {
        ++m_drawing.layerRecords;
        m_record.line = m_tokens.line();
        m_record.layer.record = m_group.bytes;
    }
}

void DxfReader::readTableHead()
{
    if (m_group.code == 2)
        m_table = value();
    if (m_table != "LAYER")
        return;
    if (m_group.code == 5)
        m_drawing.layerTableHandle = toHandle(value());
    else if (m_group.code == 70)
        m_drawing.layerCountValue = m_group.value;
}

/// Takes whatever follows the table's records for its end, where a file forgets to mark it.
void DxfReader::closeTable()
{
    if (m_table == "LAYER")
        m_drawing.layerTableEnd = m_group.bytes.begin;
    m_table = {};
}

void DxfReader::readLayerGroup()
{
    m_record.layer.record.end = m_group.bytes.end;
    if (m_record.place.advance(m_group, value()))
        return;
    if (m_record.place.application == "AcAecLayerStandard" && m_group.code == 1000) {
        if (++m_record.describingTexts == 2)
            m_record.layer.description = text(m_group).toStdWString();
    } else if (!m_record.place.isInExtension()) {
        readLayerProperty();
    }
}

void DxfReader::readLayerProperty()
{
    Layer &layer = m_record.layer;
    switch (m_group.code) {
    case 2:
        layer.nameBytes = m_group.value;
        break;
    case 5:
        layer.handle = toHandle(value());
        break;
    case 6:
        m_record.linetype = {m_group, m_tokens.line()};
        break;
    case 62:
        readColor();
        break;
    case 70: {
        const int flags = layerNumber("flags", 0, kHighestFlags, 0, "0");
        layer.state.isFrozen = flags & kFrozenFlag;
        layer.isFrozenInNewViewports = flags & kFrozenInNewViewportsFlag;
        layer.state.isLocked = flags & kLockedFlag;
        break;
    }
    case 290:
        layer.state.isPlottable = layerNumber("plot flag", 0, 1, 1, "1") != 0;
        break;
    case 370:
        readLineWeight();
        break;
    case 390:
        layer.plotStyle = toHandle(value());
        break;
    case 420:
        layer.trueColor = layerNumber("true colour", 0, 0xFFFFFF, -1, "its indexed colour");
        break;
    default:
        break;
    }
}

/// A negative colour is that of a layer that is off.
void DxfReader::readColor()
{
    const std::optional<int> number = toInt(value());
    Layer &layer = m_record.layer;
    layer.state.isOff = number && *number < 0;
    if (number && *number != 0 && *number >= -255 && *number <= 255) {
        layer.color = std::abs(*number);
    } else {
        layer.color = kWhite;
        noteOddity("colour", QStringLiteral("7"));
    }
}

void DxfReader::readLineWeight()
{
    const std::optional<int> number = toInt(value());
    Layer &layer = m_record.layer;
    if (number && isLineWeight(*number)) {
        layer.lineWeight = *number;
    } else {
        layer.lineWeight = kDefaultLineWeight;
        noteOddity("lineweight", QStringLiteral("the default"));
    }
}

int DxfReader::layerNumber(const char *property, int low, int high, int fallback, const char *taken)
{
    const std::optional<int> number = toInt(value());
    if (number && *number >= low && *number <= high)
        return *number;
    noteOddity(property, QLatin1String(taken));
    return fallback;
}

void DxfReader::noteOddity(const char *property, const QString &taken)
{
    m_record.oddities.push_back(
            {m_tokens.line(),
             QStringLiteral("has the %1 %2, which is out of range; it is read as %3")
                     .arg(QLatin1String(property), quoted(text(m_group)), taken)});
}

void DxfReader::finishLayer()
{
    if (m_record.line == 0)
        return;
    LayerRecord record = std::exchange(m_record, {});
    Layer &layer = record.layer;
    const QString name = layer.nameBytes.isNull()
                                 ? QString()
                                 : m_drawing.text.decode(m_tokens.view(layer.nameBytes));
    if (name.trimmed().isEmpty()) {
        warn(record.line, QStringLiteral("a layer without a name is left out"));
        return;
    }
    const int namesake = m_drawing.findLayer(name);
    if (namesake >= 0 && !m_drawing.layers[namesake].record.isNull()) {
        m_drawing.duplicates.push_back({namesake, layer.record});
        warn(record.line,
             QStringLiteral("the layer %1 is left out, since the name is taken").arg(quoted(name)));
        return;
    }
    for (const Oddity &oddity : record.oddities)
        warn(oddity.line, QStringLiteral("the layer %1 %2").arg(quoted(name), oddity.text));
    layer.name = name.toStdWString();
    layer.announced = layer.stored = layer.state;
    keepLayer(std::move(layer), record.linetype);
}

/// Where entities come before the tables, they have named the layer already.
void DxfReader::keepLayer(Layer &&layer, const Reference &linetype)
{
    int index = m_drawing.findLayer(QString::fromStdWString(layer.name));
    if (index < 0) {
        index = m_drawing.addLayer(std::move(layer));
    } else {
        layer.isUsed = true;
        m_drawing.layers[index] = std::move(layer);
    }
    m_linetypes.resize(m_drawing.layers.size());
    m_linetypes[index] = linetype;
}

void DxfReader::readEntities()
{
    using Names = DxfEntityPlace::Names;
    EntitySection section;
    section.bytes.begin = m_group.bytes.end;
    section.firstNumber = m_records;
    m_entity = {};
    while (nextInSection()) {
        const Names names = m_entity.advance(m_tokens);
        if (m_group.code == 0) {
            section.records.push_back(m_group.bytes.begin);
            finishViewport();
            m_isInViewport = m_entity.isViewport();
            m_viewport = {};
        } else if (names == Names::OwnLayer) {
            noteUse();
        } else if (m_isInViewport && names == Names::FrozenLayer) {
            m_viewport.frozenNames.push_back(m_group);
        } else if (m_isInViewport && !m_entity.record.isInExtension()) {
            readViewportGroup();
        }
    }
    finishViewport();
    section.bytes.end = m_group.bytes.begin;
    section.records.shrink_to_fit();
    m_drawing.entities.push_back(std::move(section));
}

/// Neighbours mostly lie on the same layer, so that one comparison does.
void DxfReader::noteUse()
{
    const std::string_view bytes = m_tokens.view(m_group.value);
    if (bytes == m_lastUsedName)
        return;
    m_lastUsedName = bytes;
    if (!m_usedNames.insert(bytes).second)
        return;
    const QString name = text(m_group);
    if (name.trimmed().isEmpty())
        return;
    int index = m_drawing.findLayer(name);
    if (index < 0) {
        Layer layer;
        layer.name = name.toStdWString();
        layer.nameBytes = m_group.value;
        index = m_drawing.addLayer(std::move(layer));
    }
    m_drawing.layers[index].isUsed = true;
}

void DxfReader::readViewportGroup()
{
    switch (m_group.code) {
    case 67:
        m_viewport.viewport.isOnSheet = m_section == "ENTITIES" && toInt(value()) == 1;
        break;
    case 68:
        m_viewport.viewport.status = toInt(value()).value_or(0);
        break;
    case 69:
        m_viewport.viewport.number = toInt(value()).value_or(0);
        break;
    case 331:
    case 341:
        m_viewport.frozenHandles.push_back(m_group);
        break;
    default:
        break;
    }
}

void DxfReader::finishViewport()
{
    if (m_isInViewport)
        m_viewports.push_back(std::move(m_viewport));
    m_isInViewport = false;
}

/// Finds the named plot styles: the entries of a dictionary that another one, which comes first,
/// calls ACAD_PLOTSTYLENAME.
void DxfReader::readObjects()
{
    quint64 stylesHandle = 0;
    quint64 ownHandle = 0;
    DxfGroup key;
    const int begin = m_group.bytes.end;
    while (nextInSection()) {
        if (m_group.code == 0) {
            ownHandle = 0;
            key = {};
        } else if (m_group.code == 5) {
            ownHandle = toHandle(value());
        } else if (m_group.code == 3) {
            key = m_group;
        } else if ((m_group.code == 350 || m_group.code == 360) && !key.value.isNull()) {
            if (stylesHandle != 0 && ownHandle == stylesHandle)
                m_drawing.plotStyles.insert(toHandle(value()), text(key));
            else if (trimmed(m_tokens.view(key.value)) == "ACAD_PLOTSTYLENAME")
                stylesHandle = toHandle(value());
        }
    }
    m_drawing.objects.push_back({begin, m_group.bytes.begin});
}

void DxfReader::finish()
{
    if (m_drawing.findLayer(QStringLiteral("0")) < 0) {
        Layer zero;
        zero.name = L"0";
        m_drawing.addLayer(std::move(zero));
    }
    resolveLinetypes();
    resolveCurrentLayer();
    resolveViewports();
    chooseViewport();
    std::sort(m_drawing.entities.begin(), m_drawing.entities.end(),
              [](const EntitySection &one, const EntitySection &other) {
                  return one.firstNumber < other.firstNumber;
              });
    m_drawing.nextHandle = std::max(m_handleSeed, m_highestHandle + 1);
}

void DxfReader::resolveLinetypes()
{
    std::vector<std::wstring> &linetypes = m_drawing.linetypes;
    linetypes.emplace_back(L"Continuous"); // for a file that lacks it: the first of a name counts
    QHash<QString, int> &byName = m_drawing.linetypesByName;
    for (int index = static_cast<int>(linetypes.size()) - 1; index >= 0; --index)
        byName.insert(symbolKey(QString::fromStdWString(linetypes[index])), index);
    m_drawing.continuous = byName.value(symbolKey(QStringLiteral("Continuous")));
    std::unordered_map<std::string_view, int> byBytes;
    m_linetypes.resize(m_drawing.layers.size());
    for (std::size_t index = 0; index < m_drawing.layers.size(); ++index) {
        Layer &layer = m_drawing.layers[index];
        const Reference &reference = m_linetypes[index];
        layer.linetype = m_drawing.continuous;
        if (reference.line == 0)
            continue;
        const auto [entry, isNew] = byBytes.try_emplace(m_tokens.view(reference.group.value), -1);
        if (isNew)
            entry->second = byName.value(symbolKey(text(reference.group)), -1);
        if (entry->second >= 0) {
            layer.linetype = entry->second;
        } else {
            warn(reference.line,
                 QStringLiteral("the layer %1 has the linetype %2, which does not exist; "
                                "\"Continuous\" is taken instead")
                         .arg(quoted(QString::fromStdWString(layer.name)),
                              quoted(text(reference.group))));
        }
    }
}

void DxfReader::resolveCurrentLayer()
{
    int layer = m_drawing.findLayer(QStringLiteral("0"));
    if (m_currentLayer.line > 0) {
        const int named = m_drawing.findLayer(text(m_currentLayer.group));
        if (named >= 0) {
            layer = named;
        } else {
            m_drawing.missingCurrentLayer = text(m_currentLayer.group);
            warn(m_currentLayer.line,
                 QStringLiteral("the current layer %1 does not exist; \"0\" is taken instead")
                         .arg(quoted(m_drawing.missingCurrentLayer)));
        }
    }
    m_drawing.currentLayer = m_drawing.storedCurrentLayer = layer;
}

void DxfReader::resolveViewports()
{
    QHash<quint64, int> byHandle;
    if (!m_viewports.empty()) {
        for (std::size_t index = 0; index < m_drawing.layers.size(); ++index)
            byHandle.insert(m_drawing.layers[index].handle, static_cast<int>(index));
        byHandle.remove(0);
    }
    for (ViewportRecord &record : m_viewports) {
        std::vector<LayerMention> &frozen = record.viewport.frozenLayers;
        for (const DxfGroup &group : record.frozenHandles)
            frozen.push_back(
                    {byHandle.value(toHandle(m_tokens.view(group.value)), -1), group.bytes});
        for (const DxfGroup &group : record.frozenNames)
            frozen.push_back({m_drawing.findLayer(text(group)), group.bytes});
        std::sort(frozen.begin(), frozen.end(),
                  [](const auto &left, const auto &right) { return left.layer < right.layer; });
        m_drawing.viewports.push_back(std::move(record.viewport));
    }
}

/// The user works in the active one of the viewports that are on, which comes first in their
/// order, and on the sheet itself where there is none.
void DxfReader::chooseViewport()
{
    const std::vector<Viewport> &viewports = m_drawing.viewports;
    const auto rank = [](const Viewport &viewport) {
        if (!viewport.isOnSheet)
            return -1;
        if (viewport.number == 1)
            return std::numeric_limits<int>::max();
        return viewport.status > 0 ? viewport.status : -1;
    };
    int best = -1;
    for (std::size_t index = 0; index < viewports.size(); ++index) {
        const int own = rank(viewports[index]);
        if (own > 0 && (best < 0 || own < rank(viewports[best])))
            best = static_cast<int>(index);
    }
    m_drawing.currentViewport = best;
}

/// Goes to the next group that is no comment.
/// @return false at the end of the file, and when reading has failed
bool DxfReader::next()
{
    if (!m_error.isEmpty())
        return false;
    DxfTokens::Step step;
    do {
        step = m_tokens.next();
    } while (step == DxfTokens::Step::Group && m_tokens.group().code == kComment);
    if (step == DxfTokens::Step::Group) {
        m_group = m_tokens.group();
        m_records += m_group.code == 0 ? 1 : 0;
        return true;
    }
    if (step == DxfTokens::Step::BadCode) {
        fail(m_tokens.line(),
             QStringLiteral("%1 is no group code").arg(quoted(text(m_tokens.group()))));
    }
    return false;
}

/// Goes to the next group of this section.
/// @return false at its end, and when reading has failed
bool DxfReader::nextInSection()
{
    const bool isGroup = next();
    if (!m_error.isEmpty())
        return false;
    const std::string_view mark = isGroup && m_group.code == 0 ? value() : std::string_view();
    if (!isGroup || mark == "EOF" || mark == "SECTION") {
        const QString section = quoted(m_drawing.text.decode(m_section));
        fail(m_tokens.line(),
             mark == "SECTION"
                     ? QStringLiteral("the section %1 has no end").arg(section)
                     : QStringLiteral("the file ends inside the section %1").arg(section));
        return false;
    }
    if (m_group.code == 0)
        return mark != "ENDSEC";
    const int handleCode = m_recordType == "DIMSTYLE" ? 105 : 5;
    if (m_group.code == handleCode && m_section != "HEADER")
        m_highestHandle = std::max(m_highestHandle, toHandle(value()));
    return true;
}

QString DxfReader::text(const DxfGroup &group) const
{
    return m_drawing.text.decode(m_tokens.view(group.value));
}

void DxfReader::fail(int line, const QString &reason)
{
    m_error = sentence(line, reason);
}

void DxfReader::warn(int line, const QString &reason)
{
    m_warnings += sentence(line, reason);
}

QString DxfReader::sentence(int line, const QString &reason) const
{
    return QStringLiteral("%1, line %2: %3.").arg(m_fileName, QString::number(line), reason);
}

} // namespace Embedded
