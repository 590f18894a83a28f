// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Changes.h"
#include "Limit.h"
#include "Support.h"

#include <QDir>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QUndoStack>

#include <cerrno>
#include <random>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

using namespace Kcore;

static int flushError = 0;
static int modeError = 0;

/// In the place of those of the system: they fail on demand, as a broken disk cannot be had, and do not
/// wait for one that is not.
/// @{
extern "C" __attribute__((visibility("default"))) int fsync(int)
{
    errno = flushError;
    return flushError != 0 ? -1 : 0;
}

extern "C" __attribute__((visibility("default"))) int fchmod(int file, mode_t mode)
{
    errno = modeError;
    return modeError != 0 ? -1 : int(::syscall(SYS_fchmod, file, mode));
}
/// @}

namespace {

using Statuses = QVector<ErrorStatus>;

/// The names of the layers in the working drawing, in the order of its layer table.
QString names()
{
    QList<QStringList> rows;
    OvLayerUtility().getAllLayerDate(rows);
    QStringList names;
    for (const QStringList &row : std::as_const(rows))
        names += row[1];
    return names.join(',');
}

KcDbObjectId idOf(const QString &name)
{
    KcDbLayerTableRecord *record = getLayerByName(name);
    const KcDbObjectId id = record ? record->objectId() : KcDbObjectId();
    return record && record->close() == eOk ? id : KcDbObjectId();
}

/// Takes steps in the working drawing, written as "off A;rename A>B;layer A color 5" or the like.
/// @return what comes of the last one
ErrorStatus change(const QString &steps)
{
    if (const int end = steps.lastIndexOf(';'); end >= 0)
        change(steps.left(end));
    const QString step = steps.section(';', -1);
    const QString word = step.section(' ', 0, 0);
    const QString rest = step.section(' ', 1);
    if (word != "set" && word != "layer")
        return change(QStringList(word) + rest.split('>'));
    return change(QStringList{word, rest.section(' ', 0, 0), rest.section(' ', 1, 1),
                              rest.section(' ', 2)});
}

/// The lines of groups such as "(HEADER|9 $CLAYER|8 =E4|)(TABLES|{LAYER|0 LAYER|2 A|})": parentheses
/// mark a section and braces a table, but not within a value, and "=E4" is a byte.
QByteArray dxf(QString groups, const QString &lineEnd = "\n")
{
    static const QRegularExpression table("(?<! )\\{"), tableEnd("(?<! )\\}");
    static const QRegularExpression group("([^ |]+) ([^|]*)\\|*");
    groups.replace('(', "0 SECTION|2 ").replace(')', "0 ENDSEC|");
    groups.replace(table, "0 TABLE|2 ").replace(tableEnd, "0 ENDTAB|");
    groups.replace(group, "\\1" + lineEnd + "\\2" + lineEnd);
    return QByteArray::fromPercentEncoding(groups.toLatin1(), '=');
}

/// One side of groups in which "[old>new]" stands for what a change does.
QString side(QString groups, bool isNew)
{
    static const QRegularExpression mark("\\[([^>]*)>([^\\]]*)\\]");
    return groups.replace(mark, isNew ? "\\2" : "\\1");
}

/// The rows of a text, one per line, which goes on in the next one where that is indented: "::" stands
/// between fields.
QList<QStringList> rowsOf(QString text)
{
    static const QRegularExpression separator(" *:: *");
    QList<QStringList> rows;
    const QStringList lines = text.remove("\n    ").split('\n', Qt::SkipEmptyParts);
    for (const QString &line : lines)
        rows.append(line.split(separator));
    return rows;
}

void addRows(const char *text)
{
    QTest::addColumn<QStringList>("fields");
    const QList<QStringList> rows = rowsOf(text);
    for (const QStringList &row : rows)
        QTest::newRow(qPrintable(row.join(" :: "))) << row;
}

} // namespace

class TestEmbeddedHost : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath("plan.dxf");
    QString m_writtenPath = m_folder.filePath("written.dxf");
    std::unique_ptr<KcDbDatabase> m_drawing;
    QString m_error;
    QStringList m_warnings;

    void open(std::unique_ptr<KcDbDatabase> drawing)
    {
        m_drawing = std::move(drawing);
        KcHost::setWorkingDatabase(m_drawing.get());
    }

    bool read(const QByteArray &bytes)
    {
        QFile file(m_path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
            return false;
        open(KcHost::readDrawing(m_path, &m_error, &m_warnings));
        return m_drawing != nullptr;
    }

    QByteArray written()
    {
        KcHost::writeDrawing(*m_drawing, m_writtenPath, &m_error, &m_warnings);
        return m_error.isEmpty() ? fileContent(m_writtenPath) : QByteArray();
    }

private slots:
    void cleanup();
    void readsOddFiles_data();
    void readsOddFiles();
    void changesOnlyWhatChanged_data();
    void changesOnlyWhatChanged();
    void readsProperties();
    void namesWhatFails();
    void replacesFiles();
    void noticesOtherWriters();
    void opensAndCloses();
    void walksBothWays();
    void refusesAndAnnounces();
    void tellsOfEntities();
    void findsTheViewport();
    void rowsMatchIndependentWriter();
    void writesNewDrawing();
    void forgetsDestroyedDrawings();
    void undoesAnything_data();
    void undoesAnything();
    void makesSteps();
    void refusesToUndo();
    void tellsOfUndo();
};

void TestEmbeddedHost::cleanup()
{
    KcHost::setLayerModifiedHandler({});
    KcHost::setEntityModifiedHandler({});
    QCOMPARE(KcHost::openObjectCount(), 0);
}

/// The names of layers that are read, what is told, and the file; "@" is a table with the layer A.
void TestEmbeddedHost::readsOddFiles_data()
{
    addRows(R"(
A,0 :: :: =EF=BB=BF999 by hand|(HEADER|9 $ACADVER=0D|1 AC1009=0D|)@999 0|0=0D EOF=0D|=1A=20the=20end
A,0 :: :: (TABLES|{LAYER|=20=200=20 LAYER|=20=092 A|})0=0AEOF
A,0 :: line 21: the file ends without its end mark :: @=0A=20=0A
0 :: :: 0 EOF
B,a,0 :: :: (BLOCKS|0 ACME|102 {X|8 C|102 }|8 B|100 X|8 C|)(ENTITIES|0 X|8 a|0 X|8 A|0 X|)0 EOF
b,A,0 :: :: (BLOCKS|0 X|8 b|)(ENTITIES|0 X|8 a|)@0 EOF
A,0 :: line 13: a layer without a name is left out|line 17: a layer without a name is left out|
    line 21: the layer "a" is left out, since the name is taken ::
    (TABLES|{LAYER|0 LAYER|2 A|0 LAYER|62 300|0 LAYER|2  |0 LAYER|2 a|62 1|})0 EOF
\U+D800,\U+D801,\U+0000,A�B,A,0 :: ::
    (TABLES|{LAYER|0 LAYER|2 \U+D800|0 LAYER|2 \U+D801|0 LAYER|2 \U+0000|0 LAYER|2 A=00B|0 LAYER|2 A|})0 EOF
ä,0 :: :: =EF=BB=BF(TABLES|{LAYER|0 LAYER|2 =C3=A4|})0 EOF
ä,0 :: line 29: the section "HEADER" comes twice; the first one counts ::
    (HEADER|9 $ACADVER|1 AC1021|)(TABLES|{LAYER|0 LAYER|2 =C3=A4|})
    (HEADER|9 $ACADVER|1 AC1009|9 $CLAYER|8 =C3=A4|)0 EOF
A,B,0 :: line 13: the layer "A" has the colour "0", which is out of range; it is read as 7|
    line 15: the layer "A" has the flags "-1", which is out of range; it is read as 0|
    line 17: the layer "A" has the plot flag "2", which is out of range; it is read as 1|
    line 19: the layer "A" has the lineweight "26", which is out of range; it is read as the default|
    line 27: the layer "B" has the colour "-256", which is out of range; it is read as 7|
    line 29: the layer "B" has the true colour "16777216", which is out of range;
     it is read as its indexed colour|
    line 21: the layer "A" has the linetype "X", which does not exist; "Continuous" is taken instead ::
    (TABLES|{LAYER|0 LAYER|2 A|62 0|70 -1|290 2|370 26|6 X|0 LAYER|2 B|62 -256|420 16777216|})0 EOF
A,0 :: line 7: the version "AC1006" is none from R12 to R2018|
    line 11: the code page "X" is unknown; ANSI_1252 is taken instead|
    line 15: the current layer "X" does not exist; "0" is taken instead ::
    (HEADER|9 $ACADVER|1 AC1006|9 $DWGCODEPAGE|3 X|9 $CLAYER|8 X|)@0 EOF
A,0 :: line 7: the code page "ANSI_1200" is unknown; ANSI_1252 is taken instead ::
    (HEADER|9 $DWGCODEPAGE|3 ANSI_1200|)@0 EOF
none :: line 1: the file is empty ::
none :: line 1: the file is not a DXF :: To=20be=0Aor=20not=20to=20be=0A
none :: line 1: the file is not a DXF :: 1=0A2=0A3=0A4=0A
none :: line 1: the file is not a DXF :: 0
none :: line 1: the file is a binary DXF, and only ASCII DXF can be read ::
    1234567=20Binary=20DXF=0D=0A=1A=00=00=02
none :: line 1: the file is a DWG, and only ASCII DXF can be read :: AC1015
none :: line 9: "x1" is no group code :: 999 x|(HEADER|)x1 LINE
none :: line 9: "1.0" is no group code :: (ENTITIES|0 LINE|8 0|1.0=0A0=0A
none :: line 9: "" is no group code :: (ENTITIES|0 LINE|8 0|=0A0=0A0=0AENDSEC=0A
none :: line 9: the section "ENTITIES" has no end :: (ENTITIES|0 LINE|8 0|@
none :: line 8: the file ends inside the section "ENTITIES" :: (ENTITIES|0 LINE|8 0
none :: line 9: the file ends inside the section "ENTITIES" :: (ENTITIES|0 LINE|8 0|0=0A
none :: line 9: the file ends inside the section "ENTITIES" :: (ENTITIES|0 LINE|8 0|0=0AEOF=0A
none :: line 3: the file ends inside the section "" :: 0=0ASECTION=0A2=0A
none :: line 12: the file ends inside the section "TABLES" :: (TABLES|{LAYER|0 LAYER|2 A
)");
}

void TestEmbeddedHost::readsOddFiles()
{
    QFETCH(QStringList, fields);
    const QByteArray content =
            dxf(fields[2].replace('@', "(TABLES|{LAYER|70 1|0 LAYER|2 A|62 5|})"));
    const bool isRead = read(content);
    QStringList expected = fields[1].split('|', Qt::SkipEmptyParts);
    for (QString &message : expected)
        message = m_path + ", " + message + '.';
    QCOMPARE(isRead ? m_warnings : QStringList(m_error), expected);
    QCOMPARE(isRead ? ::names() : "none", fields[0]);
    QVERIFY(!isRead || m_drawing->clayer() == idOf("0"));
    QVERIFY(!isRead || written() == content);
}

/// Files that changes are tried in. "names" has all places that name layers, but for those where "A"
/// stands: %1 has a record, is current and goes by %2, too; %3 has a record, %4 none.
static constexpr char kFrames[] = R"(
file :: %1
plan :: (TABLES|{LAYER|%1|})(ENTITIES|%2|)
layer :: (TABLES|{LTYPE|0 LTYPE|2 Dash=E9|}{APPID|0 APPID|2 AcAecLayerStandard|}
    {LAYER|70 1|0 LAYER|2 A|%1|})
entity :: (TABLES|{LTYPE|0 LTYPE|2 Dash=E9|})(ENTITIES|999 0|%1|0 SEQEND|8 0|62 3|)
coded :: (HEADER|9 $ACADVER|1 %1|9 $DWGCODEPAGE|3 %2|)(TABLES|{LAYER|0 LAYER|2 [A>%3]|})
names :: (HEADER|9 $CLAYER|8 %2|)
    (TABLES|{LAYER|0 LAYER|2 %1|62 5|0 LAYER|102 {X|2 A|102 }|2 %2|0 LAYER|2 %3|%5|})
    (BLOCKS|0 BLOCK|8 %2|2 A|0 LINE|8 %4|0 ENDBLK|8 0|0 VIEWPORT|1001 ACAD|1003 %1|)
    (ENTITIES|0 VIEWPORT|8 %1|67 1|1001 X|1003 A|1001 ACAD|1003 %2|1003 %3|0 ACME|102 {X|8 A|102 }|
    8 %1|1 A|100 X|8 A|1001 ACAD|1003 A|0 LINE|8 %4|)(OBJECTS|0 X|8 A|)
cleared :: (TABLES|{LAYER|70 %1|[0 LAYER|5 1A|2 A|>]0 LAYER|2 B|%2|})
    (BLOCKS|0 BLOCK|8 [A>0]|2 X|[0 LINE|8 A|10 0|>]0 LINE|8 B|0 ENDBLK|8 [A>0]|)
    (ENTITIES|[0 LINE|8 a|1001 X|>]999 about B|0 LINE|8 B|
    [0 POLYLINE|8 A|66 1|0 VERTEX|8 B|0 SEQEND|8 B|>]
    0 POLYLINE|8 B|66 1|0 VERTEX|8 [A>B]|0 VERTEX|8 B|0 SEQEND|8 [A>B]|
    [0 INSERT|8 A|66 1|0 ATTRIB|8 B|0 SEQEND|8 B|>]
    0 INSERT|8 B|[66 1|>]2 X|[0 ATTRIB|8 A|0 ATTRIB|8 A|0 SEQEND|8 A|>]
    0 INSERT|8 B|66 1|0 ATTRIB|8 B|[0 ATTRIB|8 A|>]0 SEQEND|8 [A>B]|
    0 VIEWPORT|8 [A>0]|69 1|1001 ACAD|[1003 A|>][0 VIEWPORT|8 A|69 2|1001 ACAD|1003 A|1003 B|>]
    0 LINE|8 B|100 X|8 [A>B]|[0 VERTEX|8 A|0 SEQEND|8 A|>])
)";

/// The steps; the frame of the file and its version, if it has one; what is in the frame, where brackets
/// mark what the steps do, and "@" is what a new layer has. Behind "!" is what the version cannot hold.
/// The first entity of a frame has the number 8.
void TestEmbeddedHost::changesOnlyWhatChanged_data()
{
    addRows(R"(
off A;unoff B;off C;off D;off E;freeze F;lock F;lock G :: layer AC1009 ::
    62     [ 5>-5]|0 LAYER|2 B|62 [-5>5]|0 LAYER|2 C|62 [>-]300|0 LAYER|2 D|62 [0>-7]|
    0 LAYER|2 E|62 [--3>-7]|0 LAYER|2 F|70     [66>71]|0 LAYER|2 G|70 [x>4]
off A;freeze A;unplot A;off B;lock B;unplot C :: layer AC1015 ::
    [>70 1|62 -7|]6 X|[>290 0|]370 25|390 F|1001 ACAD|1070 62|1070 70|
    0 LAYER|2 B|[>70 4|]102 {X|70 1|62 3|102 }|62 [>-]5|1001 ACAD|1070 62|0 LAYER|2 C|290    [1>0]
layer A color 15;off B;layer B color 9;unoff C;layer C color 255;lock C;unlock C :: layer AC1009 ::
    62     [ 1>15]|1001 X|1070 62|0 LAYER|2 B|62 [5>-9]|0 LAYER|2 C|[>62 255|]6 X
layer A color 5;layer B true ABFE0101;layer C true 10204;off C :: layer AC1018 ::
    102 {X|420 1|102 }|62 5|[420 1|>][430 X|>][420 2|>]370 25|0 LAYER|2 B|
    [>62 1|420 16646401|]6 dash=E9|[430 X|>]370 25|0 LAYER|2 C|62 [1>-178]|420 [    1>66052]|[430 X|>]6 X
layer A weight 50;layer A type dASHÉ;layer B weight -3;layer B type dashé :: layer AC1015 ::
    62 1|6 [X>Dash=E9]|290 0|[>370 50|]390 F|0 LAYER|2 B|[>6 Dash=E9|]370 [25>-3]
layer A true FE0101 :: layer AC1015 :: 62 [5>1] :: !true colour of the layer "A"
layer A weight 0 :: layer AC1014 :: 62 1 :: !lineweight of the layer "A"
layer A description  dä ;layer B description d;layer C description ;layer D description \U+0041;
    layer E description d;layer F description d :: layer AC1009 ::
    1001 X|1000 x|[>1001 AcAecLayerStandard|1000 |1000  d=E4 |]|
    0 LAYER|2 B|1001 AcAecLayerStandard|1000 x|1000 [b>d]|1000 z|1001 X|1000 y|
    0 LAYER|2 C|1001 AcAecLayerStandard|1000 x|1000 [b>]|
    0 LAYER|2 D|1001 AcAecLayerStandard|1000 x|1000 [b>\U+005CU+0041]|
    0 LAYER|2 E|1001 AcAecLayerStandard|1000 x|[>1000 d|]1001 X|1000 y|
    0 LAYER|2 F|1001 AcAecLayerStandard|[>1000 |1000 d|]1070 1
layer A description d :: file :: (HEADER|9 $ACADVER|1 AC1015|9 $HANDSEED|5 [1F>20]|)
    (TABLES|{APPID|5 9|70 [1>2]|0 APPID|2 ACAD|[>0 APPID|5 1F|330 9|100 AcDbSymbolTableRecord|
    100 AcDbRegAppTableRecord|2 AcAecLayerStandard|70 0|]}
    {LAYER|0 LAYER|2 A|[>1001 AcAecLayerStandard|1000 |1000 d|]})
off A;layer A description d :: file AC1009 ::
    [>(TABLES|{LAYER|70 1|0 LAYER|2 A|70 0|62 -7|6 Continuous|1001 AcAecLayerStandard|1000 |1000 d|}
    {APPID|70 1|0 APPID|2 AcAecLayerStandard|70 0|})](ENTITIES|0 LINE|8 A|)

off A;unoff A;add B;current B;current 0;erase B :: layer AC1015 :: 62 5
erase B :: layer AC1009 :: 62 5|[0 LAYER|2 B|62 5|0 LAYER|2 b|>]999 about C|0 LAYER|2 C
current 0 :: file :: (HEADER|9 $CLAYER|8 [a>0]|)(TABLES|{LAYER|0 LAYER|2 0|0 LAYER|2 A|})
current A :: file ::
    (HEADER|9 $CLAYER|8 [0>A]|9 $CLAYER|8 [0>A]|0 X|8 B|)(TABLES|{LAYER|0 LAYER|2 A|})
current A :: file :: (HEADER|9 $ACADVER|1 AC1009|[>9 $CLAYER|8 A|])(TABLES|{LAYER|0 LAYER|2 A|})
current A :: file :: [>(HEADER|9 $CLAYER|8 A|)](TABLES|{LAYER|0 LAYER|2 A|})
add B :: file :: (HEADER|9 $CLAYER|8 [b>0]|)(TABLES|{LAYER|70 [1>2]|0 LAYER|2 A|[>0 LAYER|2 B@]})
add B;unplot B :: file AC1009 ::
    (TABLES|{LAYER|70     [1>2]|0 LAYER|2 A|[>0 LAYER|2 B@]}) :: !plot flag of the layer "B"
add B;unplot B;off B;lock B;layer B true 10204;layer B weight 25 :: file ::
    (HEADER|9 $ACADVER|1 AC1032|9 $HANDSEED|5 [1F>30]|)
    (TABLES|{LTYPE|0 LTYPE|5 2E|2 CONTINUOUS|}{LAYER|5 2|70 5|0 LAYER|5 10|2 0|347 2C|390 F|
    [>0 LAYER|5 2F|330 2|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 B|70 4|62 -178|
    420 66052|6 CONTINUOUS|290 0|370 25|347 2C|390 F|]})
add B :: file :: (HEADER|9 $ACADVER|1 AC1014|[>9 $HANDSEED|5 22|])(TABLES|{LAYER|0 LAYER|5 1F|2 A|
    [>0 LAYER|5 20|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 B@]})
off walls :: file ::
    (TABLES|0 X|[>{LAYER|70 1|0 LAYER|2 walls|70 0|62 -7|6 Continuous|}])(ENTITIES|0 LINE|8 walls|)
off walls;current free :: file :: [>(HEADER|9 $CLAYER|8 free|)(TABLES|{LAYER|70 2|0 LAYER|2 walls|
    70 0|62 -7|6 Continuous|0 LAYER|2 free@})](ENTITIES|0 LINE|8 walls|0 LINE|8 free|)
off 0 :: file :: (TABLES|{LAYER|70 [x>1]|[>0 LAYER|2 0|70 0|62 -7|6 Continuous|]})

rename A>С :: coded :: AC1015 :: ansi_1251 :: =D1
rename A>ä :: coded :: AC1009 :: dos850 :: =84
rename A>Жä中-😀 :: coded :: AC1015 :: ANSI_1252 :: \U+0416=E4\U+4E2D-\U+D83D\U+DE00
rename A>U+0416 +U :: coded :: AC1015 :: ANSI_1252 :: U+0416 +U
rename a>W ä Ж :: names :: [A>W ä \U+0416] :: [\U+0061>W ä \U+0416] :: B :: C ::
rename A>a :: names :: [A>a] :: [\U+0061>a] :: B :: C ::
rename A>X;rename X>A :: names :: A :: \U+0061 :: B :: C ::
rename A>X;rename B>A;rename X>B :: names :: [A>B] :: [\U+0061>B] :: [B>A] :: C ::
rename C>X :: names :: A :: \U+0061 :: B :: [C>X] :: [>0 LAYER|2 X@]
rename A>X :: plan :: 0 LAYER|2 [A>X] :: 0 |8 [A>X]
rename B>X;erase X;rename A>Y :: plan :: 0 LAYER|2 [A>Y]|[0 LAYER|2 B|>] ::
    0 VIEWPORT|67 1|1001 ACAD|1003 [a>Y]|[1003 b|>]1003 0
erase B :: file :: (TABLES|{LAYER|[0 LAYER|5 1B|102 {ACAD_XDICTIONARY|360 2A|102 }|2 B|>]})
    (BLOCKS|0 VIEWPORT|67 1|331 B|[331 1B|>]1001 ACAD|[1003 b|>])
    (OBJECTS|0 X|5 1|102 {ACAD_REACTORS|330 1B|102 }|330 2B|[0 DICTIONARY|5 2A|330 1B|3 Y|360 2C|>]
    0 X|5 2B|330 C|[0 X|5 2C|102 {ACAD_REACTORS|330 C|102 }|330 2A|>])
erase B :: file :: (TABLES|{LAYER|[0 LAYER|5 1B|102 {ACAD_XDICTIONARY|360 2A|102 }|2 B|>]})
    (OBJECTS|0 DICTIONARY|5 2A|330 C|0 X|5 2B|330 1B|)

set 8 color 1;set 9 color 0;set 10 color 256;set 11 color 10;set 12 color 1;set 12 weight -2;
    set 12 color 5;set 12 weight -1;set 13 color 1;set 14 color 1;set 15 color 256;
    set 15 type ByLayer :: entity AC1009 :: 0 LINE|5 F|8 0|[>62 1|]10 0|8 1|
    0 LINE|5 F|[>62 0|]10 0|1001 X|62 3|8 0|0 LINE|[62 1|>]10 0|0 LINE|8 0|62     [ 5>10]|6 X|
    0 LINE|8 0|62  5|0 LINE|8 0|[62 3|>]62 [5>1]|6 X|102 {X|62 3|102 }|0 LINE|8 0|62 [x>1]|
    0 LINE|8 0|62 256|6 bylayer
set 8 color 5;set 8 type dASHÉ;set 9 type dashé;set 10 type byblock;set 11 type continuous;
    set 12 type bylayer;set 13 type dashé :: entity AC1009 :: 0 LINE|8 0|[62 3|>]6 DASH=C9|62 5|
    0 LINE|8 0|[>6 Dash=E9|]10 0|0 LINE|8 0|6 [X>BYBLOCK]|0 LINE|8 0|[>6 Continuous|]10 0|
    0 LINE|8 0|[6 X|>]10 0|0 LINE|8 0|[6 X|>]6 Dash=E9
set 8 weight 25 :: entity AC1014 :: 0 LINE|8 0|10 0 :: !lineweight of one entity
set 8 weight 25;set 8 true 0 :: entity AC1015 ::
    0 LINE|8 0|[>62 18|370 25|]10 0 :: !true colour of one entity
set 8 true ABFE0101;set 9 true 010204;set 10 color 5;set 10 true 010203;set 11 true 0;
    set 11 color 5;set 12 true 010203 :: entity AC1018 ::
    0 LINE|8 0|[>420 16646401|]62 [5>1]|[430 X|>]10 0|
    0 LINE|8 0|62 [5>178]|420 [66051>66052]|[430 X|>]10 0|0 LINE|8 0|62 5|420 66051|430 X|
    0 LINE|8 0|62 5|[420 66051|430 X|>]440 1|0 LINE|5 F|100 AcDbEntity|[>62 178|420 66051|]
    100 AcDbLine|8 0|[62 3|>]370 25|[420 5|>][430 X|>]6 ByLayer
set 8 color 1;set 8 weight 25;set 8 type byblock;set 9 color 1;set 10 color 1;set 11 color 1;
    set 12 color 3;set 12 weight 25;set 13 color 3;set 14 color 256;set 14 weight -1;
    set 14 type bylayer;set 15 color 1;set 16 color 1 :: entity AC1015 ::
    0 LINE|5 F|102 {X|62 3|8 A|102 }|330 2|100 AcDbEntity|67 1|8 0|[>6 BYBLOCK|62 1|370 25|]100 X|
    [62 3|>][370 4|>][6 X|>]1001 ACAD|1070 62|0 LINE|5 F|100 AcDbEntity|[>62 1|]100 X|[62 3|>]|
    0 LINE|5 F|8 0|[>62 1|]100 X|[62 3|>]|0 LINE|5 F|100 X|8 0|62 [3>1]|10 0|
    0 LINE|5 F|100 AcDbEntity|62 3|100 AcDbLine|8 0|[62 3|>]370 25|
    0 LINE|5 F|100 AcDbEntity|8 0|62 3|100 AcDbLine|[62 3|>]10 0|
    0 LINE|5 F|100 AcDbEntity|[>370 -1|]100 AcDbLine|8 0|[62 3|>][370 25|>][6 X|>]10 0|
    0 ACME|100 AcDbEntity|8 0|[>62 1|]100 X|62 3|0 LINE|8 0|[>62 1|]101 Embedded Object|62 3
set 1 color 1;off Wä :: file :: (ENTITIES|0 LINE|8 W=C3=A4|[>62 1|])
    (TABLES|{LAYER|0 LAYER|2 W=C3=A4|62 [>-]5|})(HEADER|9 $ACADVER|1 AC1021|)
set 8 layer ä;set 9 layer ä;set 9 layer a;set 9 color 1;set 10 layer A;set 10 color 1;set 11 layer A;
    set 12 layer A;set 16 layer A :: entity AC1009 :: 0 LINE|8 [A>=C4]|62 8|102 {X|8 A|102 }|
    1001 X|8 A|0 LINE|8 A|[>62 1|]100 X|0 LINE|5 F|[>8 A|62 1|]10 0|0 LINE|8 [0>A]|100 X|8 [=C4>A]|
    0 POLYLINE|8 [0>A]|66 1|0 VERTEX|8 [=C4>A]|0 SEQEND|8 [0>A]|
    0 INSERT|8 0|0 INSERT|8 [0>A]|0 ATTRIB|8 0|0 SEQEND|8 [=C4>A]|0 LINE|8 A|0 LINE|8 =C4
set 3 layer A :: file AC1009 :: [>(TABLES|{LAYER|70 1|0 LAYER|2 B@})](ENTITIES|0 LINE|8 [B>A]|0 X|8 A|)

rename A>X;merge b>x :: plan ::
    0 LAYER|2 [A>X]|[0 LAYER|2 B|>]0 LAYER|2 C :: 0 X|8 [a>X]|0 X|8 [b>X]|0 X|8 C
merge A>B;rename C>A :: plan ::
    [0 LAYER|2 A|>]0 LAYER|2 B|0 LAYER|2 [C>A] :: 0 X|8 [A>B]|0 X|8 B|0 X|8 [c>A]
lock A;merge A>B;add A;set 8 layer A :: plan ::
    70 [1>2]|[0 LAYER|2 A|>]0 LAYER|2 B|[>0 LAYER|2 A@] :: 0 X|8 0|0 X|8 a|0 X|8 [A>B]|0 X|8 B
rename A>X;add A;set 7 layer a;rename A>Z :: plan ::
    70 [1>2]|0 LAYER|2 [A>X]|[>0 LAYER|2 Z@] :: 0 X|8 [A>X]|0 X|8 [0>Z]
clear B;add B;rename A>C;merge C>B :: plan ::
    70 1|[0 LAYER|2 A|0 LAYER|2 B|>][>0 LAYER|2 B@] :: 0 X|8 [a>B]|[0 X|8 B|>]0 X|8 0
erase A :: plan :: [0 LAYER|2 A|>] :: 8 A|0 LINE|8 0
merge A>B :: file :: (TABLES|{LAYER|[0 LAYER|5 1A|2 A|>]0 LAYER|2 B|})
    (BLOCKS|0 BLOCK|8 [A>B]|2 X|0 LINE|8 [a>B]|0 ENDBLK|8 [A>B]|)
    (ENTITIES|0 VIEWPORT|8 [A>B]|67 1|[331 1A|>]1001 ACAD|[1003 a|>]1003 B|0 INSERT|8 C|66 1|
    0 ATTRIB|8 [A>B]|0 SEQEND|8 [A>B]|0 LINE|8 C|100 X|8 [A>C]|0 ACME|102 {X|8 A|102 }|8 [A>B]|1 A|
    100 X|8 A|)
clear A :: cleared :: 1 ::
set 13 color 1;clear A :: cleared :: 1 ::
rename A>X;clear X;add C :: cleared :: [1>2] :: [>0 LAYER|2 C@]
)");
}

/// Each step is written, and the last one read again.
void TestEmbeddedHost::changesOnlyWhatChanged()
{
    QFETCH(QStringList, fields);
    const QStringList steps = fields.takeFirst().split(';');
    const QStringList frame = fields.takeFirst().split(' ');
    const QString lost = fields.last().startsWith('!') ? fields.takeLast().mid(1) : "";
    QString groups;
    const QList<QStringList> frames = rowsOf(kFrames);
    for (const QStringList &row : frames)
        groups += row[0] == frame[0] ? row[1] : "";
    for (const QString &field : std::as_const(fields))
        groups = groups.arg(field);
    if (frame.size() > 1)
        groups.prepend("(HEADER|9 $ACADVER|1 " + frame[1] + "|)");
    groups = groups.replace('@', "|70 0|62 7|6 Continuous|") + "0 EOF";
    const QString warning = m_writtenPath + ": the file's version cannot hold the " + lost + '.';
    for (const char *lineEnd : {"\n", "\r\n"}) {
        QVERIFY2(read(dxf(side(groups, false), lineEnd)), qPrintable(m_error));
        for (const QString &step : steps) {
            QVERIFY2(change(step) == eOk, qPrintable(step));
            written();
        }
        const QByteArray bytes = fileContent(m_writtenPath);
        QCOMPARE(bytes, dxf(side(groups, true), lineEnd));
        QCOMPARE(m_warnings, lost.isEmpty() ? QStringList() : QStringList(warning));
        QUndoStack *stack = KcHost::undoStack(*m_drawing);
        stack->setIndex(0);
        QCOMPARE(written(), dxf(side(groups, false), lineEnd));
        stack->setIndex(stack->count());
        QCOMPARE(written(), bytes);
        const QList<QStringList> rows = layerRows();
        QVERIFY2(read(bytes), qPrintable(m_error));
        if (!lost.contains("layer"))
            QCOMPARE(layerRows(), rows);
    }
}

void TestEmbeddedHost::readsProperties()
{
    const QString content =
            "|)(TABLES|{LTYPE|0 LTYPE|2 Dashed|}{LAYER|0 LAYER|2 0|0 LAYER|2 A|70 7|62 -1|6 DASHED|"
            "290 0|370 35|390 1F|1001 AcAecLayerStandard|1000 |1000 about A|1001 ACAD|1000 x|1000 "
            "y|"
            "0 LAYER|2 B|62 12|420 1122867|6 continuous|390 AA|370 -3|0 LAYER|2 C|62 249|"
            "0 LAYER|2 D|62 250|})(OBJECTS|0 DICTIONARY|5 C|3 ACAD_GROUP|350 D|"
            "3 ACAD_PLOTSTYLENAME|350 E|0 DICTIONARY|5 D|3 Wrong|350 1F|0 ACDBDICTIONARYWDFLT|5 E|"
            "3 Normal|350 F|3 Fine|350 1F|)0 EOF";
    // The plot style's name goes with the drawing's mode.
    const QByteArray lines =
            "1 0 1 1 1 ll*white;255,255,255 Continuous Default [Normal>Color-7] 1 0 0 \n"
            "0 A 0 0 0 ll*red;255,0,0 Dashed 0.35 mm [Fine>Color-1] 0 1 0 about A\n"
            "0 B 1 1 1 ll*17,34,51;17,34,51 Continuous Default [Normal>Color-12] 1 0 0 \n"
            "0 C 1 1 1 ll*Color 249;38,19,23 Continuous Default [Normal>Color-249] 1 0 0 \n"
            "0 D 1 1 1 ll*Color 250;51,51,51 Continuous Default [Normal>Color-250] 1 0 0 \n";
    for (const QByteArray &mode : {QByteArray("0"), QByteArray("1")}) {
        QVERIFY(read(dxf("(HEADER|9 $ACADVER|1 AC1015|9 $PSTYLEMODE|290 " + mode + content)));
        QCOMPARE(m_warnings, QStringList());
        QByteArray found;
        const QList<QStringList> rows = layerRows();
        for (const QStringList &row : rows)
            found += row.join(' ').replace("true", "1").replace("false", "0").toLatin1() + '\n';
        QCOMPARE(found, side(lines, mode == "1"));
    }
}

void TestEmbeddedHost::namesWhatFails()
{
    const QByteArray old = dxf("(HEADER|)").chopped(1);
    QVERIFY(read(old));
    QCOMPARE(change("off 0"), eOk);
    const QString path = m_folder.path();
    QCOMPARE(mkfifo(qPrintable(path + "/pipe"), 0600), 0);
    QVERIFY(QFile::link(path + "/loop", path + "/loop"));
    for (const QString &message :
         {path + ": this is a folder.", path + "/pipe: this is a pipe.",
          QString("/dev/null: this is a device."), path + "/none/x: No such file or directory.",
          path + "/loop: Too many levels of symbolic links.",
          path + '/' + QString(256, 'x') + ": File name too long."}) {
        const QString file = message.section(": ", 0, 0);
        QVERIFY(!KcHost::readDrawing(file, &m_error));
        QCOMPARE(std::exchange(m_error, {}), message);
        QVERIFY(!KcHost::writeDrawing(*m_drawing, file, &m_error));
        QCOMPARE(m_error, message);
    }
    QVERIFY(!KcHost::readDrawing("/proc/self/mem", &m_error));
    QCOMPARE(m_error, "/proc/self/mem: Input/output error.");

    const QStringList files = QDir(path).entryList(QDir::Files | QDir::Hidden);
    {
        const Limit size(RLIMIT_FSIZE, 40);
        QVERIFY(!KcHost::writeDrawing(*m_drawing, m_path, &m_error));
    }
    QCOMPARE(m_error, m_path + ": File too large.");
    for (int *error : {&flushError, &modeError}) {
        *error = EIO;
        QVERIFY(!KcHost::writeDrawing(*m_drawing, m_path, &m_error));
        *error = 0;
        QCOMPARE(m_error, m_path + ": Input/output error.");
    }
    QCOMPARE(fileContent(m_path), old);
    QCOMPARE(QDir(path).entryList(QDir::Files | QDir::Hidden), files);

    // The last line of the file was open.
    QCOMPARE(written(),
             old + '\n' + dxf("(TABLES|{LAYER|70 1|0 LAYER|2 0|70 0|62 -7|6 Continuous|})"));
#ifndef __SANITIZE_ADDRESS__ // which has no room left to be short of
    QVERIFY(read("999\n" + QByteArray(1 << 26, 'x') + '\n' + old));
    const Limit memory(RLIMIT_AS, 1 << 20);
    QVERIFY(!KcHost::writeDrawing(*m_drawing, m_path, &m_error));
    QCOMPARE(m_error, m_path + ": there is not enough memory for it.");
    QVERIFY(!KcHost::readDrawing(m_path, &m_error));
    QCOMPARE(m_error, m_path + ": there is not enough memory for it.");
#endif
}

/// Behind a link, with the longest of names, and somebody else's.
void TestEmbeddedHost::replacesFiles()
{
    open(KcHost::newDrawing());
    const QByteArray path = m_folder.filePath(QString(255, 'x')).toLocal8Bit();
    const QString link = m_folder.filePath("link");
    QVERIFY(QFile::link(path, link));
    QVERIFY(KcHost::writeDrawing(*m_drawing, link, &m_error));
    const bool isRoot = ::chown(path, 1234, 2345) == 0;
    QCOMPARE(::chmod(path, 0604), 0);
    QVERIFY(KcHost::writeDrawing(*m_drawing, link, &m_error));
    struct stat status = {};
    QVERIFY(QFileInfo(link).isSymLink() && ::stat(path, &status) == 0);
    QCOMPARE(status.st_mode & 07777, mode_t(0604));
    QVERIFY(!isRoot || (status.st_uid == 1234 && status.st_gid == 2345));

    // Nor does it go where a link only seems to lead.
    const QByteArray odd = QFile::encodeName(m_folder.path()) + "/\xe4";
    QVERIFY(std::rename(path, odd) == 0 && ::symlink("\xe4", path) == 0 && ::truncate(odd, 0) == 0);
    QVERIFY(KcHost::writeDrawing(*m_drawing, link, &m_error));
    QVERIFY(::stat(odd, &status) == 0 && status.st_size > 0);
    QCOMPARE(std::rename(odd, path), 0); // which Qt can remove
}

void TestEmbeddedHost::noticesOtherWriters()
{
    const QByteArray content = dxf("(TABLES|{LAYER|0 LAYER|2 A|})0 EOF");
    const auto isChangedBy = [&](const QByteArray &bytes) {
        QFile file(m_path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) > 0 && file.flush()
               && KcHost::isFileChanged(*m_drawing);
    };
    open(KcHost::newDrawing());
    QVERIFY(!KcHost::isFileChanged(*m_drawing));
    QVERIFY(read(content) && !KcHost::isFileChanged(*m_drawing));
    QVERIFY(isChangedBy(QByteArray(content).replace("A", "B"))); // in the same moment, as large
    QVERIFY(!isChangedBy(content) && isChangedBy(content + ' '));
    QVERIFY(change("off A") == eOk && KcHost::writeDrawing(*m_drawing, m_path));
    QVERIFY(!KcHost::isFileChanged(*m_drawing) && isChangedBy(content));
    QVERIFY(QFile::remove(m_path) && KcHost::isFileChanged(*m_drawing));
    QVERIFY(!written().isEmpty() && !KcHost::isFileChanged(*m_drawing)); // under another name
    QCOMPARE(KcHost::fileContent(*m_drawing), content);
}

void TestEmbeddedHost::opensAndCloses()
{
    open(drawingWithLayers({"A"}));
    int changes = 0;
    KcHost::setLayerModifiedHandler([&](const QString &) { ++changes; });
    const KcDbObjectId id = idOf("A");
    KcDbLayerTableRecord *first = nullptr;
    KcDbLayerTableRecord *second = nullptr;
    KTCHAR *name = nullptr;
    const auto open2 = [&](KcDb::OpenMode mode) { return kcdbOpenObject(second, id, mode); };
    const auto tries = [&] {
        return Statuses{open2(KcDb::kForWrite), change("erase a"), change("rename a>B"),
                        change("merge a>0"),    change("clear a"), change("layer a color 1")};
    };
    QVERIFY(kcdbOpenObject(first, id, KcDb::kForRead) == eOk && open2(KcDb::kForRead) == eOk);
    QCOMPARE(KcHost::openObjectCount(), 2);
    QCOMPARE((Statuses{first->upgradeOpen(), first->setIsOff(true), first->downgradeOpen()}),
             (Statuses{eWasOpenForRead, eNotOpenForWrite, eNotOpenForWrite}));
    QCOMPARE(second->close(), eOk);
    QCOMPARE(tries(), Statuses(6, eWasOpenForRead));
    QCOMPARE((Statuses{first->upgradeOpen(), first->setIsOff(true), first->setIsOff(false)}),
             Statuses(3, eOk));
    QCOMPARE(tries(), Statuses(6, eWasOpenForWrite));
    QVERIFY(open2(KcDb::kForRead) == eWasOpenForWrite && !second);
    QCOMPARE((Statuses{first->upgradeOpen(), first->close(), first->close(), first->upgradeOpen(),
                       first->getName(name)}),
             (Statuses{eNotOpenForRead, eOk, eNotOpenForRead, eNotOpenForRead, eNotOpenForRead}));

    // With other readers about, the last of them makes a change known.
    QCOMPARE(kcdbOpenObject(first, id, KcDb::kForWrite), eOk);
    QCOMPARE((Statuses{first->setIsOff(true), first->downgradeOpen(), open2(KcDb::kForRead)}),
             Statuses(3, eOk));
    QVERIFY(first->close() == eOk && changes == 0);
    QVERIFY(second->close() == eOk && changes == 1);
    KcDbViewport *viewport = nullptr;
    QCOMPARE(kcdbOpenObject(viewport, id, KcDb::kForRead), eNotThatKindOfClass);
    QCOMPARE(kcdbOpenObject(first, KcDbObjectId(), KcDb::kForRead), eNullObjectId);
}

/// From the end to the beginning, over a layer that goes while the walk is under way.
void TestEmbeddedHost::walksBothWays()
{
    open(drawingWithLayers({"A", "B"}));
    const KcDbObjectId id = idOf("A");
    KcDbLayerTable *table = nullptr;
    QCOMPARE(m_drawing->getLayerTable(table, KcDb::kForRead), eOk);
    KcDbLayerTableIterator *made = nullptr;
    QCOMPARE((Statuses{change("add C"), table->newIterator(made, false)}),
             (Statuses{eWasOpenForRead, eOk}));
    const std::unique_ptr<KcDbLayerTableIterator> iterator(made);
    QCOMPARE((Statuses{table->close(), table->newIterator(made)}),
             (Statuses{eOk, eNotOpenForRead}));

    KcDbLayerTableRecord *record = nullptr;
    QCOMPARE(change("erase A"), eOk);
    QCOMPARE(kcdbOpenObject(record, id, KcDb::kForRead), eWasErased);
    QCOMPARE(change("add a"), eOk);
    iterator->step(false, false);
    QCOMPARE(iterator->getRecord(record, KcDb::kForRead), eWasErased);
    QCOMPARE(iterator->getRecord(record, KcDb::kForRead, true), eOk);
    QVERIFY(record->objectId() == id);
    QCOMPARE(record->close(), eOk);
    iterator->start(false);
    for (const char *name : {"a", "B", "0"}) {
        QCOMPARE(iterator->getRecord(record, KcDb::kForRead), eOk);
        QVERIFY(record->objectId() == idOf(name));
        QCOMPARE(record->close(), eOk);
        iterator->step(false);
    }
    QVERIFY(iterator->done());
    QCOMPARE(iterator->getRecord(record, KcDb::kForRead), eKeyNotFound);
}

/// Tells of each layer that a step changed, under its new name, when nothing is open any more.
void TestEmbeddedHost::refusesAndAnnounces()
{
    QVERIFY(read(dxf("(TABLES|{LAYER|0 LAYER|2 0|0 LAYER|2 A|0 LAYER|2 Used|})"
                     "(ENTITIES|0 LINE|8 uSED|0 LINE|8 Free|)0 EOF")));
    const QString longest(255, 'x');
    QString told;
    const auto tell = [&](const QString &name) {
        QCOMPARE(KcHost::openObjectCount(), 0);
        QVERIFY(names().startsWith("0,"));
        told += name.left(4) + ' ';
    };
    KcHost::setLayerModifiedHandler([&](const QString &name) {
        KcHost::setLayerModifiedHandler(tell); // while this one runs
        tell(name);
    });
    const std::tuple<ErrorStatus, QString, const char *> runs[]{
            {eInvalidInput, "add ;add a*;add a\n;rename A> ;rename A>b\\c;add y" + longest, ""},
            {eDuplicateKey, "add used;rename A>0;rename A>fREE", ""},
            {eInvalidInput, "layer A color 0;layer A color 256;layer A weight -1;merge A>a", ""},
            {eInvalidInput, "layer A description a\nb;layer A description y" + longest, ""},
            {eKeyNotFound, "layer X color 1;layer A type X;layer A type ByLayer;merge X>A", ""},
            {eKeyNotFound, "merge A>X;clear X;set 8 layer X;set 10 layer A", ""},
            {eOk, "layer a color 1;layer A color 1;layer A weight 13;layer A true 0", "A A A "},
            {eCannotBeErasedByCaller, "erase 0;rename 0>B;merge 0>A;clear 0", ""},
            {eLayerInUse, "erase used;erase free", ""},
            {eOk, "off A;off A;lock A;unplot A;unfreeze A;current a;current A", "A A A A "},
            {eLayerIsCurrent, "freeze A;erase a;merge A>0;clear A", ""},
            {eOk, "freeze 0;current 0;erase a", "0 0 A "},
            {eKeyNotFound, "erase A;current A;rename A>B;off A", ""},
            {eKeyNotFound, "set -1 color 1;set 7 color 1;set 10 color 1;set 8 type X", ""},
            {eInvalidInput, "set 8 color -1;set 8 color 257;set 8 weight 26;set 8 weight -4", ""},
            {eOk, "lock Used;set 9 color 1;layer Used color 1", "Used Used "},
            {eOnLockedLayer, "set 8 color 1;set 8 true 0;set 8 type continuous;set 8 layer 0", ""},
            {eOk, "add A;rename a>A;rename A>a;rename used>Busy", "A a Busy "},
            {eLayerInUse, "erase busy", ""},
            {eOnLockedLayer, "set 8 color 1", ""},
            {eOk, "rename a>uSED;rename Free>A;erase used;add " + longest, "uSED A uSED xxxx "},
            {eOnLockedLayer, "set 8 color 1", ""},
            {eOk, "set 9 color 1;unlock Busy;set 8 color 1;lock A", "Busy A "},
            {eOnLockedLayer, "set 9 color 1", ""}};
    for (const auto &[status, run, names] : runs) {
        told.clear();
        const QStringList steps = run.split(';');
        for (const QString &step : steps)
            QVERIFY2(change(step) == status, qPrintable(step));
        QCOMPARE(told, QString(names));
    }
    QCOMPARE(names(), "0,Busy,A," + longest);
    KcHost::EntityChange both = propertyChange<KcHost::EntityChange>("color", "1");
    both.trueColor = 0;
    QCOMPARE(KcHost::changeEntity(*m_drawing, 8, both), eInvalidInput);
}

/// Which entities a step has reached, and what is known of them then.
void TestEmbeddedHost::tellsOfEntities()
{
    QVERIFY(read(dxf("(HEADER|9 $ACADVER|1 AC1018|)(BLOCKS|0 BLOCK|8 A|0 LINE|8 A|0 ENDBLK|8 A|)"
                     "(ENTITIES|0 POLYLINE|8 A|0 VERTEX|8 A|0 SEQEND|8 A|0 LINE|0 INSERT|8 D|"
                     "0 ATTRIB|8 C|0 SEQEND|8 D|)0 EOF")));
    QString told;
    KcHost::setEntityModifiedHandler([&](int entity) {
        told += QString::number(entity) + (KcHost::isErased(*m_drawing, entity) ? "x " : " ");
    });
    const auto given = [this](int entity) {
        const KcHost::EntityChange change = KcHost::changesOf(*m_drawing, entity);
        return QString("%1 %2 %3 %4 %5")
                .arg(change.color.value_or(-1))
                .arg(change.trueColor.value_or(1), 0, 16)
                .arg(change.lineWeight.value_or(-9))
                .arg(change.linetype.value_or("-"), change.layer.value_or("-"));
    };
    // The entities that are told of, and what is known of one then.
    const QList<QStringList> steps = rowsOf(R"(
set 8 color 5 :: 8 :: 5 1 -9 - -
set 8 true 0 :: 8 :: -1 0 -9 - -
set 8 true FFABCDEF :: 8 :: -1 abcdef -9 - -
set 8 type BYBLOCK :: 8 :: -1 abcdef -9 ByBlock -
set 8 type continuous :: 8 :: -1 abcdef -9 Continuous -
add B;set 8 layer b :: 8 9 :: -1 abcdef -9 Continuous B
set 8 layer B;rename B>Y :: :: -1 abcdef -9 Continuous Y
set 11 weight 25;merge A>0;set 4 layer Y :: 11 4 4 :: -1 abcdef -9 Continuous Y
lock Y;clear C :: 12 13x :: -1 abcdef -9 Continuous Y
merge Y>D :: 4 8 9 :: -1 abcdef -9 Continuous D)");
    for (const QStringList &row : steps) {
        told.clear();
        QCOMPARE(change(row[0]), eOk);
        QCOMPARE(QStringList({row[0], told.trimmed(), given(8)}), row);
    }
    QCOMPARE(KcHost::layerUsage(*m_drawing), (QHash<QString, int>{{"0", 3}, {"D", 5}}));
    QCOMPARE(change("clear D;set 8 color 1"), eWasErased);
    QCOMPARE(told, "4 8 9 4x 8x 9x 12x ");
    QCOMPARE(given(8), "-1 1 -9 - -");
    QCOMPARE(KcHost::layerUsage(*m_drawing), (QHash<QString, int>{{"0", 3}}));
    QVERIFY(KcHost::colorIndex(0xFFFF0000) == 1 && KcHost::colorIndex(0x333333) == 250
            && KcHost::colorIndex(0xFF0001) == 0 && KcHost::colorIndex(0x01FF00) == 0);
}

void TestEmbeddedHost::findsTheViewport()
{
    const auto viewport = [](const QByteArray &groups) { return "0 VIEWPORT|8 0|" + groups + '|'; };
    const QByteArray sheet = viewport("67 1|68 1|69 1|331 b");
    const QByteArray second = viewport("67 1|68 3|69 2|102 {X|331 A|102 }|341 C|331 A0");
    const QByteArray active = viewport("67 1|68 2|69 3|331 A|341 C|1001 X|1003 B");
    const QByteArray names = "1001 ACAD|1000 MVIEW|1003 a|1003 B|1003 gone|1001 X|1003 C";
    // With the layers frozen in the viewport in use; "-" where there is none.
    const std::pair<QByteArray, QString> sheets[]{{sheet + second + active, "AC"},
                                                  {sheet + second, "C"},
                                                  {sheet + viewport("67 1|68 0|69 2|331 A"), "B"},
                                                  {viewport("68 1|69 2|331 A"), "-"},
                                                  {viewport("67 1|68 1|69 2|" + names), "AB"}};
    for (const auto &[viewports, frozen] : sheets) {
        QVERIFY(read(dxf("(HEADER|9 $ACADVER|1 AC1015|9 $TILEMODE|70 0|)"
                         "(TABLES|{LAYER|0 LAYER|5 A|2 A|0 LAYER|5 B|2 B|0 LAYER|5 C|2 C|})"
                         "(BLOCKS|0 VIEWPORT|8 0|67 1|68 1|69 2|331 A|)(ENTITIES|"
                         + viewports + "0 LINE|8 0|)0 EOF")));
        const KcDbObjectId none;
        QString found = kcdbGetCurVportId(m_drawing.get()) == none ? "-" : "";
        const QList<QStringList> rows = layerRows();
        for (const QStringList &row : rows)
            found += row[11] == "true" ? row[1] : "";
        QCOMPARE(found, frozen);
        KcHost::setVariable("TileMode", 1);
        QVERIFY(kcdbGetCurVportId(m_drawing.get()) == none);
    }
}

/// On the sheet that the drawing opens with, and in model space.
void TestEmbeddedHost::rowsMatchIndependentWriter()
{
    const QJsonObject expected = ezdxf("layers.py", {"write", m_path, "10000"});
    open(KcHost::readDrawing(m_path, &m_error, &m_warnings));
    QVERIFY2(m_drawing && m_warnings.isEmpty(), qPrintable(m_error));
    for (const char *space : {"sheet", "model"}) {
        QCOMPARE(OvLayerUtility().isModelSpace(), space[0] == 'm');
        QJsonObject read;
        const QList<QStringList> rows = layerRows();
        for (const QStringList &row : rows) {
            if (row[1].startsWith("Ebene"))
                read.insert(row[1], QJsonArray::fromStringList(row));
        }
        QCOMPARE(read, expected[space].toObject());
        KcHost::setVariable("TILEMODE", 1);
    }
}

void TestEmbeddedHost::writesNewDrawing()
{
    open(KcHost::newDrawing());
    change("add X;rename X>Wände 中;off Wände 中;freeze Wände 中;lock Wände 中;unplot Wände 中;add "
           "B");
    QVERIFY(change("current B") == eOk && !written().isEmpty());
    const QJsonObject file = ezdxf("layers.py", {"read", m_writtenPath});
    QCOMPARE(file["current"].toString(), QString("B"));
    QCOMPARE(file["layers"].toObject()["Wände 中"].toArray(),
             (QJsonArray{false, true, true, false, 5, 7, QJsonValue(), "Continuous", -3, ""}));
    QCOMPARE(KcHost::decodeText(*m_drawing, "W\xC3\xA4nde \\U+4E2D"), QString("Wände 中"));
}

void TestEmbeddedHost::forgetsDestroyedDrawings()
{
    open(drawingWithLayers({"A"}));
    const KcDbObjectId id = idOf("A");
    KcDbLayerTableRecord *record = nullptr;
    QCOMPARE(kcdbOpenObject(record, id, KcDb::kForRead), eOk);
    m_drawing.reset();
    QVERIFY(!kcdbHostApplicationServices()->workingDatabase());
    open(drawingWithLayers({"A"}));
    QVERIFY(!(idOf("A") == id));
    QCOMPARE(kcdbOpenObject(record, id, KcDb::kForRead), eNullObjectId);
    KTCHAR *name = nullptr;
    QCOMPARE(KcDbSymbolUtilities::getSymbolName(name, id), eNullObjectId);
    KcHost::newDrawing().reset();
    QCOMPARE(kcdbHostApplicationServices()->workingDatabase(), m_drawing.get());
}

void TestEmbeddedHost::undoesAnything_data()
{
    QTest::addColumn<int>("year");
    for (const int year : {12, 2000, 2018})
        QTest::addRow("R%d", year) << year;
}

/// Random changes, also in groups and after undone ones, saved now and then: by the places of the
/// stack at which it was, the file must come out the same whenever one goes there again.
void TestEmbeddedHost::undoesAnything()
{
    QFETCH(int, year);
    const QString version = QTest::currentDataTag();
    const int records = ezdxf("entities.py", {m_path, version})["records"].toInt();
    QVERIFY2(read(fileContent(m_path)), qPrintable(m_error));
    QCOMPARE(KcHost::linetypes(*m_drawing).join(','), "Continuous,Dashed,\u00D6ffnung");
    QUndoStack *stack = KcHost::undoStack(*m_drawing);
    QMap<int, QByteArray> files{{0, fileContent(m_path)}};
    std::mt19937 random(static_cast<quint32>(year));
    const auto below = [&](int end) { return int(random() % quint32(end)); };
    const auto oneOf = [&](const QString &words) {
        const QStringList list = words.split(',');
        return list[below(list.size())];
    };
    const auto name = [&] { return oneOf("0,Walls,Loose,Spare,Locked,A,B,Wände"); };
    const auto step = [&] {
        const QString layer = name();
        const QString value = oneOf("color 3,true 12AB34,weight 25,type dashed,layer " + name());
        const QStringList steps{oneOf("off ,unoff ,freeze ,unfreeze ,lock ,unlock ,plot ,unplot ")
                                        + layer,
                                oneOf("add ,add ,erase ,clear ,current ") + layer,
                                oneOf("rename ,merge ") + layer + '>' + name(),
                                "layer " + layer + ' ' + value,
                                QString("set %1 ").arg(below(records)) + value,
                                QString("set %1 layer ").arg(below(records)) + layer};
        return steps[below(steps.size())];
    };
    int done = 0;
    auto group = std::make_unique<KcHost::UndoGroup>(*m_drawing, "Names that go round");
    QCOMPARE(change("merge Walls>Loose;rename Loose>Walls;add Loose"), eOk);
    int merged = 0; // steps of the stack that the next one may change
    while (done < 1000) {
        const int before = stack->index();
        if (!group && below(10) == 0) {
            merged = below(4) == 0 ? 1 : 0;
            group = std::make_unique<KcHost::UndoGroup>(*m_drawing, "Group", merged - 1);
        } else if (below(5) == 0) {
            group.reset();
        }
        done += change(step()) == eOk ? 1 : 0;
        while (stack->index() == stack->count() && files.lastKey() > qMax(0, before - merged))
            files.erase(std::prev(files.end()));
        if (below(20) == 0) {
            const QByteArray bytes = written();
            files.insert(stack->index(), bytes);
        }
        if (!group && below(20) == 0)
            stack->setIndex(qMax(0, stack->index() - below(8)));
    }
    group.reset();
    stack->setIndex(stack->count());
    files.insert(stack->index(), written());
    QVERIFY(files.size() > 15 && stack->count() > 150);
    QList<int> places = files.keys();
    std::shuffle(places.begin(), places.end(), random);
    places = QList<int>{0, stack->count()} + places;
    for (const int place : std::as_const(places)) {
        stack->setIndex(place);
        QVERIFY2(written() == files[place], qPrintable(QString("place %1").arg(place)));
        QCOMPARE(KcHost::layerUsage(*m_drawing),
                 KcHost::layerUsage(*KcHost::readDrawing(m_writtenPath)));
    }
}

void TestEmbeddedHost::makesSteps()
{
    open(drawingWithLayers({"A", "B"}));
    QUndoStack *stack = KcHost::undoStack(*m_drawing);
    const auto steps = [&] {
        QStringList texts;
        for (int index = 0; index < stack->count(); ++index)
            texts += stack->text(index);
        stack->clear();
        return texts.join(';');
    };
    QCOMPARE(steps(), "Add layer;Add layer");
    change("off A;off A;unoff A;freeze B;lock B;unplot A;rename A>C;current C;current c;erase "
           "B;erase B");
    QCOMPARE(steps(), "Switch layer off;Switch layer on;Freeze layer;Lock layer;"
                      "Leave layer out of plots;Rename layer;Change current layer;Erase layer");
    KcDbLayerTableRecord *record = getLayerByName("C");
    QCOMPARE(record->upgradeOpen(), eOk);
    record->setIsOff(true);
    record->setIsLocked(true);
    // Half a step, which no place of the stack has.
    QVERIFY(!written().isEmpty() && !stack->isClean());
    record->close();
    QCOMPARE(steps(), "Change layer");
    {
        const KcHost::UndoGroup group(*m_drawing, "Group");
        change("unoff C");
        const KcHost::UndoGroup inner(*m_drawing, "Inner");
        change("add D");
        QVERIFY(!written().isEmpty() && stack->isClean());
        change("erase D;unlock C");
    }
    QVERIFY(!stack->isClean());
    QCOMPARE(steps(), "Group;Group");

    const auto setOff = [&](bool off, int id) {
        const KcHost::UndoGroup group(*m_drawing, "Off", id);
        change(off ? "off C;lock 0;unlock 0" : "unoff C;lock 0;unlock 0");
    };
    QVERIFY(!written().isEmpty());
    setOff(true, 7);
    change("add E");
    stack->undo();
    setOff(false, -1);
    QCOMPARE(stack->count(), 2);
    stack->undo();
    setOff(false, 7);
    QVERIFY(stack->count() == 0 && stack->isClean());
}

/// Nothing is lost and nothing mixed up: the stack stays where the drawing is.
void TestEmbeddedHost::refusesToUndo()
{
    open(drawingWithLayers({"A", "B"}));
    QUndoStack *stack = KcHost::undoStack(*m_drawing);
    change("off A;off B;lock B");
    const QByteArray bytes = written();
    static const QRegularExpression warning("^KcHost: cannot undo or redo");
    const auto stopsAt = [&](int index) {
        QTest::ignoreMessage(QtWarningMsg, warning);
        stack->setIndex(0);
        return stack->index() == index;
    };
    KcDbLayerTableRecord *record = getLayerByName("A");
    QVERIFY(stopsAt(3));
    stack->redo();
    QVERIFY(stopsAt(3));
    record->close();
    stack->setIndex(0);
    QCOMPARE(names(), "0");
    stack->setIndex(5);
    QCOMPARE(written(), bytes);
    {
        const KcHost::UndoGroup group(*m_drawing, "Group");
        QVERIFY(stopsAt(5) && stack->isClean());
        change("off 0");
    }
    stack->undo();
    QCOMPARE(written(), bytes);

    stack->beginMacro("Macro");
    change("add C;freeze C");
    stack->push(new QUndoCommand("Own"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot set clean"));
    const QByteArray later = written();
    stack->endMacro();
    stack->undo();
    QVERIFY(!stack->isClean()); // the file has what was in the macro
    stack->redo();
    record = getLayerByName("A");
    stack->undo();
    QCOMPARE(names(), "0,A,B");
    stack->redo();
    record->close();
    QCOMPARE(written(), later);
    const KcDbObjectId added = idOf("C");
    stack->undo();
    QCOMPARE(kcdbOpenObject(record, added, KcDb::kForRead, true), eOk);
    QTest::ignoreMessage(QtWarningMsg, warning);
    stack->redo();
    QCOMPARE(names(), "0,A,B");
    QCOMPARE(record->close(), eOk);
    stack->redo();
    QCOMPARE(written(), later);
}

void TestEmbeddedHost::tellsOfUndo()
{
    QVERIFY(read(dxf("(TABLES|{LAYER|0 LAYER|2 0|0 LAYER|2 A|0 LAYER|2 B|})(ENTITIES|0 LINE|8 A|0 "
                     "LINE|8 A|)0 EOF")));
    change("off A;rename A>C;current B;lock C;merge C>B");
    QPointer<QUndoStack> stack = KcHost::undoStack(*m_drawing);
    QStringList told;
    KcHost::setLayerModifiedHandler(
            [&](const QString &name) { told += name + QString::number(stack->index()); });
    KcHost::setEntityModifiedHandler(
            [&](int entity) { told += QString("%1: %2").arg(entity).arg(stack->index()); });
    const std::pair<int, QString> moves[]{{4, "8: 4 9: 4 C4"}, {3, "C3"},
                                          {2, "B2 02"},        {1, "C1 A1"},
                                          {4, "A4 C4 04 B4"},  {5, "8: 5 9: 5 C5"}};
    for (const auto &[index, names] : moves) {
        told.clear();
        stack->setIndex(index);
        QCOMPARE(told.join(' '), names);
    }
    KcHost::setEntityModifiedHandler({});

    // A handler may change the drawing, and undo that again; or close it.
    KcHost::setLayerModifiedHandler([&](const QString &) {
        KcHost::setLayerModifiedHandler({});
        change("add D;add E");
        stack->undo();
    });
    stack->undo();
    QCOMPARE(names(), "0,C,B,D");
    QCOMPARE(stack->index(), 5);
    QCOMPARE(stack->redoText(), "Add layer");
    told.clear();
    KcHost::setLayerModifiedHandler([&](const QString &name) {
        const KcHost::UndoGroup group(*m_drawing, "Group");
        told += name;
        m_drawing.reset();
    });
    stack->setIndex(2);
    QCOMPARE(told, QStringList("D"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!stack);
}

QTEST_GUILESS_MAIN(TestEmbeddedHost)
#include "tst_embeddedhost.moc"
