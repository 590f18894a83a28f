#include "Support.h"

#include <QDir>
#include <QJsonArray>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>
#include <tuple>

using namespace Kcore;

namespace {

QString taken(KTCHAR *text)
{
    const QString result = QString::fromWCharArray(text ? text : L"");
    kcutDelString(text);
    return result;
}

/// Runs @p visit with each layer, open for read.
template <class Visitor>
void forEachLayer(KcDbDatabase &drawing, Visitor visit)
{
    KcDbLayerTable *table = nullptr;
    QCOMPARE(drawing.getLayerTable(table, KcDb::kForRead), eOk);
    KcDbLayerTableIterator *made = nullptr;
    QCOMPARE(table->newIterator(made), eOk);
    const std::unique_ptr<KcDbLayerTableIterator> iterator(made);
    QCOMPARE(table->close(), eOk);
    for (; !iterator->done(); iterator->step()) {
        KcDbLayerTableRecord *record = nullptr;
        QCOMPARE(iterator->getRecord(record, KcDb::kForRead), eOk);
        visit(*record);
        QCOMPARE(record->close(), eOk);
    }
}

QString nameOf(const KcDbLayerTableRecord &record)
{
    KTCHAR *name = nullptr;
    record.getName(name);
    return taken(name);
}

QStringList layerNames(KcDbDatabase &drawing)
{
    QStringList names;
    forEachLayer(drawing, [&](const KcDbLayerTableRecord &record) { names += nameOf(record); });
    return names;
}

KcDbObjectId layerId(KcDbDatabase &drawing, const QString &name)
{
    KcDbObjectId id;
    forEachLayer(drawing, [&](const KcDbLayerTableRecord &record) {
        if (nameOf(record) == name)
            id = record.objectId();
    });
    return id;
}

QString symbolName(KcDbObjectId id)
{
    KTCHAR *name = nullptr;
    KcDbSymbolUtilities::getSymbolName(name, id);
    return taken(name);
}

/// All that a layer says of itself.
QString describe(const KcDbLayerTableRecord &record)
{
    QStringList words{nameOf(record)};
    const std::pair<bool, QString> states[] = {{record.isOff(), QStringLiteral("off")},
                                               {record.isFrozen(), QStringLiteral("frozen")},
                                               {record.isLocked(), QStringLiteral("locked")},
                                               {!record.isPlottable(), QStringLiteral("unplotted")},
                                               {record.VPDFLT(), QStringLiteral("vp")}};
    for (const auto &[isSet, word] : states) {
        if (isSet)
            words += word;
    }
    const KcCmColor color = record.color();
    words += QString::fromWCharArray(color.colorNameForDisplay());
    words += QStringLiteral("%1,%2,%3").arg(color.red()).arg(color.green()).arg(color.blue());
    words += symbolName(record.linetypeObjectId());
    words += QString::number(record.lineWeight());
    words += taken(record.plotStyleName());
    words += QString::fromWCharArray(record.description());
    return words.join(QLatin1Char('|'));
}

/// What the drawing's layers say, in their order.
QStringList describe(KcDbDatabase &drawing)
{
    QStringList lines;
    forEachLayer(drawing, [&](const KcDbLayerTableRecord &record) { lines += describe(record); });
    return lines;
}

/// Sets one property; @p change is a word and a layer's name, such as "off A".
ErrorStatus change(KcDbDatabase &drawing, const QString &change)
{
    const QString word = change.section(QLatin1Char(' '), 0, 0);
    const QString name = change.section(QLatin1Char(' '), 1);
    if (word == QLatin1String("add"))
        return KcHost::addLayer(drawing, name);
    if (word == QLatin1String("erase"))
        return KcHost::eraseLayer(drawing, name);
    if (word == QLatin1String("current"))
        return KcHost::setCurrentLayer(drawing, name);
    KcDbLayerTableRecord *record = nullptr;
    const ErrorStatus status = kcdbOpenObject(record, layerId(drawing, name), KcDb::kForWrite);
    if (status != eOk)
        return status;
    const bool value = !word.startsWith(QLatin1String("un"));
    const ErrorStatus result = word.endsWith(QLatin1String("off"))      ? record->setIsOff(value)
                               : word.endsWith(QLatin1String("freeze")) ? record->setIsFrozen(value)
                               : word.endsWith(QLatin1String("lock"))
                                       ? record->setIsLocked(value)
                                       : record->setIsPlottable(value);
    record->close();
    return result;
}

/// Groups such as "0 SECTION|2 HEADER" as the lines of a file.
QByteArray dxf(const QByteArray &groups, const QByteArray &lineEnd = "\n")
{
    QByteArray lines;
    const QList<QByteArray> parts = groups.split('|');
    for (const QByteArray &group : parts) {
        const int blank = group.indexOf(' ');
        lines += group.left(blank) + lineEnd + group.mid(blank + 1) + lineEnd;
    }
    return lines;
}

QByteArray section(const QByteArray &name, const QByteArray &groups)
{
    return "0 SECTION|2 " + name + '|' + groups + (groups.isEmpty() ? "" : "|") + "0 ENDSEC|";
}

QByteArray header(const QByteArray &version, const QByteArray &more = {})
{
    return section("HEADER", "9 $ACADVER|1 " + version + (more.isEmpty() ? "" : "|") + more);
}

QByteArray layers(const QByteArray &records)
{
    return section("TABLES", "0 TABLE|2 LAYER|70 1|0 LAYER|2 0|70 0|62 7|6 CONTINUOUS|" + records
                                     + (records.isEmpty() ? "" : "|") + "0 ENDTAB");
}

constexpr char kEnd[] = "0 EOF";

} // namespace

class TestEmbeddedHost : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(QStringLiteral("plan.dxf"));
    QString m_error;
    QStringList m_warnings;

    void store(const QByteArray &bytes)
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }

    std::unique_ptr<KcDbDatabase> read(const QByteArray &bytes)
    {
        store(bytes);
        return KcHost::readDrawing(m_path, &m_error, &m_warnings);
    }

    QByteArray written(KcDbDatabase &drawing)
    {
        const QString path = m_folder.filePath(QStringLiteral("written.dxf"));
        return KcHost::writeDrawing(drawing, path, &m_error, &m_warnings) ? fileContent(path)
                                                                          : QByteArray();
    }

private slots:
    void cleanup();
    void keepsForeignFiles();
    void keepsOddFiles_data();
    void keepsOddFiles();
    void changesOnlyWhatChanged_data();
    void changesOnlyWhatChanged();
    void readsProperties();
    void decodesAndEncodes_data();
    void decodesAndEncodes();
    void refusesBadInput_data();
    void refusesBadInput();
    void refusesUnreadableFiles();
    void warns_data();
    void warns();
    void keepsFileWhenWritingFails();
    void opensAndCloses();
    void refusesChanges();
    void announcesChanges();
    void findsTheViewport_data();
    void findsTheViewport();
    void writesNewDrawing();
    void forgetsDestroyedDrawings();
};

void TestEmbeddedHost::cleanup()
{
    QCOMPARE(KcHost::openObjectCount(), 0);
}

void TestEmbeddedHost::keepsForeignFiles()
{
    const QJsonArray versions =
            ezdxf(QStringLiteral("versions.py"), {m_folder.path()})[QLatin1String("versions")]
                    .toArray();
    QCOMPARE(versions.size(), 7);
    for (const QJsonValue &version : versions) {
        const QByteArray bytes =
                fileContent(m_folder.filePath(version.toString() + QStringLiteral(".dxf")));
        for (const QByteArray &content : {bytes, QByteArray(bytes).replace("\n", "\r\n")}) {
            auto drawing = read(content);
            QVERIFY2(drawing, qPrintable(m_error));
            QCOMPARE(m_warnings, QStringList());
            QVERIFY(written(*drawing) == content);
            for (const char *step : {"off Wände", "lock Wände", "add New ä", "current new Ä",
                                     "freeze Only in blocks", "erase Hidden"})
                QCOMPARE(change(*drawing, QString::fromUtf8(step)), eOk);
            const QByteArray changed = written(*drawing);
            QVERIFY(written(*drawing) == changed);

            const QJsonObject seen = ezdxf(
                    QStringLiteral("layers.py"),
                    {QStringLiteral("read"), m_folder.filePath(QStringLiteral("written.dxf"))});
            QCOMPARE(seen[QLatin1String("errors")].toArray(), QJsonArray());
            const QJsonObject layers = seen[QLatin1String("layers")].toObject();
            QVERIFY(!layers.contains(QLatin1String("Hidden")));
            QVERIFY(layers[QLatin1String("Only in blocks")].toArray().at(1).toBool());
            QVERIFY(layers.contains(QString::fromUtf8("New ä")));
            QCOMPARE(seen[QLatin1String("current")].toString(), QString::fromUtf8("New ä"));
            const QJsonArray walls = layers[QString::fromUtf8("Wände")].toArray();
            QVERIFY(!walls.at(0).toBool() && walls.at(2).toBool());
            QCOMPARE(walls.at(5).toInt(), 30);
        }
    }
}

void TestEmbeddedHost::keepsOddFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("names");

    const QByteArray tables = layers("0 LAYER|2 A|62 5");
    const QStringList both{QStringLiteral("0"), QStringLiteral("A")};
    QByteArray mixed = dxf(header("AC1009") + tables + kEnd);
    for (int at = mixed.indexOf('\n'); at >= 0; at = mixed.indexOf('\n', at + 9))
        mixed.insert(at, '\r');
    QTest::newRow("mixed line ends") << mixed << both;
    QTest::newRow("byte-order mark") << "\xEF\xBB\xBF" + dxf(tables + kEnd) << both;
    QTest::newRow("comments") << dxf("999 by hand|" + tables + "999 0|" + kEnd) << both;
    QTest::newRow("padded codes") << dxf(tables + kEnd)
                                             .replace("\n0\nLAYER", "\n  0 \nLAYER")
                                             .replace("\n2\nA", "\n \t2\nA")
                                  << both;
    QTest::newRow("no final newline") << dxf(tables + kEnd).chopped(1) << both;
    QTest::newRow("text after the end") << dxf(tables + kEnd) + "\x1A the end" << both;
    QTest::newRow("blank lines after the end") << dxf(tables.chopped(1)) + "\n \n" << both;
    QTest::newRow("only an end") << dxf(kEnd) << QStringList{QStringLiteral("0")};
    QTest::newRow("only entities")
            << dxf(section("BLOCKS", "0 LINE|8 B")
                   + section("ENTITIES", "0 LINE|8 a|0 LINE|8 A|0 ARC") + kEnd)
            << QStringList{QStringLiteral("B"), QStringLiteral("a"), QStringLiteral("0")};
}

void TestEmbeddedHost::keepsOddFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, names);
    auto drawing = read(content);
    QVERIFY2(drawing, qPrintable(m_error));
    QStringList found = layerNames(*drawing);
    std::sort(found.begin(), found.end());
    std::sort(names.begin(), names.end());
    QCOMPARE(found, names);
    QCOMPARE(written(*drawing), content);
}

void TestEmbeddedHost::changesOnlyWhatChanged_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<QString>("loss");

    // In the groups of the content, only the first stretch "before" becomes "after".
    const auto row = [](const char *name, QByteArray content, const char *changes,
                        const QByteArray &before, const QByteArray &after,
                        const char *lineEnd = "\n", const char *loss = "") {
        QByteArray expected = content;
        expected.replace(content.indexOf(before), before.size(), after);
        QTest::newRow(name) << dxf(content, lineEnd) << QString::fromUtf8(changes).split(';')
                            << dxf(expected, lineEnd) << QString::fromUtf8(loss);
    };
    const auto record = [](const QByteArray &version, const QByteArray &groups) {
        return header(version) + layers("0 LAYER|2 A|" + groups) + kEnd;
    };
    const QByteArray r12 = "AC1009";
    const QByteArray r14 = "AC1014";
    const QByteArray r2000 = "AC1015";
    const QByteArray xdata = "|1001 ACAD|1070 62|1070 70";
    const char *const lossOfB = "the file's version cannot hold the plot flag of the layer \"B\"";

    row("sign", record(r12, "62      5"), "off A", "62      5", "62     -5");
    row("sign gone", record(r12, "62 -5"), "unoff A", "62 -5", "62 5");
    row("colour beyond the range", record(r12, "62 300"), "off A", "62 300", "62 -300");
    row("colour that has no sign", record(r12, "62 0"), "off A", "62 0", "62 -7");
    row("flags", record(r12, "70     66"), "freeze A;lock A", "70     66", "70     71");
    row("flags that are no number", record(r12, "70 x"), "lock A", "70 x", "70 4");
    row("plot flag", record(r2000, "290      1"), "unplot A", "290      1", "290      0");
    row("missing groups", record(r2000, "6 X|370 25|390 F" + xdata), "off A;freeze A;unplot A",
        "2 A|6 X", "2 A|70 1|62 -7|6 X|290 0");
    row("missing groups, other line ends", record(r12, "6 X" + xdata), "lock A", "2 A|",
        "2 A|70 4|", "\r\n");
    row("groups of others", record(r2000, "102 {X|70 1|62 3|102 }|62 5" + xdata), "off A;lock A",
        "2 A|102 {X|70 1|62 3|102 }|62 5", "2 A|70 4|102 {X|70 1|62 3|102 }|62 -5");
    row("there and back", record(r2000, "62 5"), "off A;unoff A;add B;current B;current 0;erase B",
        "", "");

    row("current layer", header(r12, "9 $CLAYER|8 a") + layers("0 LAYER|2 A") + kEnd, "current 0",
        "8 a", "8 0");
    row("current layer missing", record(r12, "62 5"), "current A", r12, r12 + "|9 $CLAYER|8 A");
    row("header missing", layers("0 LAYER|2 \\U+0416") + kEnd, "current Ж", "",
        section("HEADER", "9 $CLAYER|8 \\U+0416"));

    row("erased", record(r12, "62 5|999 about B|0 LAYER|2 B"), "erase A", "0 LAYER|2 A|62 5|", "");
    row("erased, with a record too many", record(r12, "0 LAYER|2 a|62 5"), "erase A",
        "0 LAYER|2 A|0 LAYER|2 a|62 5|", "");
    const QByteArray viewport = "0 ENDTAB|0 ENDSEC|0 SECTION|2 ENTITIES|0 VIEWPORT|67 1|";
    row("erased, frozen in a viewport",
        header(r12) + layers("0 LAYER|2 A").chopped(18) + viewport
                + "1001 ACAD|1002 {|1003 a|1003 0|1002 }|0 ENDSEC|0 EOF",
        "erase A", "0 LAYER|2 A|" + viewport + "1001 ACAD|1002 {|1003 a|",
        viewport + "1001 ACAD|1002 {|");

    const QByteArray zero = "0 LAYER|2 0|70 0|62 7|6 CONTINUOUS|";
    row("added to R12", header(r12) + layers("").replace("70 1", "70      1") + kEnd,
        "add B;unplot B", "70      1|" + zero,
        "70      2|" + zero + "0 LAYER|2 B|70 0|62 7|6 Continuous|", "\n", lossOfB);
    row("added to R14", header(r14, "9 $HANDSEED|5 FF") + layers("") + kEnd, "add B;unplot B",
        "FF|0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|2 LAYER|70 1|" + zero,
        "101|0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|2 LAYER|70 2|" + zero
                + "0 LAYER|5 FF|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 B|70 0|62 7|"
                  "6 Continuous|",
        "\n", lossOfB);
    const QByteArray tables =
            "|0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|2 LTYPE|0 LTYPE|5 2E|2 CONTINUOUS|"
            "0 ENDTAB|0 TABLE|2 LAYER|5 2|70 5|0 LAYER|5 10|2 0|347 2C|390 F|";
    row("added to R2000",
        "0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $HANDSEED|5 1F" + tables
                + "0 ENDTAB|0 ENDSEC|0 EOF",
        "add B;unplot B;off B;lock B", "1F" + tables,
        "30" + tables
                + "0 LAYER|5 2F|330 2|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 B|"
                  "70 4|62 -7|6 CONTINUOUS|290 0|370 -3|347 2C|390 F|");

    const QByteArray lines = section("ENTITIES", "0 LINE|8 walls|0 LINE|8 free") + kEnd;
    const QByteArray walls =
            "0 TABLE|2 LAYER|70 1|0 LAYER|2 walls|70 0|62 -7|6 Continuous|0 ENDTAB";
    row("tables missing", lines, "freeze walls;current free", "",
        section("HEADER", "9 $CLAYER|8 free")
                + section("TABLES", "0 TABLE|2 LAYER|70 2|0 LAYER|2 walls|70 1|62 7|6 Continuous|"
                                    "0 LAYER|2 free|70 0|62 7|6 Continuous|0 ENDTAB"),
        "\r\n");
    row("layer table missing", section("TABLES", "") + lines, "off walls", "2 TABLES",
        "2 TABLES|" + walls);
    QTest::newRow("everything missing, last line open")
            << dxf(header(r12).chopped(1)).chopped(1) << QStringList("off 0")
            << dxf((header(r12) + section("TABLES", QByteArray(walls).replace("walls", "0")))
                           .chopped(1))
            << QString();
}

void TestEmbeddedHost::changesOnlyWhatChanged()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, changes);
    QFETCH(QByteArray, expected);
    QFETCH(QString, loss);
    auto drawing = read(content);
    QVERIFY2(drawing, qPrintable(m_error));
    for (const QString &step : qAsConst(changes))
        QVERIFY2(change(*drawing, step) == eOk, qPrintable(step));
    QCOMPARE(written(*drawing), expected);
    QCOMPARE(m_warnings.join('\n').section(": ", 1), loss.isEmpty() ? QString() : loss + '.');
    QCOMPARE(written(*drawing), expected);
}

void TestEmbeddedHost::readsProperties()
{
    const QByteArray tables = section(
            "TABLES", "0 TABLE|2 LTYPE|0 LTYPE|2 Dashed|0 ENDTAB|0 TABLE|2 LAYER|0 LAYER|2 0|"
                      "0 LAYER|2 A|70 7|62 -1|6 DASHED|290 0|370 35|390 1F|1001 AcAecLayerStandard|"
                      "1000 |1000 about A|1001 ACAD|1000 x|1000 y|"
                      "0 LAYER|2 B|62 12|420 1122867|6 continuous|390 AA|370 -3|"
                      "0 LAYER|2 C|62 249|0 LAYER|2 D|62 250|0 LAYER|2 E|62 33|0 ENDTAB");
    const QByteArray objects = section(
            "OBJECTS",
            "0 DICTIONARY|5 C|3 ACAD_GROUP|350 D|3 ACAD_PLOTSTYLENAME|350 E|"
            "0 DICTIONARY|5 D|3 Wrong|350 1F|"
            "0 ACDBDICTIONARYWDFLT|5 E|3 Normal|350 F|3 Fine|350 1F|0 ACDBPLACEHOLDER|5 1F");
    // The plot style's name goes with the drawing's mode.
    const std::tuple<const char *, const char *, const char *> expected[] = {
            {"0|white|255,255,255|Continuous|-3|%1|", "Normal", "Color-7"},
            {"A|off|frozen|locked|unplotted|vp|red|255,0,0|Dashed|35|%1|about A", "Fine",
             "Color-1"},
            {"B|17,34,51|17,34,51|Continuous|-3|%1|", "Normal", "Color-12"},
            {"C|Color 249|38,19,23|Continuous|-3|%1|", "Normal", "Color-249"},
            {"D|Color 250|51,51,51|Continuous|-3|%1|", "Normal", "Color-250"},
            {"E|Color 33|165,124,82|Continuous|-3|%1|", "Normal", "Color-33"}};
    for (const bool isNamed : {true, false}) {
        auto drawing = read(dxf(header("AC1015", isNamed ? "9 $PSTYLEMODE|290 0" : "") + tables
                                + objects + kEnd));
        QVERIFY2(drawing, qPrintable(m_error));
        QCOMPARE(m_warnings, QStringList());
        const QStringList found = describe(*drawing);
        QCOMPARE(found.size(), int(std::size(expected)));
        for (int index = 0; index < found.size(); ++index) {
            const auto &[text, named, colored] = expected[index];
            QCOMPARE(found[index], QString(text).arg(isNamed ? named : colored));
        }
    }
}

void TestEmbeddedHost::decodesAndEncodes_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("name");

    const auto row = [](const char *name, const QByteArray &version, const QByteArray &codePage,
                        const QByteArray &bytes, const char *text) {
        QTest::newRow(name) << header(version, codePage.isEmpty() ? codePage
                                                                  : "9 $DWGCODEPAGE|3 " + codePage)
                            << bytes << QString::fromUtf8(text);
    };
    row("Latin 1 by default", "AC1009", "", "W\xE4nde", "Wände");
    row("Cyrillic", "AC1018", "ANSI_1251", "\xD1\xF2\xE5\xED\xE0", "Стена");
    row("lower case", "AC1015", "ansi_1251", "\xD1", "С");
    row("Japanese", "AC1015", "ANSI_932", "\x95\xC7\x83\x5C", "壁ソ");
    row("Chinese", "AC1015", "ANSI_936", "\xC7\xBD", "墙");
    row("Thai", "AC1015", "ANSI_874", "\xA1", "ก");
    row("DOS", "AC1009", "dos850", "\x84", "ä");
    row("escapes", "AC1015", "ANSI_1252", "\\U+0416\xE4\\U+4E2D-\\U+D83D\\U+DE00", "Жä中-😀");
    row("no escape", "AC1015", "ANSI_1252", "U+0416 +U", "U+0416 +U");
    row("UTF-8", "AC1021", "ANSI_1252", "\xD0\x96\xF0\x9F\x98\x80", "Ж😀");
}

void TestEmbeddedHost::decodesAndEncodes()
{
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, name);
    auto drawing = read(dxf(head + layers("0 LAYER|2 " + bytes) + kEnd));
    QVERIFY2(drawing, qPrintable(m_error));
    QCOMPARE(m_warnings, QStringList());
    QCOMPARE(layerNames(*drawing).value(1), name);
    QCOMPARE(KcHost::decodeText(*drawing, bytes), name);
    QCOMPARE(KcHost::addLayer(*drawing, name.toLower()), eDuplicateKey);

    auto empty = read(dxf(head + layers("") + kEnd));
    QCOMPARE(KcHost::addLayer(*empty, name), eOk);
    QVERIFY(written(*empty).contains("\n2\n" + bytes + "\n"));
}

void TestEmbeddedHost::refusesBadInput_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");

    const auto row = [](const char *name, const QByteArray &content, const char *reason) {
        QTest::newRow(name) << content << QString::fromUtf8(reason);
    };
    const QByteArray open = "0 SECTION|2 ENTITIES|0 LINE|8 0";
    row("empty", "", "line 1: the file is empty");
    row("text", "To be\nor not to be\n", "line 1: the file is not a DXF");
    row("numbers", "1\n2\n3\n4\n", "line 1: the file is not a DXF");
    row("one line", "0", "line 1: the file is not a DXF");
    row("binary DXF", "1234567 Binary DXF\r\n" + QByteArray("\x1A\0\0\2", 4),
        "line 1: the file is a binary DXF, and only ASCII DXF can be read");
    row("DWG", "AC1015\0\0\1", "line 1: the file is a DWG, and only ASCII DXF can be read");
    row("group code", dxf("999 x|" + header("AC1009") + "x1 LINE"),
        "line 13: \"x1\" is no group code");
    row("group code with an end", dxf(open) + "1.0\n0\n", "line 9: \"1.0\" is no group code");
    row("blank group code", dxf(open) + "\n0\n0\nENDSEC\n", "line 9: \"\" is no group code");
    row("cut off after a group", dxf(open),
        "line 8: the file ends inside the section \"ENTITIES\"");
    row("cut off in a group", dxf(open) + "0\n",
        "line 9: the file ends inside the section \"ENTITIES\"");
    row("cut off in a code", dxf(open) + "1",
        "line 9: the file ends inside the section \"ENTITIES\"");
    row("cut off in a name", "0\nSECTION\n2\n", "line 3: the file ends inside the section \"\"");
    row("cut off in the header", dxf("0 SECTION|2 HEADER|9 $CLAYER"),
        "line 6: the file ends inside the section \"HEADER\"");
    row("cut off in a layer", dxf("0 SECTION|2 TABLES|0 TABLE|2 LAYER|0 LAYER|2 A|70 0"),
        "line 14: the file ends inside the section \"TABLES\"");
    row("end mark in a section", dxf(open + "|0 EOF"),
        "line 9: the file ends inside the section \"ENTITIES\"");
    row("section in a section", dxf(open + "|0 SECTION|2 OBJECTS|0 ENDSEC|0 EOF"),
        "line 9: the section \"ENTITIES\" has no end");
}

void TestEmbeddedHost::refusesBadInput()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    QVERIFY(!read(content));
    QCOMPARE(m_error, m_path + QStringLiteral(", ") + reason + QLatin1Char('.'));
}

void TestEmbeddedHost::refusesUnreadableFiles()
{
    const std::pair<QString, QString> cases[] = {
            {m_folder.filePath(QStringLiteral("none.dxf")),
             QStringLiteral("No such file or directory")},
            {m_folder.path(), QStringLiteral("this is a folder")},
            {QStringLiteral("/proc/self/mem"), QStringLiteral("Input/output error")}};
    for (const auto &[path, reason] : cases) {
        QVERIFY(!KcHost::readDrawing(path, &m_error));
        QCOMPARE(m_error, path + QStringLiteral(": ") + reason + QLatin1Char('.'));
    }
}

void TestEmbeddedHost::warns_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("warnings");

    const auto row = [](const char *name, const QByteArray &groups, const QStringList &warnings) {
        QTest::newRow(name) << dxf(groups) << warnings;
    };
    // In a file of layers alone, the group after the second layer's name begins with line 25.
    const auto value = [&](const char *name, const QByteArray &group, const char *warning) {
        row(name, layers("0 LAYER|2 A|" + group) + kEnd,
            {QStringLiteral("line 25: the layer \"A\" has the ") + QString::fromUtf8(warning)});
    };
    value("colour 0", "62 0", "colour \"0\", which is out of range; it is read as 7");
    value("colour 256", "62 -256", "colour \"-256\", which is out of range; it is read as 7");
    value("colour text", "62 red", "colour \"red\", which is out of range; it is read as 7");
    value("true colour", "420 16777216",
          "true colour \"16777216\", which is out of range; it is read as its indexed colour");
    value("flags", "70 -1", "flags \"-1\", which is out of range; it is read as 0");
    value("plot flag", "290 2", "plot flag \"2\", which is out of range; it is read as 1");
    value("lineweight", "370 26",
          "lineweight \"26\", which is out of range; it is read as the default");
    value("linetype", "6 DASHED",
          "linetype \"DASHED\", which does not exist; \"Continuous\" is taken instead");
    row("names", layers("0 LAYER|2 A|0 LAYER|62 300|0 LAYER|2  |0 LAYER|2 a|62 1") + kEnd,
        {QStringLiteral("line 25: a layer without a name is left out"),
         QStringLiteral("line 29: a layer without a name is left out"),
         QStringLiteral("line 33: the layer \"a\" is left out, since the name is taken")});
    row("current layer", header("AC1009", "9 $CLAYER|8 gone") + layers("0 LAYER|2 A") + kEnd,
        {QStringLiteral(
                "line 11: the current layer \"gone\" does not exist; \"0\" is taken instead")});
    row("code page", header("AC1015", "9 $DWGCODEPAGE|3 ANSI_1361") + layers("0 LAYER|2 A") + kEnd,
        {QStringLiteral(
                "line 11: the code page \"ANSI_1361\" is unknown; ANSI_1252 is taken instead")});
    row("code page that is none for a file",
        header("AC1015", "9 $DWGCODEPAGE|3 ANSI_1200") + layers("0 LAYER|2 A") + kEnd,
        {QStringLiteral(
                "line 11: the code page \"ANSI_1200\" is unknown; ANSI_1252 is taken instead")});
    row("version", header("AC1006") + layers("0 LAYER|2 A") + kEnd,
        {QStringLiteral("line 7: the version \"AC1006\" is none from R12 to R2018")});
    row("end mark", layers("0 LAYER|2 A").chopped(1),
        {QStringLiteral("line 28: the file ends without its end mark")});
}

void TestEmbeddedHost::warns()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, warnings);
    auto drawing = read(content);
    QVERIFY2(drawing, qPrintable(m_error));
    for (QString &warning : warnings)
        warning = m_path + QStringLiteral(", ") + warning + QLatin1Char('.');
    QCOMPARE(m_warnings, warnings);
    QCOMPARE(layerNames(*drawing), (QStringList{QStringLiteral("0"), QStringLiteral("A")}));
    QVERIFY(drawing->clayer() == layerId(*drawing, QStringLiteral("0")));
    QCOMPARE(written(*drawing), content);
}

void TestEmbeddedHost::keepsFileWhenWritingFails()
{
    const QByteArray old = "what was there";
    auto drawing = KcHost::newDrawing();
    store(old);
    const QStringList files = QDir(m_folder.path()).entryList(QDir::Files);

    rlimit limit = {};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small = {100, limit.rlim_max};
    const auto onLimit = std::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool isWritten = KcHost::writeDrawing(*drawing, m_path, &m_error);
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
    std::signal(SIGXFSZ, onLimit);

    QVERIFY(!isWritten);
    QCOMPARE(m_error, m_path + QStringLiteral(": File too large."));
    QCOMPARE(fileContent(m_path), old);
    QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files), files);

    QVERIFY(KcHost::writeDrawing(*drawing, m_path, &m_error));
    QCOMPARE(m_error, QString());
    QVERIFY(!KcHost::writeDrawing(*drawing, m_folder.path(), &m_error));
    QVERIFY(m_error.startsWith(m_folder.path() + QStringLiteral(": ")));
}

void TestEmbeddedHost::opensAndCloses()
{
    auto drawing = drawingWithLayers({QStringLiteral("A"), QStringLiteral("B")});
    const KcDbObjectId id = layerId(*drawing, QStringLiteral("A"));
    KcDbLayerTableRecord *first = nullptr;
    KcDbLayerTableRecord *second = nullptr;
    QCOMPARE(kcdbOpenObject(first, id, KcDb::kForRead), eOk);
    QCOMPARE(kcdbOpenObject(second, id, KcDb::kForRead), eOk);
    QCOMPARE(KcHost::openObjectCount(), 2);
    QCOMPARE(first->upgradeOpen(), eWasOpenForRead);
    QCOMPARE(first->setIsOff(true), eNotOpenForWrite);
    QCOMPARE(first->downgradeOpen(), eNotOpenForWrite);
    QCOMPARE(second->close(), eOk);
    QCOMPARE(kcdbOpenObject(second, id, KcDb::kForWrite), eWasOpenForRead);
    QVERIFY(!second);
    QCOMPARE(KcHost::eraseLayer(*drawing, QStringLiteral("a")), eWasOpenForRead);

    QCOMPARE(first->upgradeOpen(), eOk);
    QCOMPARE(first->upgradeOpen(), eNotOpenForRead);
    QCOMPARE(kcdbOpenObject(second, id, KcDb::kForRead), eWasOpenForWrite);
    QCOMPARE(KcHost::eraseLayer(*drawing, QStringLiteral("a")), eWasOpenForWrite);
    QCOMPARE(first->downgradeOpen(), eOk);
    QCOMPARE(first->close(), eOk);
    QCOMPARE(first->close(), eNotOpenForRead);
    QCOMPARE(first->upgradeOpen(), eNotOpenForRead);
    KTCHAR *name = nullptr;
    QCOMPARE(first->getName(name), eNotOpenForRead);

    KcDbViewport *viewport = nullptr;
    QCOMPARE(kcdbOpenObject(viewport, id, KcDb::kForRead), eNotThatKindOfClass);
    QCOMPARE(kcdbOpenObject(first, KcDbObjectId(), KcDb::kForRead), eNullObjectId);

    KcDbLayerTable *table = nullptr;
    QCOMPARE(drawing->getLayerTable(table, KcDb::kForRead), eOk);
    QCOMPARE(KcHost::addLayer(*drawing, QStringLiteral("C")), eWasOpenForRead);
    KcDbLayerTableIterator *made = nullptr;
    QCOMPARE(table->newIterator(made, false), eOk);
    const std::unique_ptr<KcDbLayerTableIterator> iterator(made);
    QCOMPARE(table->close(), eOk);
    QCOMPARE(table->newIterator(made), eNotOpenForRead);

    // From the end to the beginning, over a layer that goes while the walk is under way.
    QCOMPARE(KcHost::eraseLayer(*drawing, QStringLiteral("A")), eOk);
    QCOMPARE(kcdbOpenObject(first, id, KcDb::kForRead), eWasErased);
    QCOMPARE(KcHost::addLayer(*drawing, QStringLiteral("a")), eOk);
    iterator->step(false, false);
    QCOMPARE(iterator->getRecord(first, KcDb::kForRead), eWasErased);
    QCOMPARE(iterator->getRecord(first, KcDb::kForRead, true), eOk);
    QCOMPARE(nameOf(*first), QStringLiteral("A"));
    QCOMPARE(first->close(), eOk);
    iterator->start(false);
    iterator->step(false);
    iterator->step(false);
    QCOMPARE(iterator->getRecord(first, KcDb::kForRead), eOk);
    QCOMPARE(nameOf(*first), QStringLiteral("0"));
    QCOMPARE(first->close(), eOk);
    iterator->step(false);
    QVERIFY(iterator->done());
    QCOMPARE(iterator->getRecord(first, KcDb::kForRead), eKeyNotFound);
}

void TestEmbeddedHost::refusesChanges()
{
    auto drawing = read(dxf(layers("0 LAYER|2 A|0 LAYER|2 Used")
                            + section("ENTITIES", "0 LINE|8 uSED|0 LINE|8 Free") + kEnd));
    const std::pair<const char *, ErrorStatus> steps[] = {{"add ", eInvalidInput},
                                                          {"add  ", eInvalidInput},
                                                          {"add a*", eInvalidInput},
                                                          {"add a\n", eInvalidInput},
                                                          {"add a\\b", eInvalidInput},
                                                          {"add used", eDuplicateKey},
                                                          {"erase 0", eCannotBeErasedByCaller},
                                                          {"erase none", eKeyNotFound},
                                                          {"erase used", eLayerInUse},
                                                          {"erase free", eLayerInUse},
                                                          {"current none", eKeyNotFound},
                                                          {"freeze 0", eLayerIsCurrent},
                                                          {"current a", eOk},
                                                          {"freeze A", eLayerIsCurrent},
                                                          {"unfreeze A", eOk},
                                                          {"erase a", eLayerIsCurrent},
                                                          {"freeze 0", eOk},
                                                          {"current 0", eOk},
                                                          {"erase a", eOk},
                                                          {"erase A", eKeyNotFound},
                                                          {"current A", eKeyNotFound},
                                                          {"add A", eOk}};
    for (const auto &[step, status] : steps)
        QVERIFY2(change(*drawing, QString::fromUtf8(step)) == status, step);
    QCOMPARE(KcHost::addLayer(*drawing, QString(255, QLatin1Char('x'))), eOk);
    QCOMPARE(KcHost::addLayer(*drawing, QString(256, QLatin1Char('y'))), eInvalidInput);
}

void TestEmbeddedHost::announcesChanges()
{
    auto drawing = drawingWithLayers({QStringLiteral("A")});
    QStringList names;
    KcHost::setLayerModifiedHandler([&](const QString &name) {
        names += name;
        KcHost::setLayerModifiedHandler([&](const QString &next) {
            names += next;
            QCOMPARE(KcHost::openObjectCount(), 0);
            forEachLayer(*drawing, [](const KcDbLayerTableRecord &) {});
        });
    });
    for (const char *step : {"off A", "off A", "lock A", "unplot A", "unfreeze A", "freeze 0",
                             "add B", "current A", "current a", "erase b", "erase none"})
        change(*drawing, QString::fromUtf8(step));

    KcDbLayerTableRecord *record = nullptr;
    const KcDbObjectId id = layerId(*drawing, QStringLiteral("A"));
    QCOMPARE(kcdbOpenObject(record, id, KcDb::kForWrite), eOk);
    record->setIsOff(false);
    record->setIsOff(true);
    QCOMPARE(record->close(), eOk);
    const QString a = QStringLiteral("A");
    const QString b = QStringLiteral("B");
    QCOMPARE(names, (QStringList{a, a, a, b, a, b}));

    // With other readers about, the last of them to go makes it known.
    KcDbLayerTableRecord *reader = nullptr;
    QCOMPARE(kcdbOpenObject(record, id, KcDb::kForWrite), eOk);
    record->setIsOff(false);
    QCOMPARE(record->downgradeOpen(), eOk);
    QCOMPARE(kcdbOpenObject(reader, id, KcDb::kForRead), eOk);
    QCOMPARE(record->close(), eOk);
    QCOMPARE(names.size(), 6);
    QCOMPARE(reader->close(), eOk);
    QCOMPARE(names.size(), 7);
    KcHost::setLayerModifiedHandler({});
}

void TestEmbeddedHost::findsTheViewport_data()
{
    QTest::addColumn<QByteArray>("viewports");
    QTest::addColumn<QString>("frozen"); // in the viewport in use; "-" when there is none

    const auto viewport = [](const QByteArray &groups) { return "0 VIEWPORT|8 0|" + groups + '|'; };
    const QByteArray sheet = viewport("67 1|68 1|69 1|331 b");
    const QByteArray second = viewport("67 1|68 3|69 2|102 {X|331 A|102 }|341 C|331 A0");
    const QByteArray active = viewport("67 1|68 2|69 3|331 A|341 C|1001 X|1003 B");
    const auto row = [](const char *name, const QByteArray &viewports, const char *frozen) {
        QTest::newRow(name) << viewports << QString::fromUtf8(frozen);
    };
    row("active one", sheet + second + active, "AC");
    row("without an active one", sheet + second, "C");
    row("off", sheet + viewport("67 1|68 0|69 2|331 A"), "B");
    row("not on the sheet", viewport("68 1|69 2|331 A"), "-");
    row("none", "", "-");
    row("by names",
        viewport("67 1|68 1|69 2|1001 ACAD|1000 MVIEW|1003 a|1003 B|1003 gone|1001 X|1003 C"),
        "AB");
}

void TestEmbeddedHost::findsTheViewport()
{
    QFETCH(QByteArray, viewports);
    QFETCH(QString, frozen);
    const QByteArray tables = layers("0 LAYER|5 A|2 A|0 LAYER|5 B|2 B|0 LAYER|5 C|2 C");
    const OpenDrawing open(read(dxf(header("AC1015", "9 $TILEMODE|70 0") + tables
                                    + section("BLOCKS", "0 VIEWPORT|8 0|67 1|68 1|69 2|331 A")
                                    + section("ENTITIES", viewports + "0 LINE|8 0") + kEnd)));
    KcDbDatabase *drawing = kcdbHostApplicationServices()->workingDatabase();
    resbuf mode;
    QCOMPARE(kcedGetVar(L"tilemode", &mode), RTNORM);
    QCOMPARE(mode.resval.rint, short(0));

    KcDbViewport *viewport = nullptr;
    const ErrorStatus status = kcdbOpenObject(viewport, kcdbGetCurVportId(drawing), KcDb::kForRead);
    QString found = QStringLiteral("-");
    if (status == eOk) {
        found.clear();
        const QStringList names = layerNames(*drawing);
        for (const QString &name : names) {
            if (viewport->isLayerFrozenInViewport(layerId(*drawing, name)))
                found += name;
        }
        QVERIFY(!viewport->isLayerFrozenInViewport(KcDbObjectId()));
        viewport->close();
    }
    QCOMPARE(found, frozen);

    KcHost::setVariable(QStringLiteral("TileMode"), 1);
    QVERIFY(kcdbGetCurVportId(drawing) == KcDbObjectId());
}

void TestEmbeddedHost::writesNewDrawing()
{
    auto drawing = KcHost::newDrawing();
    for (const char *step : {"add Wände 中", "off Wände 中", "freeze Wände 中", "unplot Wände 中",
                             "add B", "current b", "lock B"})
        QCOMPARE(change(*drawing, QString::fromUtf8(step)), eOk);
    QVERIFY(KcHost::writeDrawing(*drawing, m_path, &m_error, &m_warnings));
    QCOMPARE(m_warnings, QStringList());
    const QJsonObject seen = ezdxf(QStringLiteral("layers.py"), {QStringLiteral("read"), m_path});
    QCOMPARE(seen[QLatin1String("errors")].toArray(), QJsonArray());
    QCOMPARE(seen[QLatin1String("current")].toString(), QStringLiteral("B"));
    const QJsonObject layers = seen[QLatin1String("layers")].toObject();
    QCOMPARE(layers[QString::fromUtf8("Wände 中")].toArray(),
             (QJsonArray{false, true, false, false, 1, 7, QJsonValue(), "Continuous", -3, ""}));
    QCOMPARE(layers[QLatin1String("B")].toArray(),
             (QJsonArray{true, false, true, true, 4, 7, QJsonValue(), "Continuous", -3, ""}));

    const QStringList before = describe(*drawing);
    drawing = KcHost::readDrawing(m_path, &m_error, &m_warnings);
    QCOMPARE(describe(*drawing), before);
    QCOMPARE(m_warnings, QStringList());
}

void TestEmbeddedHost::forgetsDestroyedDrawings()
{
    auto drawing = drawingWithLayers({QStringLiteral("A")});
    auto other = drawingWithLayers({QStringLiteral("A")});
    const KcDbObjectId id = layerId(*drawing, QStringLiteral("A"));
    QVERIFY(!(id == layerId(*other, QStringLiteral("A"))));
    KcHost::setWorkingDatabase(drawing.get());
    KcDbLayerTableRecord *record = nullptr;
    QCOMPARE(kcdbOpenObject(record, id, KcDb::kForRead), eOk);
    drawing.reset();
    QCOMPARE(KcHost::openObjectCount(), 0);
    QVERIFY(!kcdbHostApplicationServices()->workingDatabase());
    QCOMPARE(kcdbOpenObject(record, id, KcDb::kForRead), eNullObjectId);
    QCOMPARE(symbolName(id), QString());

    KcHost::setWorkingDatabase(other.get());
    drawing = KcHost::newDrawing();
    drawing.reset();
    QCOMPARE(kcdbHostApplicationServices()->workingDatabase(), other.get());
}

QTEST_GUILESS_MAIN(TestEmbeddedHost)
#include "tst_embeddedhost.moc"
