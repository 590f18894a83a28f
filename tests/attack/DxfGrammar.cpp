// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfGrammar.h"

#include "host/drawing/TextCodec.h"

#include <QDir>
#include <QGuiApplication>

#include <cstring>
#include <ctime>
#include <sanitizer/allocator_interface.h>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t most);

namespace Attack {

namespace {

// Groups are written as "code value|". A "?" before a code leaves the group out now and then, "@"
// stands for what all entities begin with, "*" for an entity, and "$" with a letter for a value: see Writer::value().

constexpr const char *kAnyEntity[] = {
        "0 LINE|102 {ACAD_REACTORS|330 $H|8 $L|102 }|@|100 AcDbLine|10 $C|20 $C|?30 $C|11 $C|21 "
        "$C|?31 $C|?210 $C|?220 $C|?230 1|",
        "0 POINT|@|100 AcDbPoint|10 $C|20 $C|30 $C|",
        "0 CIRCLE|@|100 AcDbCircle|10 $C|20 $C|?30 $C|40 $C|?210 1|?220 $C|?230 -1|",
        "0 ARC|@|100 AcDbCircle|10 $C|20 $C|40 $C|100 AcDbArc|50 $A|51 $A|",
        "0 ELLIPSE|@|100 AcDbEllipse|10 $C|20 $C|11 $C|21 $C|31 $C|40 0.$I|41 $I|42 $I|",
        "0 SOLID|@|100 AcDbTrace|10 $C|20 $C|11 $C|21 $C|12 $C|22 $C|13 $C|23 $C|",
        "0 TRACE|@|100 AcDbTrace|10 0|20 0|11 $C|21 0|12 0|22 $C|13 $C|23 $C|?39 $C|",
        "0 3DFACE|@|100 AcDbFace|10 $C|20 $C|30 $C|11 $C|21 $C|31 $C|12 $C|22 $C|32 $C|13 $C|23 $C|"
        "33 $C|?70 $I|",
        "0 RAY|@|100 AcDbRay|10 $C|20 $C|30 $C|11 1|21 $C|31 0|",
        "0 XLINE|@|100 AcDbXline|10 $C|20 $C|30 $C|11 $C|21 1|31 $C|",
        "0 TEXT|@|100 AcDbText|10 $C|20 $C|40 $I|1 $T|?50 $A|?41 $I|?72 $I|?11 $C|?21 $C|?73 $I|",
        "0 MTEXT|@|100 AcDbMText|10 $C|20 $C|40 $I|?41 $C|71 $I|?3 $T|1 $T|?50 $A|?44 $I|",
        "0 LWPOLYLINE|@|100 AcDbPolyline|90 3|70 $I|?38 $C|10 $C|20 $C|?42 $C|10 $C|20 $C|?42 1|"
        "10 $C|20 $C|?42 -0.5|",
        "0 POLYLINE|@|66 1|10 0|20 0|30 $C|70 $F|?71 2|?72 2|0 VERTEX|@|10 $C|20 $C|30 $C|?42 $C|"
        "0 VERTEX|@|10 $C|20 $C|30 $C|0 VERTEX|@|10 $C|20 $C|30 $C|?42 1|0 SEQEND|@|",
        "0 POLYLINE|@|66 1|70 64|0 VERTEX|@|10 0|20 $C|30 $C|70 192|0 VERTEX|@|10 $C|20 0|30 $C|"
        "70 192|0 VERTEX|@|10 $C|20 $C|30 0|70 192|0 VERTEX|@|70 128|71 1|72 -2|73 3|0 SEQEND|8 0|",
        "0 POLYLINE|@|66 1|70 16|71 2|72 2|0 VERTEX|@|10 $C|20 0|30 $C|70 64|0 VERTEX|@|10 9|20 $C|"
        "70 64|0 VERTEX|@|10 $C|20 9|70 64|0 VERTEX|@|10 $C|20 9|70 64|0 SEQEND|@|",
        "0 SPLINE|@|100 AcDbSpline|70 $I|71 2|72 6|73 3|74 0|40 0|40 0|40 0|40 1|40 1|40 1|"
        "10 $C|20 $C|30 $C|?41 1|10 $C|20 $C|30 $C|10 $C|20 $C|30 0|",
        "0 SPLINE|@|70 0|71 3|72 0|73 0|74 3|11 $C|21 $C|31 0|11 $C|21 $C|31 0|11 $C|21 $C|31 $C|",
        "0 HATCH|@|100 AcDbHatch|10 0|20 0|30 $C|2 ANSI31|70 $B|71 0|91 1|92 3|72 1|73 1|93 3|"
        "10 $C|20 $C|?42 $C|10 $C|20 $C|10 $C|20 $C|97 0|75 $I|76 1|52 0|41 1|77 0|78 1|53 $A|"
        "43 $C|44 $C|45 $C|46 $I|79 2|49 $C|49 -1|98 0|",
        "0 HATCH|@|10 0|20 0|30 0|2 X|70 $B|71 0|91 1|92 1|93 4|72 1|10 $C|20 0|11 $C|21 9|72 2|"
        "10 $C|20 9|40 $C|50 $A|51 $A|73 $B|72 3|10 $C|20 $C|11 $C|21 1|40 0.5|50 0|51 $A|73 1|"
        "72 4|94 2|73 0|74 0|95 6|96 3|40 0|40 0|40 0|40 1|40 1|40 1|10 0|20 0|10 $C|20 $C|10 9|"
        "20 0|97 0|75 1|76 1|52 0|41 1|77 0|78 1|53 45|43 0|44 0|45 $I|46 $C|79 0|98 0|",
        "0 LEADER|@|100 AcDbLeader|3 Style|71 1|72 $B|73 3|76 3|10 $C|20 $C|30 0|10 $C|20 $C|30 0|"
        "10 $C|20 $C|30 $C|?1001 ACAD|?1000 DSTYLE|?1070 41|?1040 $C|",
        "0 INSERT|@|100 AcDbBlockReference|?66 1|2 Part|10 $C|20 $C|?30 $C|?41 $C|?42 $C|?43 $C|"
        "?50 $A|?70 $I|?71 $I|?44 $C|?45 $C|?210 0|?220 $C|?230 $C|0 ATTRIB|@|10 $C|20 $C|40 1|"
        "1 $T|2 TAG|70 $B|0 SEQEND|@|",
        "0 INSERT|@|100 AcDbBlockReference|2 *D1|10 $C|20 $C|?70 40|?71 300|?44 $C|?45 $C|",
        "0 DIMENSION|@|100 AcDbDimension|2 *D1|10 $C|20 $C|70 $I|13 $C|23 $C|14 $C|24 $C|",
        "0 VIEWPORT|@|67 1|100 AcDbViewport|10 0|20 0|40 9|41 9|68 $I|69 $I|?331 $H|?331 $H|?341 "
        "$H|"
        "1001 ACAD|1000 MVIEW|1002 {|1003 $L|1003 $L|1002 }|",
        "0 IMAGE|@|100 AcDbRasterImage|10 $C|20 $C|62 3|340 $H|",
        "0 PROXY|@|90 1|8 $L|310 00FF|",
        "0 ATTDEF|@|100 AcDbText|10 $C|20 $C|40 1|1 $T|2 TAG|3 $T|70 $B|"};
constexpr char kCommon[] = "?5 $H|?330 $H|100 AcDbEntity|?67 $B|"
                           "8 $L|?6 $Y|?62 $K|?420 $R|?430 $T|?370 $W|?48 0.$I|?60 $B|";
constexpr char kLayer[] =
        "0 LAYER|5 $H|102 {ACAD_XDICTIONARY|360 $H|102 }|330 2|100 AcDbSymbolTableRecord|"
        "100 AcDbLayerTableRecord|2 $L|70 $F|62 $K|6 $Y|?290 $B|?370 $W|?420 $R|?430 $T|?390 $H|"
        "?999 $T|?1001 AcAecLayerStandard|?1000 |?1000 $T|?1001 OTHER|?1000 $T|?1071 $I|";
constexpr char kHeader[] =
        "|?9 $LTSCALE|40 $I|9 $CLAYER|8 $L|?9 $HANDSEED|5 FFFF|9 $TILEMODE|70 $B|"
        "9 $PSTYLEMODE|290 $B|0 ENDSEC|0 SECTION|2 TABLES|";
constexpr const char *kTables[] = {
        "0 TABLE|2 LTYPE|0 LTYPE|2 Continuous|0 LTYPE|5 $H|2 Dash|49 $I|49 -1|?49 0|0 ENDTAB|",
        "0 TABLE|2 DIMSTYLE|70 1|0 DIMSTYLE|105 $H|2 Style|40 $I|41 $I|0 ENDTAB|",
        "0 TABLE|2 APPID|5 9|70 1|0 APPID|5 $H|2 ACAD|70 0|0 ENDTAB|", ""};
constexpr char kLayers[] = "0 TABLE|2 LAYER|?5 2|?100 AcDbSymbolTable|?70 3|";
constexpr char kBlocks[] =
        "0 ENDTAB|0 ENDSEC|0 SECTION|2 BLOCKS|0 BLOCK|5 $H|8 $L|2 Part|70 0|10 $C|20 $C|?*|*|"
        "0 ENDBLK|5 $H|8 $L|0 BLOCK|8 0|2 *D1|70 1|10 0|20 0|?*|0 ENDBLK|8 $L|0 ENDSEC|0 SECTION|"
        "2 ENTITIES|";
constexpr char kEntities[] = "0 ENDTAB|0 ENDSEC|0 SECTION|2 ENTITIES|";
constexpr char kObjects[] =
        "0 ENDSEC|0 SECTION|2 OBJECTS|0 DICTIONARY|5 C|?3 ACAD_GROUP|?350 D|?3 ACAD_PLOTSTYLENAME|"
        "?350 E|0 DICTIONARY|5 D|330 C|3 $T|350 F|0 ACDBDICTIONARYWDFLT|5 E|330 C|3 Normal|350 $H|"
        "0 GROUP|5 F|330 D|340 $H|340 $H|0 DICTIONARY|5 $H|330 $H|3 $T|360 $H|0 XRECORD|5 $H|330 "
        "$H|"
        "8 $L|1 $T|0 LAYOUT|5 $H|1 $T|0 ENDSEC|0 EOF|";
constexpr const char *kVersions[] = {"AC1009", "AC1012", "AC1014", "AC1015", "AC1018",
                                     "AC1021", "AC1024", "AC1027", "AC1032"};
constexpr const char *kPages[] = {"ANSI_1252", "ANSI_1251", "ANSI_932", "ANSI_936", "dos850"};
constexpr const char *kExtremes[] = {
        "0",      "-0",     "1",          "-1",         "1e-320",      "1e-9",  "1e9",
        "-1e12",  "9.9e11", "1e15",       "1e100",      "-1e308",      "1e308", "nan",
        "inf",    "-inf",   "2147483647", "32767",      "65536",       "256",   "-32768",
        "-32769", "1e",     "x",          "2147483648", "-2147483648", "",      "FFFFFFFFFFFFFFFF"};

/// Writes groups in one of the layouts that files have.
struct Writer
{
    Choices choices;
    int version = choices.below(int(std::size(kVersions)));
    int width = choices.below(3) * 3;
    QByteArray end = choices.below(3) == 0 ? "\r\n" : "\n";
    Embedded::TextCodec codec = {};
    int handle = 0x20;
    QByteArray bytes = {};

    QByteArray run()
    {
        const char *page = choices.of(kPages);
        codec.setCodePage(page);
        if (version >= 5)
            codec.setUtf8();
        add(QByteArray("0 SECTION|2 HEADER|9 $ACADVER|1 ") + kVersions[version]
            + "|9 $DWGCODEPAGE|3 " + page + kHeader);
        add(choices.of(kTables));
        add(choices.of(kTables));
        add(kLayers);
        for (int layer = choices.below(3); layer >= 0; --layer)
            add(kLayer, 4);
        add(choices.below(2) == 0 ? kBlocks : kEntities);
        for (int entity = choices.below(4); entity > 0; --entity)
            add("*");
        add(choices.below(3) == 0 ? "0 ENDSEC|0 EOF|" : kObjects);
        return bytes;
    }

    /// @param chance of a group with a "?" to be there, one in so many
    void add(const QByteArray &groups, int chance = 2)
    {
        const QList<QByteArray> texts = groups.split('|');
        for (const QByteArray &group : texts) {
            const bool isOptional = group.startsWith('?');
            const QByteArray what = group.mid(isOptional ? 1 : 0);
            if (what.isEmpty() || (isOptional && choices.below(chance) != 0))
                continue;
            if (what == "@")
                add(kCommon, chance + 1);
            else if (what == "*")
                add(choices.of(kAnyEntity), 4);
            else
                addGroup(what);
        }
    }

    /// Leaves groups out that files of that version have not.
    void addGroup(const QByteArray &group)
    {
        const int space = group.indexOf(' ');
        const int code = group.left(space).toInt();
        QByteArray text = group.mid(space + 1);
        const int mark = code == 9 ? -1 : text.indexOf('$');
        if (mark >= 0)
            text.replace(mark, 2, value(text.at(mark + 1)));
        const bool isSince13 = code == 100 || code == 102 || code == 330 || code == 360;
        const bool isSince2000 = code == 290 || code == 370 || code == 390;
        if (version >= (code == 420 || code == 430 ? 4 : isSince2000 ? 3 : isSince13 ? 1 : 0))
            bytes += QByteArray::number(code).rightJustified(width) + end + text + end;
    }

    /// What the letter stands for.
    QByteArray value(char kind)
    {
        const auto below = [this](int end) { return QByteArray::number(choices.below(end)); };
        switch (kind) {
        case 'C': // a coordinate
            return choices.below(40) == 0 ? QByteArray(choices.of(kExtremes))
                                          : QByteArray::number(choices.below(400) / 8.0 - 20);
        case 'A': // an angle
            return QByteArray::number(choices.below(25) * 15);
        case 'F': // flags
            return below(choices.below(4) == 0 ? 256 : 8);
        case 'H': // a handle, its own or another's
            return QByteArray::number(choices.below(3) > 0 ? handle++ : choices.below(64), 16);
        case 'K': // a colour
            return QByteArray::number(choices.below(270) - 7);
        case 'L':
            return codec.encode(QString::fromUtf8(choices.of(kNames)));
        case 'R': // a true colour
            return below(0x1000000);
        case 'T':
            return codec.encode(QString::fromUtf8(choices.of(kTexts)));
        case 'W':
            return choices.of({"-3", "-1", "0", "25", "30", "211", "12"});
        case 'Y':
            return choices.of({"Continuous", "DASH", "ByLayer", "BYBLOCK", "None"});
        default:
            return below(kind == 'B' ? 2 : 10);
        }
    }
};

using Groups = QVector<std::pair<QByteArray, QByteArray>>;

Groups groupsOf(const QByteArray &drawing)
{
    const QList<QByteArray> lines = drawing.split('\n');
    Groups groups;
    for (int line = 0; line + 1 < lines.size(); line += 2)
        groups.append({lines.at(line), lines.at(line + 1)});
    return groups;
}

void mutateBytes(QByteArray &bytes, int most)
{
    const int size = bytes.size();
    bytes.resize(most);
    bytes.resize(int(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t *>(bytes.data()),
                                      std::size_t(size), std::size_t(most))));
}

void mutateValue(std::pair<QByteArray, QByteArray> &group, const Groups &all, Choices &choices)
{
    const QByteArray end = group.second.endsWith('\r') ? "\r" : "";
    QVector<QByteArray> others;
    switch (choices.below(6)) {
    case 0:
        group.second = choices.of(kExtremes) + end;
        break;
    case 1:
        group.second = choices.of(kNames) + end;
        break;
    case 2:
        group.second = choices.of(all).second;
        break;
    case 3:
        mutateBytes(group.first, group.first.size() + 2);
        break;
    case 4:
        mutateBytes(group.second, group.second.size() + 4);
        break;
    default:
        for (const auto &[code, value] : all) {
            if (code == group.first)
                others += value;
        }
        group.second = choices.of(others);
    }
}

/// A group, a record or a section goes, comes twice or moves, another drawing's come, or values change.
QByteArray mutated(const QByteArray &drawing, Choices &choices)
{
    Groups groups = groupsOf(drawing);
    const auto other = [&choices] {
        return groupsOf(randomDrawing(std::uint32_t(choices.below(1 << 20))));
    };
    groups = groups.isEmpty() ? other() : groups;
    const auto part = [&choices](const Groups &all) {
        const int reach = choices.below(8);
        const auto begins = [&](int at) {
            return all.at(at).first.trimmed() == "0"
                   && (reach > 0 || all.at(at).second.trimmed() == "SECTION");
        };
        int from = choices.below(all.size());
        while (reach < 4 && from > 0 && !begins(from))
            --from;
        int to = from + 1;
        while (reach < 4 && to < all.size() && !begins(to))
            ++to;
        return std::make_pair(from, to - from);
    };
    for (int count = choices.below(4); count >= 0; --count) {
        const auto [from, size] = part(groups);
        const int place = choices.below(groups.size());
        const auto insert = [&](const Groups &added) {
            groups = groups.mid(0, place) + added + groups.mid(place);
        };
        switch (choices.below(12)) {
        case 0:
            if (size < groups.size())
                groups.remove(from, size);
            break;
        case 1:
            insert(groups.mid(from, size));
            break;
        case 2:
            std::swap(groups[from], groups[place]);
            break;
        case 3:
        case 4: {
            const Groups added = other();
            const auto [begin, length] = part(added);
            insert(added.mid(begin, length));
            break;
        }
        default:
            mutateValue(groups[from + choices.below(size)], groups, choices);
        }
    }
    QByteArray bytes;
    for (const auto &[code, value] : std::as_const(groups))
        bytes += code + '\n' + value + '\n';
    return bytes;
}

std::size_t allocated = 0;

} // namespace

QByteArray randomDrawing(std::uint32_t seed)
{
    return Writer{Choices(seed)}.run();
}

Input Input::from(const std::uint8_t *data, std::size_t size)
{
    const QByteArray all(reinterpret_cast<const char *>(data), int(size));
    const int script = all.isEmpty() ? 0 : std::uint8_t(all.at(0));
    return {all.mid(1, script), all.mid(1 + script)};
}

Effort::Effort(std::size_t size)
    : m_size(double(size))
    , m_begin(std::clock())
    , m_allocated(allocated)
{
}

Effort::~Effort()
{
    const double seconds = double(std::clock() - m_begin) / CLOCKS_PER_SEC;
    require(double(allocated - m_allocated) < 3e7 + 1e4 * m_size, "memory goes with the size");
    require(seconds < 2 + 1e-3 * m_size, "time goes with the size");
}

} // namespace Attack

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t most, unsigned seed)
{
    Attack::Choices choices(seed);
    Attack::Input input = Attack::Input::from(data, size);
    const int way = choices.below(8);
    if (way < 3)
        Attack::mutateBytes(input.script, qMin(input.script.size() + 8, 255));
    if (way > 1)
        input.drawing = Attack::mutated(input.drawing, choices);
    const QByteArray result = char(input.script.size()) + input.script + input.drawing;
    if (way == 0 || std::size_t(result.size()) > most)
        return LLVMFuzzerMutate(data, size, most);
    std::memcpy(data, result.constData(), std::size_t(result.size()));
    return std::size_t(result.size());
}

extern "C" const char *__asan_default_options()
{
    return "malloc_context_size=3:quarantine_size_mb=16:allocator_may_return_null=1";
}

/// With --corpus FOLDER, first inputs are written there, and that is all.
extern "C" int LLVMFuzzerInitialize(int *count, char ***arguments)
{
    const bool isAsked = *count > 2 && std::strcmp((*arguments)[1], "--corpus") == 0;
    for (std::uint32_t seed = 0; isAsked && seed < 300; ++seed) {
        Attack::Choices choices(seed);
        QByteArray script;
        while (script.size() < 12)
            script += char(choices.below(256));
        QFile file(QDir((*arguments)[2]).filePath(QString::number(seed)));
        if (!file.open(QIODevice::WriteOnly)
            || file.write(char(script.size()) + script + Attack::randomDrawing(seed)) < 0)
            std::exit(1);
    }
    if (isAsked)
        std::exit(0);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static auto *const application = new QGuiApplication(*count, *arguments); // texts need fonts
    Q_UNUSED(application)
    __sanitizer_install_malloc_and_free_hooks(
            [](const volatile void *, std::size_t size) { Attack::allocated += size; },
            [](const volatile void *) {});
    return 0;
}
