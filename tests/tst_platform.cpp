#include <OvCustomControl/DisplaySize.h>
#include <OvCustomControl/OvKernel32.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <functional>
#include <set>
#include <thread>

#include <iconv.h>

using K = OvKernel32;

namespace {

constexpr K::Dword readWrite = K::GenericRead | K::GenericWrite;

/// The last error of @p call, which has to fail with @p failure.
template <typename Result, typename Call>
K::Dword errorOf(Result failure, Call call)
{
    K::setLastError(12345);
    const auto result = call();
    return result == static_cast<decltype(result)>(failure) ? K::getLastError() : ~0U;
}

void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray readBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no file>");
}

/// What @p script prints with @p argument, as JSON.
QJsonObject python(const char *script, const QString &argument)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("/usr/bin/python3"), {"-c", QLatin1String(script), argument});
    process.waitForFinished();
    return QJsonDocument::fromJson(process.readAllStandardOutput()).object();
}

/// One conversion by iconv; nothing where it refuses.
QByteArray iconvOf(iconv_t converter, QByteArray bytes)
{
    QByteArray result(16, '\0');
    char *in = bytes.data();
    char *out = result.data();
    auto inLeft = static_cast<std::size_t>(bytes.size());
    auto outLeft = static_cast<std::size_t>(result.size());
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    const bool isDone = iconv(converter, &in, &inLeft, &out, &outLeft) != std::size_t(-1)
                        && iconv(converter, nullptr, nullptr, &out, &outLeft) != std::size_t(-1);
    return isDone ? result.left(static_cast<int>(out - result.data())) : QByteArray();
}

/// Where this layer and iconv differ; every row has to be used.
struct Exception
{
    K::Dword page; ///< 0 for all
    unsigned first, last;
    enum Kind { IconvHasNone, LayerHasNone, OtherCode } kind;
    const char *reason;
};
constexpr Exception exceptions[] = {
        {0, 0x80, 0x9f, Exception::IconvHasNone,
         "bytes without a character are the control of that number in Windows"},
        {1253, 0xaa, 0xaa, Exception::IconvHasNone, "the same byte as in Latin-1"},
        {0, 0xe000, 0xf8ff, Exception::IconvHasNone,
         "Windows maps the user-defined codes to the private use area"},
        {1255, 0x05d0, 0xfb4e, Exception::LayerHasNone, "iconv takes points off letters"},
        {1258, 0x00c0, 0x2fff, Exception::LayerHasNone, "iconv takes accents off letters"},
        {932, 0x00a2, 0x00ac, Exception::LayerHasNone, "iconv's best fit is no exact character"},
        {932, 0x2014, 0x203e, Exception::LayerHasNone, "best fit"},
        {932, 0x2212, 0x301c, Exception::LayerHasNone, "best fit"},
        {950, 0x2550, 0x256a, Exception::OtherCode, "four of several codes for one character"}};

bool isExcused(K::Dword page, wchar_t character, const QByteArray &ours, const QByteArray &theirs,
               std::set<const Exception *> *used)
{
    for (const Exception &each : exceptions) {
        const auto code = static_cast<unsigned>(character);
        if ((each.page && each.page != page) || code < each.first || code > each.last)
            continue;
        const Exception::Kind kind = theirs.isEmpty() ? Exception::IconvHasNone
                                     : ours.isEmpty() ? Exception::LayerHasNone
                                                      : Exception::OtherCode;
        if (kind == each.kind) {
            used->insert(&each);
            return true;
        }
    }
    return false;
}

QByteArray wideBytes(wchar_t character)
{
    return {reinterpret_cast<const char *>(&character), sizeof(character)};
}

struct IconvPair
{
    explicit IconvPair(const QByteArray &name)
        : decoder(iconv_open("WCHAR_T", name.constData()))
        , encoder(iconv_open(name.constData(), "WCHAR_T"))
    {
    }
    Q_DISABLE_COPY(IconvPair)
    ~IconvPair()
    {
        iconv_close(decoder);
        iconv_close(encoder);
    }
    const iconv_t decoder, encoder;
};

} // namespace

class tst_Platform : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void errors();
    void modules();
    void dispositions();
    void filePositions();
    void copyMoveDelete();
    void pathMapping();
    void findFiles();
    void badHandlesAndPaths();
    void profileMatchesPython();
    void profileKeepsTheFile_data();
    void profileKeepsTheFile();
    void profileBuffers();
    void codePagesMatchIconv();
    void utf8();
    void conversionFailures();
    void locales();
    void threads();
    void timeAndEnvironment();
    void caseAndOrder();
    void numbers();
    void secureCopies();
    void splitAndMake();
    void unsupported();
    void displaySizes();

private:
    std::wstring at(const char *name) const
    {
        return m_dir->filePath(QString::fromUtf8(name)).toStdWString();
    }
    K::Handle open(const char *name, K::Dword access = readWrite,
                   K::Dword disposition = K::OpenAlways) const
    {
        return K::createFile(at(name).c_str(), access, 0, nullptr, disposition, 0, 0);
    }
    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_Platform::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void tst_Platform::errors()
{
    wchar_t text[64] = {};
    const auto format = [&text](K::Dword flags, K::Dword error, K::Dword size) {
        return K::formatMessage(flags, nullptr, error, 0, text, size, nullptr);
    };
    text[28] = L'#';
    QCOMPARE(errorOf(0, [&] { return format(0x1000, 2, 28); }), 122U);
    QCOMPARE(text[28], L'#');
    QCOMPARE(format(0x1200, 2, 29), 28U);
    QCOMPARE(QString::fromWCharArray(text), QStringLiteral("No such file or directory.\r\n"));
    QCOMPARE(errorOf(0, [&] { return format(0x1000, 99999, 64); }), 317U);
    QCOMPARE(errorOf(0, [&] { return format(0x400, 2, 64); }), 87U);
    QCOMPARE(errorOf(0, [&] { return format(0x1100, 2, 64); }), 50U);
    K::setLastError(7);
    std::thread([] { K::setLastError(8); }).join();
    QCOMPARE(K::getLastError(), 7U);
}

void tst_Platform::modules()
{
    QString name = QStringLiteral("C:") + QLibraryInfo::location(QLibraryInfo::LibrariesPath)
                   + QStringLiteral("/QT5core.DLL");
    name.replace('/', '\\');
    const K::Handle module = K::loadLibrary(name.toStdWString().c_str());
    QVERIFY(module);
    QCOMPARE(K::loadLibrary(L"libQt5Core.so.5"), module);
    const auto version = reinterpret_cast<const char *(*)()>(K::getProcAddress(module, "qVersion"));
    QVERIFY(version);
    QCOMPARE(version(), qVersion());
    QCOMPARE(errorOf(nullptr, [&] { return K::getProcAddress(module, "no such"); }), 127U);

    wchar_t path[300];
    QVERIFY(K::getModuleFileName(module, path, 300) > 20);
    QVERIFY(QFile::exists(QString::fromWCharArray(path)));
    K::getModuleFileName(0, path, 300);
    QCOMPARE(QString::fromWCharArray(path), QCoreApplication::applicationFilePath());
    path[4] = L'#';
    QCOMPARE(errorOf(4U, [&] { return K::getModuleFileName(0, path, 4); }), 122U);
    QCOMPARE(path[3], L'\0');
    QCOMPARE(path[4], L'#');

    QVERIFY(K::freeLibrary(module));
    QVERIFY(K::getProcAddress(module, "qVersion"));
    QVERIFY(K::freeLibrary(module));
    QCOMPARE(errorOf(0, [&] { return K::freeLibrary(module); }), 6U);
    QCOMPARE(errorOf(0, [&] { return K::loadLibrary(L"no-such.dll"); }), 126U);
}

void tst_Platform::dispositions()
{
    const std::tuple<K::Dword, K::Dword, K::Dword, int> rows[] = {
            // disposition, errors for a file that is missing and for one that is there, its size
            {0, 87, 87, 3},
            {K::CreateNew, 0, 80, 3},
            {K::CreateAlways, 0, 183, 0},
            {6, 87, 87, 3},
            {K::OpenExisting, 2, 0, 3},
            {K::OpenAlways, 0, 183, 3},
            {K::TruncateExisting, 2, 0, 0}};
    for (const auto &[disposition, errorOfNew, errorOfOld, size] : rows) {
        writeBytes(m_dir->filePath(QStringLiteral("old")), "abc");
        for (const char *name : {"new", "old"}) {
            const K::Dword expected = *name == 'n' ? errorOfNew : errorOfOld;
            const K::Handle file = open(name, readWrite, disposition);
            QCOMPARE(K::getLastError(), expected);
            QCOMPARE(file != K::invalidHandle, expected == 0 || expected == 183);
            QCOMPARE(K::closeHandle(file) != 0, file != K::invalidHandle);
        }
        QCOMPARE(readBytes(m_dir->filePath(QStringLiteral("old"))).size(), size);
        QFile::remove(m_dir->filePath(QStringLiteral("new")));
    }
}

void tst_Platform::filePositions()
{
    const K::Handle file = open("file");
    K::Dword count = 99, sizeHigh = 0;
    char bytes[8] = {};
    QVERIFY(K::writeFile(file, "0123456789", 10, &count, nullptr));
    QCOMPARE(K::setFilePointer(file, -4, nullptr, K::FileEnd), 6U);
    QVERIFY(K::readFile(file, bytes, 8, &count, nullptr));
    QCOMPARE(QByteArray(bytes, int(count)), QByteArray("6789"));

    QVERIFY(QFile::resize(m_dir->filePath(QStringLiteral("file")), (INT64_C(1) << 32) + 5));
    QCOMPARE(K::getFileSize(file, &sizeHigh), 5U);
    QCOMPARE(sizeHigh, 1U);
    K::Long high = 1;
    QCOMPARE(K::setFilePointer(file, 5, &high, K::FileBegin), 5U);
    const std::tuple<K::Long, K::Dword, K::Dword> bad[] = {{-9, 0, 131}, {1, 1, 87}, {1, 7, 87}};
    for (const auto &[distance, method, error] : bad) {
        const K::Long move = distance;
        const K::Dword from = method;
        QCOMPARE(errorOf(~0U, [=] { return K::setFilePointer(file, move, nullptr, from); }), error);
    }
    high = 0;
    QCOMPARE(K::setFilePointer(file, 0, &high, K::FileCurrent), 5U);
    QCOMPARE(high, 1);
    QVERIFY(K::flushFileBuffers(file));
    QCOMPARE(errorOf(0, [&] { return K::readFile(file, nullptr, 1, &count, nullptr); }), 87U);
    QCOMPARE(errorOf(0, [&] { return K::readFile(file, bytes, 1, nullptr, nullptr); }), 87U);
    QCOMPARE(errorOf(0, [&] { return K::writeFile(file, bytes, 1, &count, bytes); }), 50U);
    QVERIFY(K::closeHandle(file));

    const K::Handle reader = open("file", K::GenericRead);
    QCOMPARE(errorOf(0, [&] { return K::writeFile(reader, "x", 1, &count, nullptr); }), 5U);
    QVERIFY(K::closeHandle(reader));
}

void tst_Platform::copyMoveDelete()
{
    writeBytes(m_dir->filePath(QStringLiteral("a")), "first");
    writeBytes(m_dir->filePath(QStringLiteral("b")), "second");
    const std::wstring a = at("a"), b = at("b"), folder = at("Folder");
    QCOMPARE(errorOf(0, [&] { return K::copyFile(a.c_str(), b.c_str(), true); }), 80U);
    QCOMPARE(readBytes(m_dir->filePath(QStringLiteral("b"))), QByteArray("second"));
    QVERIFY(K::copyFile(a.c_str(), b.c_str(), false));
    QCOMPARE(readBytes(m_dir->filePath(QStringLiteral("b"))), QByteArray("first"));
    QCOMPARE(errorOf(0, [&] { return K::moveFile(a.c_str(), b.c_str()); }), 183U);
    QVERIFY(K::deleteFile(a.c_str()) && K::moveFile(b.c_str(), at("B").c_str()));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), QStringList("B"));

    QVERIFY(K::setFileAttributes(b.c_str(), K::FileAttributeReadOnly));
    QCOMPARE(K::getFileAttributes(b.c_str()), 1U);
    QCOMPARE(errorOf(0, [&] { return K::deleteFile(b.c_str()); }), 5U);
    QCOMPARE(errorOf(-1, [&] { return open("b", K::GenericWrite); }), 5U);
    QCOMPARE(errorOf(0, [&] { return K::setFileAttributes(b.c_str(), 2); }), 50U);
    QVERIFY(K::setFileAttributes(b.c_str(), K::FileAttributeNormal));
    QVERIFY(K::deleteFile(b.c_str()));
    QCOMPARE(errorOf(0, [&] { return K::deleteFile(b.c_str()); }), 2U);

    QVERIFY(K::createDirectory(folder.c_str(), nullptr));
    QCOMPARE(errorOf(0, [&] { return K::createDirectory(folder.c_str(), nullptr); }), 183U);
    QCOMPARE(K::getFileAttributes(folder.c_str()), 0x10U);
    QCOMPARE(errorOf(0, [&] { return K::deleteFile(folder.c_str()); }), 5U);
    writeBytes(m_dir->filePath(QStringLiteral("Folder/x")), {});
    QCOMPARE(errorOf(0, [&] { return K::removeDirectory(folder.c_str()); }), 145U);
    QVERIFY(K::deleteFile(at("folder\\X").c_str()) && K::removeDirectory(folder.c_str()));
    QCOMPARE(errorOf(0, [&] { return K::createDirectory(at("no/x").c_str(), nullptr); }), 3U);
}

void tst_Platform::pathMapping()
{
    QVERIFY(QDir(m_dir->path()).mkdir(QString::fromUtf8("Pläne")));
    writeBytes(m_dir->filePath(QString::fromUtf8("Pläne/Haus.DWG")), "x");
    const QString plain = m_dir->path();
    const auto exists = [](const QString &path) {
        return K::getFileAttributes(path.toStdWString().c_str()) != K::invalidDword;
    };
    QVERIFY(exists(plain + QString::fromUtf8("/PLÄNE/haus.dwg")));
    QVERIFY(exists("c:" + QString(plain).replace('/', '\\')
                   + QString::fromUtf8("\\pläne\\HAUS.dwg")));
    QVERIFY(exists(QStringLiteral(R"(\\?\C:)") + plain));
    qputenv("OVCC_DRIVE_P", plain.toUtf8());
    QVERIFY(exists(QString::fromUtf8("P:\\pläne")));
    qunsetenv("OVCC_DRIVE_P");
    QVERIFY(!exists(QString::fromUtf8("P:\\pläne")));
    QCOMPARE(K::getLastError(), 3U);

    wchar_t before[300], buffer[300], *part = nullptr;
    QVERIFY(K::getCurrentDirectory(300, before));
    QVERIFY(K::setCurrentDirectory(at("PLÄNE").c_str()));
    const QString here = QDir(plain).canonicalPath() + QString::fromUtf8("/Pläne");
    QCOMPARE(K::getCurrentDirectory(300, buffer), K::Dword(here.size()));
    QCOMPARE(QString::fromWCharArray(buffer), here);
    QCOMPARE(K::getFullPathName(L"C:x\\..\\y.txt", 300, buffer, &part), K::Dword(here.size() + 6));
    QCOMPARE(QString::fromWCharArray(buffer), here + "/y.txt");
    QCOMPARE(QString::fromWCharArray(part), QStringLiteral("y.txt"));
    QVERIFY(K::setCurrentDirectory(before));

    const K::Dword needed = K::getTempPath(0, nullptr);
    buffer[needed - 1] = L'#';
    QCOMPARE(K::getTempPath(needed - 1, buffer), needed);
    QCOMPARE(buffer[needed - 1], L'#');
    QCOMPARE(K::getTempPath(needed, buffer), needed - 1);
    QVERIFY(QString::fromWCharArray(buffer).endsWith('/'));
}

void tst_Platform::findFiles()
{
    for (const char *name : {"a.txt", "B.TXT", "ab.txt", "c[1].txt", "none", ".hidden"})
        writeBytes(m_dir->filePath(QLatin1String(name)), QByteArray(5, 'x'));
    const auto find = [this](const char *pattern) {
        K::FindData data;
        QStringList names;
        const K::Handle handle = K::findFirstFile(at(pattern).c_str(), &data);
        if (handle == K::invalidHandle)
            return QStringList(QString::number(K::getLastError()));
        do {
            names.append(QString::fromWCharArray(data.fileName));
            if (data.fileName[0] == L'a' && (data.fileSizeLow != 5 || data.fileAttributes != 0x80))
                names.append(QStringLiteral("wrong data"));
        } while (K::findNextFile(handle, &data));
        names.append(QString::number(K::getLastError()));
        return K::findClose(handle) ? names : QStringList();
    };
    QCOMPARE(find("*.txt"), (QStringList{"B.TXT", "a.txt", "ab.txt", "c[1].txt", "18"}));
    QCOMPARE(find("?.txt"), (QStringList{"B.TXT", "a.txt", "18"}));
    QCOMPARE(find("C[1]*"), (QStringList{"c[1].txt", "18"}));
    QCOMPARE(find("*.*").size(), 9);
    QCOMPARE(find("no*where"), QStringList("2"));
    QCOMPARE(find("no-folder/*"), QStringList("3"));

    K::FindData data;
    const K::Handle handle = K::findFirstFile(at("none").c_str(), &data);
    const std::uint64_t ticks =
            std::uint64_t(data.lastWriteTime.high) << 32 | data.lastWriteTime.low;
    const qint64 age = QDateTime::currentSecsSinceEpoch() - qint64(ticks / 10000000 - 11644473600);
    QVERIFY2(age >= -1 && age < 300, qPrintable(QString::number(age)));
    QCOMPARE(errorOf(0, [&] { return K::closeHandle(handle); }), 6U);
    QCOMPARE(errorOf(0, [&] { return K::findNextFile(handle, nullptr); }), 87U);
    QVERIFY(K::findClose(handle));
}

void tst_Platform::badHandlesAndPaths()
{
    const K::Handle closed = open("file");
    QVERIFY(K::closeHandle(closed));
    K::Dword count;
    K::FindData data;
    std::int64_t size;
    for (const K::Handle bad : {K::Handle(0), K::invalidHandle, closed, K::Handle(3)}) {
        const std::function<K::Bool()> calls[] = {
                [&] { return K::readFile(bad, &size, 1, &count, nullptr); },
                [&] { return K::writeFile(bad, &size, 1, &count, nullptr); },
                [&] { return K::flushFileBuffers(bad); },
                [&] { return K::closeHandle(bad); },
                [&] { return K::findNextFile(bad, &data); },
                [&] { return K::findClose(bad); },
                [&] { return K::freeLibrary(bad); }};
        for (const auto &call : calls)
            QCOMPARE(errorOf(0, call), 6U);
        QCOMPARE(errorOf(~0U, [&] { return K::getFileSize(bad, &count); }), 6U);
        QCOMPARE(errorOf(~0U, [&] { return K::setFilePointer(bad, 0, nullptr, 0); }), 6U);
    }

    const wchar_t surrogate[] = {wchar_t(0xd800), 0};
    const std::pair<const wchar_t *, K::Dword> paths[] = {
            {nullptr, 87}, {L"", 3}, {surrogate, 123}, {L"\\\\server\\share", 53}, {L"Q:\\x", 3}};
    for (const auto &[path, error] : paths) {
        const wchar_t *name = path;
        const std::function<K::Bool()> calls[] = {
                [&] { return K::copyFile(name, L"x", 1); },
                [&] { return K::copyFile(L"x", name, 1); },
                [&] { return K::moveFile(L"x", name); },
                [&] { return K::deleteFile(name); },
                [&] { return K::setFileAttributes(name, 0); },
                [&] { return K::createDirectory(name, nullptr); },
                [&] { return K::removeDirectory(name); },
                [&] { return K::setCurrentDirectory(name); },
                [&] { return K::Bool(K::getFullPathName(name, 0, nullptr, nullptr)); },
                [&] { return K::Bool(K::loadLibrary(name)); },
                [&] { return K::writePrivateProfileString(L"a", L"b", L"c", name); }};
        for (const auto &call : calls)
            QCOMPARE(errorOf(0, call), error);
        QCOMPARE(errorOf(-1, [&] { return K::createFile(name, 0, 0, nullptr, 3, 0, 0); }), error);
        QCOMPARE(errorOf(-1, [&] { return K::findFirstFile(name, &data); }), error);
        QCOMPARE(errorOf(~0U, [&] { return K::getFileAttributes(name); }), error);
    }
}

void tst_Platform::profileMatchesPython()
{
    const QString theirs = m_dir->filePath(QStringLiteral("theirs.ini"));
    const QString ours = m_dir->filePath(QStringLiteral("ours.ini"));
    const QJsonObject written = python(R"(
import configparser, json, random, sys
random.seed(5)
words = ['Wand', 'Tür 2', 'x=y', 'a;b', '文字', '', '%d', 'C:\\Pläne\\a.dwg', '-12', '😀']
data = {'Section %d' % s: {'Key%d' % k: random.choice(words) for k in range(20)} for s in range(20)}
ini = configparser.ConfigParser(interpolation=None); ini.optionxform = str; ini.read_dict(data)
ini.write(open(sys.argv[1], 'w', encoding='utf-8')); print(json.dumps(data)))",
                                       theirs);
    QCOMPARE(written.size(), 20);
    wchar_t buffer[100];
    for (auto section = written.begin(); section != written.end(); ++section) {
        const std::wstring name = section.key().toStdWString();
        const QJsonObject keys = section.value().toObject();
        for (auto key = keys.begin(); key != keys.end(); ++key) {
            const std::wstring keyName = key.key().toStdWString();
            const std::wstring value = key.value().toString().toStdWString();
            K::getPrivateProfileString(name.c_str(), keyName.c_str(), L"missing", buffer, 100,
                                       theirs.toStdWString().c_str());
            QCOMPARE(std::wstring(buffer), value);
            QVERIFY(K::writePrivateProfileString(name.c_str(), keyName.c_str(), value.c_str(),
                                                 ours.toStdWString().c_str()));
        }
    }
    QCOMPARE(python(R"(
import configparser, json, sys
ini = configparser.ConfigParser(interpolation=None); ini.optionxform = str
ini.read(sys.argv[1], encoding='utf-8'); print(json.dumps({s: dict(ini[s]) for s in ini.sections()})))",
                    ours),
             written);
}

void tst_Platform::profileKeepsTheFile_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after"); // [b] y=2 set, [A] x removed
    QTest::newRow("comments and order")
            << QByteArray("; top\r\n[a]\r\n;c\r\nX = 1\r\nz=3\r\n\r\n[B]\r\nY= 1\r\n[c]\r\n")
            << QByteArray("; top\r\n[a]\r\n;c\r\nz=3\r\n\r\n[B]\r\nY=2\r\n[c]\r\n");
    QTest::newRow("new key before the gap")
            << QByteArray("[b]\nq=1\n\n[a]\n") << QByteArray("[b]\nq=1\ny=2\n\n[a]\n");
    QTest::newRow("no line end") << QByteArray("[b]\nq=1") << QByteArray("[b]\nq=1\ny=2\n");
    QTest::newRow("Latin-1") << QByteArray("[\xe4]\n\x81=\xff\n[b]\ny=\xe9\n")
                             << QByteArray("[\xe4]\n\x81=\xff\n[b]\ny=2\n");
    QTest::newRow("UTF-8 with a mark")
            << QByteArray("\xef\xbb\xbf[b]\ny=1\n") << QByteArray("\xef\xbb\xbf[b]\ny=2\n");
    QTest::newRow("UTF-16") << QByteArray("\xff\xfe[\0b\0]\0\n\0y\0=\0\xe4\0\n\0", 18)
                            << QByteArray("\xff\xfe[\0b\0]\0\n\0y\0=\0"
                                          "2\0\n\0",
                                          18);
    QTest::newRow("empty") << QByteArray() << QByteArray("[b]\r\ny=2\r\n");
}

void tst_Platform::profileKeepsTheFile()
{
    QFETCH(QByteArray, before);
    const QString path = m_dir->filePath(QStringLiteral("keep.ini"));
    const std::wstring file = path.toStdWString();
    writeBytes(path, before);
    QVERIFY(K::writePrivateProfileString(L"b", L"y", L"2", file.c_str()));
    QVERIFY(K::writePrivateProfileString(L"A", L"x", nullptr, file.c_str()));
    QTEST(readBytes(path), "after");
    QCOMPARE(K::getPrivateProfileInt(L" B ", L"y", 7, file.c_str()), 2U);
    const QByteArray whole = readBytes(path);
    QCOMPARE(errorOf(0,
                     [&] {
                         return K::writePrivateProfileString(L"b", L"y", L"3\n[c]", file.c_str());
                     }),
             87U);
    QCOMPARE(readBytes(path), whole);
}

void tst_Platform::profileBuffers()
{
    const QString path = m_dir->filePath(QStringLiteral("file.ini"));
    const std::wstring file = path.toStdWString();
    writeBytes(path, "[one]\na= \" q \"\nbb=-12x\n;no=1\nplain\n[two]");
    const auto read = [&](const wchar_t *section, const wchar_t *key, K::Dword size) {
        std::wstring buffer(size + 1, L'#');
        const K::Dword count = K::getPrivateProfileString(section, key, L"dflt  ", buffer.data(),
                                                          size, file.c_str());
        buffer.resize(buffer.find_last_not_of(L'#') + 1);
        return QString::fromStdWString(buffer).replace(QChar(0), '|') + QString::number(count);
    };
    QCOMPARE(read(L"ONE", L"A", 9), QStringLiteral(" q |3"));
    QCOMPARE(read(L"one", L"a", 3), QStringLiteral(" q|2"));
    QCOMPARE(read(L"one", L"no", 9), QStringLiteral("dflt|4"));
    QCOMPARE(read(L"one", nullptr, 9), QStringLiteral("a|bb||5"));
    QCOMPARE(read(L"one", nullptr, 5), QStringLiteral("a|b||3"));
    QCOMPARE(read(nullptr, nullptr, 9), QStringLiteral("one|two||8"));
    QCOMPARE(read(nullptr, nullptr, 1), QStringLiteral("|0"));
    QCOMPARE(read(L"two", nullptr, 4), QStringLiteral("||0"));
    QCOMPARE(K::getPrivateProfileInt(L"one", L"bb", 7, file.c_str()), K::Dword(-12));
    QCOMPARE(K::getPrivateProfileInt(L"one", L"zz", -7, file.c_str()), K::Dword(-7));
    QVERIFY(K::writePrivateProfileSection(L"one", L"k=1\0l=2\0", file.c_str()));
    QCOMPARE(readBytes(path), QByteArray("[one]\nk=1\nl=2\n[two]"));
    QVERIFY(K::writePrivateProfileString(L"one", nullptr, nullptr, file.c_str()));
    QCOMPARE(readBytes(path), QByteArray("[two]"));
    QCOMPARE(errorOf(0, [&] { return K::getPrivateProfileSectionNames(nullptr, 9, file.c_str()); }),
             87U);
}

void tst_Platform::codePagesMatchIconv()
{
    std::set<const Exception *> used;
    for (const K::Dword page :
         {1250U, 1251U, 1252U, 1253U, 1254U, 1255U, 1256U, 1257U, 1258U, 932U, 936U, 949U, 950U}) {
        const IconvPair theirs("CP" + QByteArray::number(page));
        int equal = 0;
        const auto report = [page](const char *what, unsigned code) {
            return QStringLiteral("%1 %2 %3").arg(page).arg(what).arg(code, 4, 16).toUtf8();
        };
        for (unsigned code = 0; code < (page < 1250 ? 0xff00U : 0x100U); ++code) {
            if (code == 0x100)
                code = 0x8100; // the first of the lead bytes
            QByteArray bytes(1, char(code));
            if (code > 0xff)
                bytes.prepend(char(code >> 8));
            wchar_t wide[2] = {};
            const int size = K::multiByteToWideChar(page, K::MbErrInvalidChars, bytes.constData(),
                                                    bytes.size(), wide, 2);
            const QByteArray ours(reinterpret_cast<const char *>(wide),
                                  size * int(sizeof(wchar_t)));
            const QByteArray reference = iconvOf(theirs.decoder, bytes);
            equal += ours == reference;
            if (ours != reference && !isExcused(page, wide[0], ours, reference, &used))
                QFAIL(report("decodes", code));
        }
        QVERIFY2(equal > 160, report("has too few codes", unsigned(equal)));

        std::wstring all;
        for (wchar_t code = 0x80; code < 0x10000; ++code)
            all += {code, L'\n'};
        QByteArray encoded(3 * int(all.size()), '#');
        encoded.truncate(K::wideCharToMultiByte(page, 0, all.data(), int(all.size()),
                                                encoded.data(), encoded.size(), "", nullptr));
        const QList<QByteArray> codes = encoded.split('\n');
        QCOMPARE(codes.size(), 0x10000 - 0x80 + 1);
        for (wchar_t code = 0x80; code < 0x10000; ++code) {
            const QByteArray &each = codes.at(code - 0x80);
            const QByteArray ours = each == QByteArray(1, 0) ? QByteArray() : each;
            const QByteArray reference = iconvOf(theirs.encoder, wideBytes(code));
            if (ours != reference && !isExcused(page, code, ours, reference, &used))
                QFAIL(report("encodes", unsigned(code)));
        }
    }
    for (const Exception &each : exceptions)
        QVERIFY2(used.count(&each), each.reason);
}

void tst_Platform::utf8()
{
    const std::pair<QByteArray, std::wstring> rows[] = {
            // as iconv has it where the text is valid
            {"a\xc3\xa4\xe6\x96\x87\xf0\x9f\x98\x80", L"a\u00e4\u6587\U0001f600"},
            {"\x80z", L"\ufffdz"},
            {"\xe6\x96", L"\ufffd"},
            {"\xc0\x80", L"\ufffd\ufffd"},
            {"\xed\xa0\x80", L"\ufffd\ufffd\ufffd"},
            {"\xf4\x90\x80\x80", L"\ufffd\ufffd\ufffd\ufffd"}};
    for (const auto &[bytes, wide] : rows) {
        const int size = int(wide.size());
        std::wstring buffer(wide.size() + 1, L'#');
        const auto convert = [&buffer, text = bytes](K::Dword flags, int room) {
            return K::multiByteToWideChar(K::CpUtf8, flags, text.constData(), text.size(),
                                          buffer.data(), room);
        };
        QCOMPARE(convert(0, 0), size);
        if (size > 1)
            QCOMPARE(errorOf(0, [&] { return convert(0, size - 1); }), 122U);
        QCOMPARE(buffer, std::wstring(wide.size() + 1, L'#'));
        QCOMPARE(convert(0, size), size);
        QCOMPARE(buffer, wide + L'#');
        const bool isValid = wide.find(L'\ufffd') == wide.npos;
        QCOMPARE(convert(K::MbErrInvalidChars, size), isValid ? size : 0);

        QByteArray back(64, '#');
        const int written = K::wideCharToMultiByte(K::CpUtf8, 0, wide.data(), size, back.data(), 63,
                                                   nullptr, nullptr);
        QCOMPARE(back.left(written + 1), QString::fromStdWString(wide).toUtf8() + '#');
    }
}

void tst_Platform::conversionFailures()
{
    wchar_t wide[8];
    char bytes[8];
    const wchar_t surrogate = wchar_t(0xdc00);
    K::Bool used = 0;
    const std::tuple<K::Dword, K::Dword, const char *, int, int, K::Dword> rows[] = {
            // page, flags, text, length, size, error
            {437, 0, "a", 1, 8, 87},     {1252, 0, nullptr, 1, 8, 87}, {1252, 0, "a", 0, 8, 87},
            {65001, 1, "a", 1, 8, 1004}, {1252, 0, "ab", -1, 2, 122},  {1252, 0, "a", 1, -1, 87},
            {932, 8, "\x81", 1, 8, 1113}};
    for (const auto &row : rows) {
        const auto decode = [&] {
            return K::multiByteToWideChar(std::get<0>(row), std::get<1>(row), std::get<2>(row),
                                          std::get<3>(row), wide, std::get<4>(row));
        };
        QCOMPARE(errorOf(0, decode), std::get<5>(row));
    }
    QCOMPARE(errorOf(0, [] { return K::multiByteToWideChar(1252, 0, "a", 1, nullptr, 8); }), 87U);

    const auto encode = [&](K::Dword page, K::Dword flags, const wchar_t *text, int size) {
        return K::wideCharToMultiByte(page, flags, text, 1, bytes, size, nullptr,
                                      page == 65001 ? nullptr : &used);
    };
    QCOMPARE(encode(65001, 0, &surrogate, 8), 3);
    QCOMPARE(QByteArray(bytes, 3), QByteArray("\xef\xbf\xbd"));
    QCOMPARE(errorOf(0, [&] { return encode(65001, 0x80, &surrogate, 8); }), 1113U);
    QCOMPARE(errorOf(0, [&] { return encode(65001, 0, &surrogate, 2); }), 122U);
    QCOMPARE(errorOf(0, [&] { return encode(1252, 0x80, L"a", 8); }), 1004U);
    QCOMPARE(encode(1252, 0, L"\x6587", 8), 1);
    QVERIFY(used && bytes[0] == '?');
    QCOMPARE(K::wideCharToMultiByte(1252, 0, &surrogate, 1, bytes, 8, "_", &used), 1);
    QVERIFY(used && bytes[0] == '_');
}

void tst_Platform::locales()
{
    const QByteArray before = qgetenv("LC_ALL");
    const std::tuple<const char *, K::Word, std::wstring> rows[] = {
            {"de_AT.UTF-8", 0x0c07, L"de-AT"}, {"sw_KE.UTF-8", 0x1000, L"sw-KE"}, {"C", 0x7f, L""}};
    for (const auto &[locale, number, expected] : rows) {
        qputenv("LC_ALL", locale);
        QCOMPARE(K::getUserDefaultLangID(), number);
        wchar_t name[] = L"#######";
        QCOMPARE(K::getUserDefaultLocaleName(name, 6), int(expected.size() + 1));
        QCOMPARE(std::wstring(name), expected);
    }
    qputenv("LC_ALL", "de_AT.UTF-8");
    wchar_t small[5];
    QCOMPARE(errorOf(0, [&] { return K::getUserDefaultLocaleName(small, 5); }), 122U);
    qputenv("LC_ALL", before);
}

void tst_Platform::threads()
{
    K::CriticalSection section;
    K::initializeCriticalSection(&section);
    K::Long counter = 0, guarded = 0;
    const auto work = [&] {
        for (int round = 0; round < 20000; ++round) {
            K::interlockedIncrement(&counter);
            K::enterCriticalSection(&section);
            K::enterCriticalSection(&section);
            ++guarded;
            K::leaveCriticalSection(&section);
            K::leaveCriticalSection(&section);
        }
    };
    std::thread other(work);
    work();
    other.join();
    QVERIFY(counter == 40000 && guarded == 40000);
    K::deleteCriticalSection(&section);
    QCOMPARE(errorOf(0, [&] { return K::enterCriticalSection(&section), 0; }), 87U);
    QCOMPARE(errorOf(0, [] { return K::leaveCriticalSection(nullptr), 0; }), 87U);
    QCOMPARE(K::interlockedDecrement(&counter), 39999);
    QCOMPARE(errorOf(0, [] { return K::interlockedIncrement(nullptr); }), 87U);
}

void tst_Platform::timeAndEnvironment()
{
    const K::Dword start = K::getTickCount();
    K::sleep(2);
    QVERIFY(K::getTickCount() - start >= 2);
    const QDateTime before = QDateTime::currentDateTime();
    K::SystemTime time;
    K::getLocalTime(&time);
    const QDateTime told(QDate(time.year, time.month, time.day),
                         QTime(time.hour, time.minute, time.second, time.milliseconds));
    QVERIFY(told >= before && told <= QDateTime::currentDateTime());

    wchar_t value[8] = L"#######";
    const wchar_t name[] = L"OVCC_TÄST";
    QVERIFY(K::setEnvironmentVariable(name, L"äb"));
    QCOMPARE(qEnvironmentVariable("OVCC_T\xc3\x84ST"), QString::fromUtf8("äb"));
    QCOMPARE(K::getEnvironmentVariable(name, value, 2), 3U);
    QCOMPARE(value[0], L'#');
    QCOMPARE(K::getEnvironmentVariable(name, value, 3), 2U);
    QCOMPARE(std::wstring(value), std::wstring(L"äb"));
    QVERIFY(K::setEnvironmentVariable(name, nullptr));
    QCOMPARE(errorOf(0, [&] { return K::getEnvironmentVariable(name, value, 3); }), 203U);
    QCOMPARE(errorOf(0, [&] { return K::setEnvironmentVariable(L"a=b", L"c"); }), 87U);
    QCOMPARE(errorOf(0, [&] { return K::getEnvironmentVariable(nullptr, value, 3); }), 87U);
}

void tst_Platform::caseAndOrder()
{
    QVERIFY(K::stricmp("Layer", "lAYER") == 0 && K::wcsicmp(L"TÜR", L"tür") == 0);
    QVERIFY(K::stricmp("a", "B") < 0 && K::stricmp("b_", "B") > 0);
    QVERIFY(K::strnicmp("abcX", "ABCy", 3) == 0 && K::wcsnicmp(L"abcX", L"ABCy", 4) < 0);
    QCOMPARE(K::stricmp(nullptr, "a"), INT_MAX);
    char narrow[] = "aZ\xe4";
    wchar_t wide[] = L"aZäß";
    QCOMPARE(QByteArray(K::strupr(narrow)), QByteArray("AZ\xe4"));
    QCOMPARE(QByteArray(K::strrev(narrow)), QByteArray("\xe4ZA"));
    QCOMPARE(std::wstring(K::wcsupr(wide)), std::wstring(L"AZÄß"));
    QCOMPARE(std::wstring(K::wcslwr(wide)), std::wstring(L"azäß"));
    QVERIFY(!K::strrev(nullptr) && !K::wcsupr(nullptr));
}

void tst_Platform::numbers()
{
    for (const qint64 value : {qint64(0), qint64(-1), qint64(INT64_MIN), qint64(INT_MAX)}) {
        for (const int radix : {2, 10, 16, 36}) {
            const auto small = static_cast<qint32>(value);
            const QString text64 =
                    radix == 10 ? QString::number(value) : QString::number(quint64(value), radix);
            const QString text32 =
                    radix == 10 ? QString::number(small) : QString::number(quint32(small), radix);
            char narrow[66];
            wchar_t wide[66];
            QCOMPARE(QString(K::i64toa(value, narrow, radix)), text64);
            QCOMPARE(QString::fromWCharArray(K::i64tow(value, wide, radix)), text64);
            QCOMPARE(QString(K::itoa(small, narrow, radix)), text32);
            const auto size = std::size_t(text32.size());
            wide[size] = L'#';
            QCOMPARE(K::itowS(small, wide, size, radix), ERANGE);
            QVERIFY(wide[0] == 0 && wide[size] == L'#');
            QCOMPARE(K::itoaS(small, narrow, size + 1, radix), 0);
            QCOMPARE(QString(narrow), text32);
        }
    }
    char text[33] = "#";
    for (const int bad : {-1, 0, 1, 37})
        QCOMPARE(QString(K::itoa(5, text, bad)), QString());
    QVERIFY(!K::itoa(5, nullptr, 10));
    QCOMPARE(K::wtoi(L" +12abc"), 12);
    QCOMPARE(K::wtoi(L"-99999999999999999999"), INT_MIN);
    QCOMPARE(K::wtof(L" -1.5e2x"), -150.0);
    QCOMPARE(K::wtof(nullptr) + K::wtoi(nullptr), 0.0);
}

void tst_Platform::secureCopies()
{
    char narrow[] = "#####";
    QCOMPARE(K::strcpyS(narrow, 4, "abc"), 0);
    QCOMPARE(QByteArray(narrow, 5), QByteArray("abc\0#", 5));
    QCOMPARE(K::strcpyS(narrow, 3, "abc"), ERANGE);
    QCOMPARE(narrow[0], '\0');
    QCOMPARE(K::strncpyS(narrow, 4, "abcdef", 2), 0);
    QCOMPARE(K::strcatS(narrow, 4, "c"), 0);
    QCOMPARE(QByteArray(narrow), QByteArray("abc"));
    QCOMPARE(K::strcatS(narrow, 3, "d"), EINVAL);
    QCOMPARE(K::strcpyS(narrow, 4, nullptr), EINVAL);
    QCOMPARE(K::strcpyS(narrow, 0, "a"), EINVAL);
    QCOMPARE(K::wcscpyS(nullptr, 4, L"a"), EINVAL);
    wchar_t wide[] = L"####";
    QCOMPARE(K::wcsncpyS(wide, 3, L"äöü", K::truncate), 80);
    QCOMPARE(std::wstring(wide, 4), std::wstring(L"äö\0#", 4));
    QCOMPARE(K::wcscatS(wide, 3, L"d"), ERANGE);
}

void tst_Platform::splitAndMake()
{
    char drive[3], folder[256], name[256], extension[256], made[260];
    const QStringList rows[] = {{"C:", "\\a\\b\\", "name", ".dwg"},
                                {"", "/a.b/", "name", ""},
                                {"", "", "a.b", ".c"},
                                {"d:", "", "x", "."},
                                {"", "/", "", ".profile"},
                                {"", "", "", ""}};
    for (const QStringList &parts : rows) {
        const QByteArray path = parts.join(QString()).toUtf8();
        QCOMPARE(K::splitpath(path.constData(), drive, folder, name, extension), 0);
        QCOMPARE((QStringList{drive, folder, name, extension}), parts);
        QCOMPARE(K::makepath(made, drive, folder, name, extension), 0);
        QCOMPARE(QByteArray(made), path);
    }
    wchar_t small[4] = L"###";
    QCOMPARE(K::wsplitpathS(L"/ab.c", nullptr, 0, nullptr, 0, small, 2, nullptr, 0), ERANGE);
    QCOMPARE(std::wstring(small, 3), std::wstring(L"\0##", 3));
    QCOMPARE(K::wmakepathS(small, 2, L"C", L"x", nullptr, nullptr), ERANGE);
    QCOMPARE(std::wstring(small, 3), std::wstring(L"\0##", 3));
    QCOMPARE(K::splitpath(nullptr, drive, folder, name, extension), EINVAL);
    const QByteArray tooLong(300, 'x');
    QCOMPARE(K::splitpath(tooLong.constData(), drive, folder, name, extension), ERANGE);
    QCOMPARE(K::makepath(made, nullptr, nullptr, tooLong.constData(), nullptr), ERANGE);
}

void tst_Platform::unsupported()
{
    K::Handle printer = 77;
    QCOMPARE(errorOf(0, [] { return K::createCompatibleDC(0); }), 50U);
    QCOMPARE(errorOf(-1, [] { return K::setTextColor(0, 0); }), 50U);
    QCOMPARE(errorOf(0, [&] { return K::openPrinter(L"p", &printer, nullptr); }), 50U);
    QCOMPARE(printer, K::Handle(77));
}

void tst_Platform::displaySizes()
{
    const QByteArray before = qgetenv("DISPLAY");
    for (const char *screen : {"800x600x24", "1366x768x24"}) {
        QProcess server;
        server.start(QStringLiteral("Xvfb"),
                     {"-displayfd", "1", "-screen", "0", screen, "-nolisten", "tcp", "-noreset"});
        QTRY_VERIFY_WITH_TIMEOUT(server.canReadLine(), 30000);
        qputenv("DISPLAY", ':' + server.readLine().trimmed());
        QProcess reference;
        reference.start(QStringLiteral("xdpyinfo"), QStringList());
        QVERIFY(reference.waitForFinished());
        const QString size =
                QStringLiteral("%1x%2 pixels").arg(getDisplayWidth()).arg(getDiaplayHeight());
        QVERIFY2(reference.readAll().contains("dimensions:    " + size.toUtf8()), qPrintable(size));
        QVERIFY(QString(screen).startsWith(size.section(' ', 0, 0)));
        server.terminate();
        QVERIFY(server.waitForFinished());
        QCOMPARE(getDisplayWidth(), 0);
        QCOMPARE(getDiaplayHeight(), 0);
    }
    qunsetenv("DISPLAY");
    QCOMPARE(getDisplayWidth(), 0);
    if (!before.isNull())
        qputenv("DISPLAY", before);
}

QTEST_GUILESS_MAIN(tst_Platform)
#include "tst_platform.moc"
