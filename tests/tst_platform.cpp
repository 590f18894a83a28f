// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Limit.h"

#include <OvCustomControl/DisplaySize.h>
#include <OvCustomControl/OvKernel32.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <memory>
#include <thread>

#include <dlfcn.h>
#include <iconv.h>
#include <sys/stat.h>

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

/// What tests/ini.py prints.
QJsonObject python(const QString &verb, const QString &file)
{
    QProcess process;
    process.start("/usr/bin/python3", {OVCC_SOURCE_DIR "/tests/ini.py", verb, file});
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

/// What iconv leaves out: a byte without a character is the control of that number or the character
/// of Latin-1, and the codes that users may define are in the private use area.
bool isOfWindows(K::Dword page, wchar_t code)
{
    return (code >= 0x80 && code <= 0x9f) || (code >= 0xe000 && code <= 0xf8ff)
           || (page == 1253 && code == 0xaa);
}

using Iconv = std::unique_ptr<void, int (*)(iconv_t)>;

} // namespace

class tst_Platform : public QObject
{
    Q_OBJECT

private slots:
    void errors();
    void modules();
    void dispositions();
    void filePositions();
    void copyMoveDelete();
    void pathMapping();
    void findFiles();
    void badHandlesAndPaths();
    void profileMatchesPython();
    void profileKeepsTheFile();
    void profileOfNoUse();
    void profileBuffers();
    void codePagesMatchIconv();
    void conversions();
    void threads();
    void environment();
    void texts();
    void numbers();
    void splitAndMake();
    void displaySizes();

private:
    QString path(const char *name) const { return m_dir.filePath(QString::fromUtf8(name)); }
    std::wstring at(const char *name) const { return path(name).toStdWString(); }
    K::Handle open(const char *name, K::Dword access = readWrite,
                   K::Dword disposition = K::OpenAlways) const
    {
        return K::createFile(at(name).c_str(), access, 0, nullptr, disposition,
                             K::FileAttributeArchive | K::FileAttributeNormal, 0);
    }
    void write(const char *name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    QByteArray read(const char *name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no file>");
    }
    QTemporaryDir m_dir;
};

void tst_Platform::errors()
{
    wchar_t text[64] = {};
    const auto format = [&text](K::Dword flags, K::Dword error, K::Dword size) {
        return K::formatMessage(flags, nullptr, error, 0, text, size, nullptr);
    };
    QCOMPARE(errorOf(0, [&] { return format(0x1000, 2, 28); }), 122U);
    QCOMPARE(format(0x1200, 2, 29), 28U);
    QCOMPARE(QString::fromWCharArray(text), QStringLiteral("No such file or directory.\r\n"));
    QCOMPARE(errorOf(0, [&] { return format(0x1000, 99999, 64); }), 317U);
    QCOMPARE(errorOf(0, [&] { return format(0x1100, 2, 64); }), 50U);
    QCOMPARE(errorOf(-1, [] { return K::setTextColor(0, 0); }), 50U);
}

void tst_Platform::modules()
{
    Dl_info core;
    QVERIFY(dladdr(reinterpret_cast<void *>(qVersion), &core) != 0);
    const QFileInfo library(core.dli_fname);
    QString name = library.fileName().section(".so", 0, 0).mid(3).replace("Qt", "QT") + ".DLL";
    name = "C:" + library.path().replace('/', '\\') + '\\' + name.replace("Core", "core");
    const K::Handle module = K::loadLibrary(name.toStdWString().c_str());
    QCOMPARE(K::loadLibrary(library.fileName().toStdWString().c_str()), module);
    const auto version = reinterpret_cast<const char *(*)()>(K::getProcAddress(module, "qVersion"));
    QVERIFY(version && version() == QByteArray(qVersion()));
    QCOMPARE(errorOf(nullptr, [&] { return K::getProcAddress(module, "no such"); }), 127U);
    QVERIFY(K::freeLibrary(module) && K::freeLibrary(module));
    QCOMPARE(errorOf(0, [&] { return K::freeLibrary(module); }), 6U);
    QCOMPARE(errorOf(0, [&] { return K::loadLibrary(L"no-such.dll"); }), 126U);

    const K::Handle calling =
            K::loadLibrary(QStringLiteral(OVCC_CALLING_MODULE).toStdWString().c_str());
    QCOMPARE(qgetenv("OVCC_MODULE"), QByteArray("loaded"));
    QVERIFY(K::freeLibrary(calling));
    QCOMPARE(qgetenv("OVCC_MODULE"), QByteArray("unloaded"));

    wchar_t file[300];
    K::getModuleFileName(0, file, 300);
    QCOMPARE(QString::fromWCharArray(file), QCoreApplication::applicationFilePath());
    file[4] = L'#';
    QCOMPARE(errorOf(4U, [&] { return K::getModuleFileName(0, file, 4); }), 122U);
    QVERIFY(file[3] == 0 && file[4] == L'#');
}

void tst_Platform::dispositions()
{
    const std::tuple<K::Dword, K::Dword, K::Dword, int> rows[] = {
            // disposition, errors for a file that is missing and for one that is there, its size
            {0, 87, 87, 3},
            {K::CreateNew, 0, 80, 3},
            {K::CreateAlways, 0, 183, 0},
            {K::OpenExisting, 2, 0, 3},
            {K::OpenAlways, 0, 183, 3},
            {K::TruncateExisting, 2, 0, 0}};
    for (const auto &[disposition, errorOfNew, errorOfOld, size] : rows) {
        write("old", "abc");
        QFile::remove(path("new"));
        for (const char *name : {"new", "old"}) {
            const K::Dword expected = *name == 'n' ? errorOfNew : errorOfOld;
            const K::Handle file = open(name, readWrite, disposition);
            QCOMPARE(K::getLastError(), expected);
            QCOMPARE(K::closeHandle(file) != 0, expected == 0 || expected == 183);
        }
        QCOMPARE(read("old").size(), size);
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

    QVERIFY(QFile::resize(path("file"), (INT64_C(1) << 32) + 5));
    QVERIFY(K::getFileSize(file, &sizeHigh) == 5 && sizeHigh == 1);
    K::Long high = 1;
    QCOMPARE(K::setFilePointer(file, 5, &high, K::FileBegin), 5U);
    QCOMPARE(errorOf(~0U, [=] { return K::setFilePointer(file, -9, nullptr, 0); }), 131U);
    high = 0;
    QVERIFY(K::setFilePointer(file, 0, &high, K::FileCurrent) == 5 && high == 1);
    QCOMPARE(errorOf(0, [&] { return K::readFile(file, nullptr, 1, &count, nullptr); }), 87U);

    const K::Handle reader = open("file", K::GenericRead);
    QCOMPARE(errorOf(0, [&] { return K::writeFile(reader, "x", 1, &count, nullptr); }), 5U);
    QVERIFY(K::closeHandle(file) && K::closeHandle(reader));
}

void tst_Platform::copyMoveDelete()
{
    write("a", "first");
    write("b", "second");
    const std::wstring a = at("a"), b = at("b"), folder = at("Folder");
    QCOMPARE(errorOf(0, [&] { return K::copyFile(a.c_str(), b.c_str(), true); }), 80U);
    QCOMPARE(read("b"), QByteArray("second"));
    QVERIFY(K::copyFile(a.c_str(), b.c_str(), false));
    QCOMPARE(read("b"), QByteArray("first"));
    QCOMPARE(errorOf(0, [&] { return K::moveFile(a.c_str(), b.c_str()); }), 183U);
    QVERIFY(K::deleteFile(a.c_str()) && K::moveFile(b.c_str(), at("B").c_str()));
    QCOMPARE(QDir(m_dir.path()).entryList({"a", "b"}, QDir::Files), QStringList("B"));

    QVERIFY(K::setFileAttributes(b.c_str(), K::FileAttributeReadOnly));
    QCOMPARE(K::getFileAttributes(b.c_str()), 1U);
    QCOMPARE(errorOf(0, [&] { return K::deleteFile(b.c_str()); }), 5U);
    QCOMPARE(errorOf(-1, [&] { return open("b", K::GenericWrite); }), 5U);
    QVERIFY(K::setFileAttributes(b.c_str(), K::FileAttributeNormal));
    QVERIFY(K::deleteFile(b.c_str()));
    QCOMPARE(errorOf(0, [&] { return K::deleteFile(b.c_str()); }), 2U);

    QVERIFY(K::createDirectory(folder.c_str(), nullptr));
    QCOMPARE(errorOf(0, [&] { return K::createDirectory(folder.c_str(), nullptr); }), 183U);
    QCOMPARE(errorOf(0, [&] { return K::deleteFile(folder.c_str()); }), 5U);
    write("Folder/x", {});
    QCOMPARE(errorOf(0, [&] { return K::removeDirectory(folder.c_str()); }), 145U);
    QVERIFY(K::deleteFile(at("folder\\X").c_str()) && K::removeDirectory(folder.c_str()));
}

void tst_Platform::pathMapping()
{
    QVERIFY(QDir(m_dir.path()).mkdir(QString::fromUtf8("Pläne")));
    write("Pläne/Haus.DWG", "x");
    qputenv("OVCC_DRIVE_P", m_dir.path().toUtf8());
    for (const QString &name :
         {path("PLÄNE/haus.dwg"), "c:" + path("pläne/HAUS.dwg").replace('/', '\\'),
          R"(\\?\C:)" + m_dir.path(), QString::fromUtf8("P:\\pläne")})
        QVERIFY2(K::getFileAttributes(name.toStdWString().c_str()) != K::invalidDword,
                 qPrintable(name));
    qunsetenv("OVCC_DRIVE_P");
    QCOMPARE(errorOf(~0U, [] { return K::getFileAttributes(L"P:\\pläne"); }), 3U);

    wchar_t before[300], buffer[300], *part = nullptr;
    QVERIFY(K::getCurrentDirectory(300, before));
    QVERIFY(K::setCurrentDirectory(at("PLÄNE").c_str()));
    const QString here = QDir(path("Pläne")).canonicalPath();
    QCOMPARE(K::getCurrentDirectory(300, buffer), K::Dword(here.size()));
    QCOMPARE(QString::fromWCharArray(buffer), here);
    QCOMPARE(K::getFullPathName(L"C:x\\..\\y.txt", 300, buffer, &part), K::Dword(here.size() + 6));
    QCOMPARE(QString::fromWCharArray(buffer), here + "/y.txt");
    QCOMPARE(part, buffer + here.size() + 1);
    QVERIFY(K::setCurrentDirectory(before));

    const K::Dword needed = K::getTempPath(0, nullptr);
    buffer[needed - 1] = L'#';
    QVERIFY(K::getTempPath(needed - 1, buffer) == needed && buffer[needed - 1] == L'#');
    QCOMPARE(K::getTempPath(needed, buffer), needed - 1);
}

void tst_Platform::findFiles()
{
    for (const char *name : {"a.txt", "B.TXT", "ab.txt", "c[1].txt", "none"})
        write(name, "12345");
    K::FindData data;
    const auto find = [&](const char *pattern) {
        QStringList names;
        const K::Handle handle = K::findFirstFile(at(pattern).c_str(), &data);
        if (handle == K::invalidHandle)
            return QStringList(QString::number(K::getLastError()));
        do {
            names.append(QString::fromWCharArray(data.fileName));
        } while (K::findNextFile(handle, &data));
        names.append(QString::number(K::getLastError()));
        return !K::closeHandle(handle) && K::findClose(handle) ? names : QStringList();
    };
    QCOMPARE(find("*.txt"), (QStringList{"B.TXT", "a.txt", "ab.txt", "c[1].txt", "18"}));
    QCOMPARE(find("?.txt"), (QStringList{"B.TXT", "a.txt", "18"}));
    QCOMPARE(find("C[1]*"), (QStringList{"c[1].txt", "18"}));
    QVERIFY(find("*.*").contains("none"));
    QCOMPARE(find("no*where"), QStringList("2"));
    QCOMPARE(find("no-folder/*"), QStringList("3"));
    QCOMPARE(find("none"), (QStringList{"none", "18"}));
    QVERIFY(data.fileSizeLow == 5 && data.fileAttributes == K::FileAttributeNormal);
    const std::uint64_t ticks =
            std::uint64_t(data.lastWriteTime.high) << 32 | data.lastWriteTime.low;
    const qint64 age = QDateTime::currentSecsSinceEpoch() - qint64(ticks / 10000000 - 11644473600);
    QVERIFY2(age >= -1 && age < 300, qPrintable(QString::number(age)));
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
                [&] { return K::getFileSize(bad, nullptr) != K::invalidDword; },
                [&] { return K::setFilePointer(bad, 0, nullptr, 0) != K::invalidDword; },
                [&] { return K::closeHandle(bad); },
                [&] { return K::findNextFile(bad, &data); },
                [&] { return K::findClose(bad); },
                [&] { return K::freeLibrary(bad); }};
        for (const auto &call : calls)
            QCOMPARE(errorOf(0, call), 6U);
    }

    const wchar_t surrogate[] = {wchar_t(0xd800), 0};
    const std::pair<const wchar_t *, K::Dword> paths[] = {
            {nullptr, 87}, {L"", 3}, {surrogate, 123}, {L"\\\\server\\share", 53}, {L"Q:\\x", 3}};
    for (const auto &[path, error] : paths) {
        const wchar_t *name = path;
        const std::function<K::Bool()> calls[] = {
                [&] { return K::createFile(name, 0, 0, nullptr, 3, 0, 0) != K::invalidHandle; },
                [&] { return K::findFirstFile(name, &data) != K::invalidHandle; },
                [&] { return K::getFileAttributes(name) != K::invalidDword; },
                [&] { return K::copyFile(name, L"x", 1); },
                [&] { return K::deleteFile(name); },
                [&] { return K::createDirectory(name, nullptr); },
                [&] { return K::setCurrentDirectory(name); },
                [&] { return K::Bool(K::getFullPathName(name, 0, nullptr, nullptr)); },
                [&] { return K::Bool(K::loadLibrary(name)); },
                [&] { return K::writePrivateProfileString(L"a", L"b", L"c", name); }};
        for (const auto &call : calls)
            QCOMPARE(errorOf(0, call), error);
    }
}

void tst_Platform::profileMatchesPython()
{
    const QJsonObject written = python("write", path("theirs.ini"));
    QCOMPARE(written.size(), 20);
    wchar_t buffer[100];
    for (auto section = written.begin(); section != written.end(); ++section) {
        const std::wstring name = section.key().toStdWString();
        const QJsonObject keys = section.value().toObject();
        for (auto key = keys.begin(); key != keys.end(); ++key) {
            const std::wstring keyName = key.key().toStdWString();
            const std::wstring value = key.value().toString().toStdWString();
            K::getPrivateProfileString(name.c_str(), keyName.c_str(), L"missing", buffer, 100,
                                       at("theirs.ini").c_str());
            QCOMPARE(std::wstring(buffer), value);
            QVERIFY(K::writePrivateProfileString(name.c_str(), keyName.c_str(), value.c_str(),
                                                 at("ours.ini").c_str()));
        }
    }
    QCOMPARE(python("read", path("ours.ini")), written);
}

void tst_Platform::profileKeepsTheFile()
{
    const std::pair<QByteArray, QByteArray> rows[] = {
            // before and after [b] y=2 is set and [A] x removed
            {"; top\r\n[a]\r\n;c\r\nX = 1\r\nz=3\r\n\r\n[B]\r\nY= 1\r\n[c]\r\n",
             "; top\r\n[a]\r\n;c\r\nz=3\r\n\r\n[B]\r\nY=2\r\n[c]\r\n"},
            {"[b]\nq=1\n\n[a]\n", "[b]\nq=1\ny=2\n\n[a]\n"},
            {"[b]\nq=1", "[b]\nq=1\ny=2\n"},
            {"[\xe4]\n\x81=\xff\n[b]\ny=\xe9\n", "[\xe4]\n\x81=\xff\n[b]\ny=2\n"},
            {"\xef\xbb\xbf[b]\ny=1\n", "\xef\xbb\xbf[b]\ny=2\n"},
            {QByteArray("\xff\xfe[\0b\0]\0\n\0y\0=\0\xe4\0\n\0", 18),
             QByteArray("\xff\xfe[\0b\0]\0\n\0y\0=\0\x32\0\n\0", 18)},
            // broken behind the mark: what stays keeps its bytes, half a character is filled up
            {"\xef\xbb\xbf;\xe4\n[b]\n\xff=\xc3\nY = \xe4",
             "\xef\xbb\xbf;\xe4\n[b]\n\xff=\xc3\nY =2\n"},
            {QByteArray("\xff\xfe[\0b\0]\0\n\0\x01\n\0\x01r", 15),
             QByteArray("\xff\xfe[\0b\0]\0\n\0\x01\n\0\x01r\0\n\0y\0=\0\x32\0\n\0", 26)},
            // what is left would be UTF-8, and not the Latin-1 that it is
            {"[b]\ny=\xe9\n;\xc3\xa4\n", "\xef\xbb\xbf[b]\ny=2\n;\xc3\x83\xc2\xa4\n"},
            {"[a]\nx=\xe9\n\xc3\xa4", "\xef\xbb\xbf[a]\n\xc3\x83\xc2\xa4\n[b]\ny=2\n"},
            {"[b]\ny=1\n;\xc3", "[b]\ny=2\n;\xc3"}, // half a character alone is none of UTF-8
            {"", "[b]\r\ny=2\r\n"}};
    const std::wstring file = at("keep.ini");
    const auto set = [&file](const wchar_t *value) {
        return K::writePrivateProfileString(L"b", L"y", value, file.c_str());
    };
    for (const auto &[before, after] : rows) {
        write("keep.ini", before);
        QVERIFY(set(L"2"));
        QVERIFY(K::writePrivateProfileString(L"A", L"x", nullptr, file.c_str()));
        QCOMPARE(errorOf(2, [&] { return K::getPrivateProfileInt(L" B ", L"y", 7, file.c_str()); }),
                 12345U);
        QCOMPARE(errorOf(0, [&] { return set(L"3\n[c]"); }), 87U);
        for (const auto &[section, key] :
             {std::pair(L"c]", L"x"), {L"b", L""}, {L"b", L"p=q"}, {L"b", L";x"}, {L"b", L"[x"}}) {
            QCOMPARE(errorOf(0,
                             [&, section = section, key = key] {
                                 return K::writePrivateProfileString(section, key, L"]",
                                                                     file.c_str());
                             }),
                     87U);
        }
        QCOMPARE(errorOf(0,
                         [&] {
                             return K::writePrivateProfileSection(L"b", L"x=1\0[c]\0",
                                                                  file.c_str());
                         }),
                 87U);
        QCOMPARE(read("keep.ini"), after);
        const bool isLatin1 = before.startsWith("[\xe4") || before.endsWith(";\xc3");
        QCOMPARE(isLatin1 ? errorOf(0, [&] { return set(L"\x6587"); }) : 1113U, 1113U);
    }
}

void tst_Platform::profileOfNoUse()
{
    write("file.ini", "[b]\ny=1\n");
    QVERIFY(QDir(m_dir.path()).mkdir("folder.ini"));
    QCOMPARE(::mknod(QFile::encodeName(path("socket.ini")), S_IFSOCK | 0600, 0), 0);
    QVERIFY(QFile::link("/proc/self/mem", path("broken.ini")));
    QVERIFY(QFile::link(path("file.ini"), path("link.ini")));
    const auto set = [this](const char *name) {
        return K::writePrivateProfileString(L"b", L"x", L"2", at(name).c_str());
    };
    for (const auto &[name, error] : std::initializer_list<std::pair<const char *, K::Dword>>{
                 {"folder.ini", 5}, {"socket.ini", 5}, {"broken.ini", 1117}, {"no/file.ini", 3}})
        QCOMPARE(errorOf(0, [&, name = name] { return set(name); }), error);
    QVERIFY(!QFileInfo(path("socket.ini")).isFile() && QFileInfo(path("broken.ini")).isSymLink());

    // Without a descriptor, or room for more than a byte, the file is what it was.
    const std::wstring file = at("file.ini");
    const auto copy = [&] { return K::copyFile(at("large").c_str(), file.c_str(), false); };
    write("large", "large");
    const auto move = [&] { return K::moveFile(at("large").c_str(), at("FILE.ini").c_str()); };
    K::Dword errors[4] = {};
    {
        const Limit files(RLIMIT_NOFILE, 0);
        errors[0] = errorOf(0, [&] { return set("file.ini"); });
        errors[3] = errorOf(0, move); // nobody can know that the name is taken
    }
    {
        const Limit size(RLIMIT_FSIZE, 1);
        errors[1] = errorOf(0, [&] { return set("file.ini"); });
        errors[2] = errorOf(0, copy);
    }
    QVERIFY(errors[0] == 4 && errors[1] == 112 && errors[2] == 112 && errors[3] == 4);
    QCOMPARE(read("file.ini"), QByteArray("[b]\ny=1\n"));
    QVERIFY(set("link.ini") && QFileInfo(path("link.ini")).isSymLink());
    QCOMPARE(read("file.ini"), QByteArray("[b]\ny=1\nx=2\n"));
}

void tst_Platform::profileBuffers()
{
    const std::wstring file = at("file.ini");
    write("file.ini", "[one]\na= \" q \"\nbb=-12x\n;no=1\nplain\n[two]");
    const std::tuple<const wchar_t *, const wchar_t *, K::Dword, QString> rows[] = {
            // section, key, size of the buffer, what is in it with | for NUL, and the length told
            {L"ONE", L"A", 9, " q |3"},     {L"one", L"a", 3, " q|2"},
            {L"one", L"no", 9, "dflt|4"},   {L"one", nullptr, 9, "a|bb||5"},
            {L"one", nullptr, 5, "a|b||3"}, {nullptr, nullptr, 9, "one|two||8"},
            {nullptr, nullptr, 1, "|0"},    {L"two", nullptr, 4, "||0"}};
    for (const auto &[section, key, size, expected] : rows) {
        std::wstring buffer(size + 1, L'#');
        const K::Dword count = K::getPrivateProfileString(section, key, L"dflt  ", buffer.data(),
                                                          size, file.c_str());
        buffer.resize(buffer.find_last_not_of(L'#') + 1);
        const QString text = QString::fromStdWString(buffer).replace(QChar(0), '|');
        QCOMPARE(text + QString::number(count), expected);
    }
    QCOMPARE(K::getPrivateProfileInt(L"one", L"bb", 7, file.c_str()), K::Dword(-12));
    QVERIFY(K::writePrivateProfileSection(L"one", L"k=1\0l=2\0", file.c_str()));
    QCOMPARE(read("file.ini"), QByteArray("[one]\nk=1\nl=2\n[two]"));
    QVERIFY(K::writePrivateProfileString(L"one", nullptr, nullptr, file.c_str()));
    QCOMPARE(read("file.ini"), QByteArray("[two]"));
    QCOMPARE(errorOf(0, [&] { return K::getPrivateProfileSectionNames(nullptr, 9, file.c_str()); }),
             87U);
    for (const auto &[name, entries] : {std::pair(L"a\nb", L"k=1\0"), {L"a", L"k\n=1\0"}}) {
        const wchar_t *const texts[] = {name, entries};
        QCOMPARE(errorOf(0,
                         [&] {
                             return K::writePrivateProfileSection(texts[0], texts[1], file.c_str());
                         }),
                 87U);
    }
}

void tst_Platform::codePagesMatchIconv()
{
    for (const K::Dword page :
         {1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258, 932, 936, 949, 950}) {
        const QByteArray name = "CP" + QByteArray::number(page);
        const Iconv decoder(iconv_open("WCHAR_T", name), iconv_close);
        const Iconv encoder(iconv_open(name, "WCHAR_T"), iconv_close);
        int equal = 0;
        for (unsigned code = 0; code < (page < 1250 ? 0xff00U : 0x100U); ++code) {
            if (code == 0x100)
                code = 0x8100; // the first of the lead bytes
            const char both[] = {char(code >> 8), char(code)};
            const QByteArray bytes(code > 0xff ? both : both + 1, code > 0xff ? 2 : 1);
            wchar_t wide[2] = {};
            const int size = K::multiByteToWideChar(page, K::MbErrInvalidChars, bytes, bytes.size(),
                                                    wide, 2);
            const QByteArray ours(reinterpret_cast<const char *>(wide), size * int(sizeof(*wide)));
            const QByteArray reference = iconvOf(decoder.get(), bytes);
            const QByteArray report = name + ' ' + bytes.toHex();
            if (reference.isEmpty()) {
                QVERIFY2(size == 0 || isOfWindows(page, wide[0]), report);
                continue;
            }
            QVERIFY2(ours == reference, report);
            ++equal;
            QByteArray back(4, '\0');
            back.truncate(K::wideCharToMultiByte(page, 0, wide, size, back.data(), 4, "", nullptr));
            // Four characters of this page have two codes each.
            const bool hasTwo = page == 950 && wide[0] >= 0x2550 && wide[0] <= 0x256a;
            QVERIFY2(hasTwo || back == iconvOf(encoder.get(), ours), report);
        }
        QVERIFY2(equal > 160, name);
    }
}

void tst_Platform::conversions()
{
    const std::pair<QByteArray, std::wstring> rows[] = {
            {"a\xc3\xa4\xe6\x96\x87\xf0\x9f\x98\x80", L"a\u00e4\u6587\U0001f600"},
            {"\x80z", L"\ufffdz"},
            {"\xe6\x96", L"\ufffd"},
            {"\xc0\x80", L"\ufffd\ufffd"},
            {"\xed\xa0\x80", L"\ufffd\ufffd\ufffd"},
            {"\xf4\x90\x80\x80", L"\ufffd\ufffd\ufffd\ufffd"}};
    wchar_t wide[8];
    char bytes[16];
    const auto decode = [&](K::Dword page, K::Dword flags, const char *text, int length, int size) {
        return K::multiByteToWideChar(page, flags, text, length, wide, size);
    };
    const auto encode = [&](K::Dword page, K::Dword flags, const wchar_t *text, int size) {
        return K::wideCharToMultiByte(page, flags, text, -1, bytes, size, nullptr, nullptr);
    };
    for (const auto &[text, expected] : rows) {
        const int size = int(expected.size());
        const bool isValid = expected.find(L'\ufffd') == expected.npos;
        wide[size] = L'#';
        QCOMPARE(decode(65001, 0, text, text.size(), 0), size);
        QCOMPARE(decode(65001, 0, text, text.size(), size), size);
        QCOMPARE(std::wstring(wide, size + 1), expected + L'#');
        QCOMPARE(decode(65001, K::MbErrInvalidChars, text, text.size(), size), isValid * size);
        const QByteArray back = QString::fromStdWString(expected).toUtf8();
        QCOMPARE(encode(65001, 0, expected.c_str(), 16), back.size() + 1);
        QCOMPARE(QByteArray(bytes), back);
    }
    QCOMPARE(errorOf(0, [&] { return decode(437, 0, "a", 1, 8); }), 87U);
    QCOMPARE(errorOf(0, [&] { return decode(1252, 0, nullptr, 1, 8); }), 87U);
    QCOMPARE(errorOf(0, [&] { return decode(1252, 0, "a", 0, 8); }), 87U);
    QCOMPARE(errorOf(0, [&] { return decode(1252, 0, "a", 1, -1); }), 87U);
    QCOMPARE(errorOf(0, [&] { return decode(1252, 0, "ab", -1, 2); }), 122U);
    QCOMPARE(errorOf(0, [&] { return decode(65001, 1, "a", 1, 8); }), 1004U);
    QCOMPARE(errorOf(0, [&] { return decode(932, 8, "\x81", 1, 8); }), 1113U);
    QCOMPARE(errorOf(0, [] { return K::multiByteToWideChar(1252, 0, "a", 1, nullptr, 8); }), 87U);

    const wchar_t surrogate[] = {wchar_t(0xdc00), 0};
    QCOMPARE(encode(65001, 0, surrogate, 8), 4);
    QCOMPARE(QByteArray(bytes), QByteArray("\xef\xbf\xbd"));
    QCOMPARE(errorOf(0, [&] { return encode(65001, 0x80, surrogate, 8); }), 1113U);
    QCOMPARE(errorOf(0, [&] { return encode(65001, 0, surrogate, 3); }), 122U);
    QCOMPARE(errorOf(0, [&] { return encode(1252, 0x80, L"a", 8); }), 1004U);
    K::Bool used = 0;
    QVERIFY(encode(1252, 0, L"\x0101", 8) == 2 && bytes[0] == '?'); // not the 'a' that is like it
    QCOMPARE(K::wideCharToMultiByte(1252, 0, surrogate, 1, bytes, 8, "_", &used), 1);
    QVERIFY(used && bytes[0] == '_');
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
    K::setLastError(5);
    std::thread other([&] { work(), K::setLastError(6); });
    work();
    other.join();
    QVERIFY(counter == 40000 && guarded == 40000);
    QCOMPARE(K::getLastError(), 5U); // each thread has its own
    K::deleteCriticalSection(&section);
    QCOMPARE(errorOf(0, [&] { return K::enterCriticalSection(&section), 0; }), 87U);
}

void tst_Platform::environment()
{
    const std::tuple<const wchar_t *, K::Word, std::wstring> rows[] = {
            {L"de_AT.UTF-8", 0x0c07, L"de-AT"},
            {L"sw_KE.UTF-8", 0x1000, L"sw-KE"},
            {L"C.UTF-8", 0x7f, L""}};
    wchar_t value[8] = L"#######";
    for (const auto &[locale, number, expected] : rows) {
        const int size = int(expected.size() + 1);
        QVERIFY(K::setEnvironmentVariable(L"LC_ALL", locale));
        QCOMPARE(K::getUserDefaultLangID(), number);
        QCOMPARE(K::getUserDefaultLocaleName(value, size - 1), 0);
        QCOMPARE(K::getUserDefaultLocaleName(value, size), size);
        QCOMPARE(std::wstring(value), expected);
    }

    const wchar_t name[] = L"OVCC_TÄST";
    QVERIFY(K::setEnvironmentVariable(name, L"äb") && qgetenv("OVCC_T\xc3\x84ST") == "äb");
    const auto get = [&](const wchar_t *variable, wchar_t *buffer, K::Dword size, K::Dword length) {
        return errorOf(length, [=] { return K::getEnvironmentVariable(variable, buffer, size); });
    };
    constexpr K::Dword untouched = 12345;
    QVERIFY(get(name, nullptr, 0, 3) == untouched && get(name, value, 2, 3) == untouched);
    QCOMPARE(get(name, value, 3, 2), untouched);
    QCOMPARE(std::wstring(value), std::wstring(L"äb"));
    QCOMPARE(get(name, nullptr, 3, 0), 87U);
    QVERIFY(K::setEnvironmentVariable(name, L""));
    QCOMPARE(get(name, value, 0, 1), untouched);
    QVERIFY(get(name, value, 1, 0) == untouched && value[0] == 0);
    QVERIFY(K::setEnvironmentVariable(name, nullptr));
    for (const wchar_t *missing : {name, L"", L"a=b"})
        QCOMPARE(get(missing, value, 3, 0), 203U);
    QCOMPARE(get(nullptr, value, 3, 0), 87U);
}

void tst_Platform::texts()
{
    QVERIFY(K::stricmp("Layer", "lAYER") == 0 && K::wcsicmp(L"TÜR", L"tür") == 0);
    QVERIFY(K::strnicmp("abcX", "ABCy", 3) == 0 && K::wcsnicmp(L"abcX", L"ABCy", 4) < 0);
    QCOMPARE(K::stricmp(nullptr, "a"), INT_MAX);
    char narrow[] = "aZ\xe4#";
    wchar_t wide[] = L"aZäß";
    QCOMPARE(QByteArray(K::strrev(K::strupr(narrow))), QByteArray("#\xe4ZA"));
    QCOMPARE(std::wstring(K::wcsupr(wide)), std::wstring(L"AZÄß"));
    QCOMPARE(std::wstring(K::wcslwr(wide)), std::wstring(L"azäß"));

    QCOMPARE(K::strcpyS(narrow, 3, "abc"), ERANGE);
    QCOMPARE(K::strncpyS(narrow, 4, "abcdef", 2), 0);
    QCOMPARE(K::strcatS(narrow, 4, "c"), 0);
    QCOMPARE(QByteArray(narrow), QByteArray("abc"));
    QCOMPARE(K::strcatS(narrow, 3, "d"), EINVAL);
    QCOMPARE(K::wcscpyS(nullptr, 4, L"a"), EINVAL);
    QCOMPARE(K::wcsncpyS(wide, 3, L"äöü", K::truncate), 80);
    QCOMPARE(std::wstring(wide, 4), std::wstring(L"äö\0ß", 4));
}

void tst_Platform::numbers()
{
    using Row = std::tuple<int, int, QByteArray>;
    for (const auto &[value, radix, expected] :
         {Row{0, 2, "0"}, Row{-1, 10, "-1"}, Row{-1, 16, "ffffffff"},
          Row{INT_MIN, 2, '1' + QByteArray(31, '0')}, Row{INT_MAX, 36, "zik0zj"}}) {
        const auto size = std::size_t(expected.size());
        char narrow[33];
        wchar_t wide[33];
        QCOMPARE(QByteArray(K::itoa(value, narrow, radix)), expected);
        wide[size] = L'#';
        QCOMPARE(K::itowS(value, wide, size, radix), ERANGE);
        QVERIFY(wide[0] == 0 && wide[size] == L'#');
        QCOMPARE(K::itowS(value, wide, size + 1, radix), 0);
        QCOMPARE(QString::fromWCharArray(wide).toUtf8(), expected);
    }
    char text[65];
    QCOMPARE(QByteArray(K::i64toa(INT64_MIN, text, 2)), '1' + QByteArray(63, '0'));
    QVERIFY(K::itoaS(5, text, 65, 37) == EINVAL && !K::itoa(5, nullptr, 10));
    QVERIFY(K::wtoi(L"-99999999999999999999") == INT_MIN && K::wtof(L" -1.5e2x") == -150.0);
}

void tst_Platform::splitAndMake()
{
    char drive[3], folder[256], name[256], extension[256], made[260];
    const QStringList rows[] = {{"C:", "\\a\\b\\", "name", ".dwg"},
                                {"", "/a.b/", "name", ""},
                                {"d:", "", "x", "."},
                                {"", "/", "", ".profile"},
                                {"", "", "a.b", ".c"}};
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
    QCOMPARE(K::splitpath(QByteArray(256, 'x').constData(), drive, folder, name, extension),
             ERANGE);
    QCOMPARE(K::splitpath(nullptr, drive, folder, name, extension), EINVAL);
}

void tst_Platform::displaySizes()
{
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
        server.terminate();
        QVERIFY(server.waitForFinished());
        QVERIFY(getDisplayWidth() == 0 && getDiaplayHeight() == 0);
    }
    qunsetenv("DISPLAY");
    QCOMPARE(getDisplayWidth(), 0);
}

QTEST_GUILESS_MAIN(tst_Platform)
#include "tst_platform.moc"
