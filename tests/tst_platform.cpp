// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Limit.h"
#include "Support.h"

#include <OvCustomControl/DisplaySize.h>
#include <OvCustomControl/OvKernel32.h>

#include <QDir>
#include <QJsonArray>
#include <QTemporaryDir>

#include <cerrno>
#include <thread>

#include <dlfcn.h>
#include <sys/stat.h>

using K = OvKernel32;

namespace {

constexpr K::Dword readWrite = K::GenericRead | K::GenericWrite;

constexpr K::Dword untouched = 12345;

/// The last error of a call that returned @p result, which has to be @p failure.
template <typename Result>
K::Dword errorOf(Result result, Result failure = Result())
{
    const K::Dword error = K::getLastError();
    K::setLastError(untouched);
    return result == failure ? error : ~0U;
}

/// What @p fill leaves in a buffer of @p size, with | for NUL, and what it returns and sets as error.
template <typename Fill>
QString filled(K::Dword size, Fill fill)
{
    std::wstring buffer(size + 1, L'#');
    K::setLastError(untouched);
    const auto count = fill(buffer.data(), size);
    const K::Dword error = K::getLastError();
    buffer.resize(buffer.find_last_not_of(L'#') + 1);
    const QString text = QString::fromStdWString(buffer).replace(QChar(0), '|');
    return text + QString::number(count)
           + (error == untouched ? QString() : QString(" E%1").arg(error));
}

} // namespace

class tst_Platform : public QObject
{
    Q_OBJECT

private slots:
    void init() { K::setLastError(untouched); }
    void errors();
    void modules();
    void dispositions();
    void filePositions();
    void copyMoveDelete();
    void pathMapping();
    void findFiles();
    void badHandlesAndPaths();
    void profileKeepsTheFile();
    void profileOfNoUse();
    void profileBuffers();
    void codePagesMatchPython();
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
    QByteArray read(const char *name) const { return fileContent(path(name)); }
    QTemporaryDir m_dir;
};

void tst_Platform::errors()
{
    const auto format = [](K::Dword flags, K::Dword error, K::Dword size) {
        return filled(size, [=](wchar_t *text, K::Dword) {
            return K::formatMessage(flags, nullptr, error, 0, text, size, nullptr);
        });
    };
    QCOMPARE(format(0x1000, 2, 28), "0 E122");
    QCOMPARE(format(0x1200, 2, 29), "No such file or directory.\r\n|28");
    QCOMPARE(format(0x1000, 99999, 64), "0 E317");
    QCOMPARE(format(0x1100, 2, 64), "0 E50");
    QCOMPARE(errorOf(K::setTextColor(0, 0), K::invalidDword), 50U);
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
    QCOMPARE(errorOf(K::getProcAddress(module, "no such")), 127U);
    QVERIFY(K::freeLibrary(module) && K::freeLibrary(module));
    QCOMPARE(errorOf(K::freeLibrary(module)), 6U);
    QCOMPARE(errorOf(K::loadLibrary(L"no-such.dll")), 126U);

    const K::Handle calling = K::loadLibrary(L"" OVCC_CALLING_MODULE);
    QCOMPARE(qgetenv("OVCC_MODULE"), QByteArray("loaded"));
    QVERIFY(K::freeLibrary(calling));
    QCOMPARE(qgetenv("OVCC_MODULE"), QByteArray("unloaded"));

    const auto program = [](wchar_t *file, K::Dword size) {
        return K::getModuleFileName(0, file, size);
    };
    const QString path = QCoreApplication::applicationFilePath();
    QCOMPARE(filled(300, program), QString("%1|%2 E0").arg(path, QString::number(path.size())));
    QCOMPARE(filled(4, program), path.left(3) + "|4 E122");
}

void tst_Platform::dispositions()
{
    const K::Dword rows[][4] = {
            // disposition, errors for a file that is missing and for one that is there, its size
            {0, 87, 87, 3}, {1, 0, 80, 3},  {2, 0, 183, 0},
            {3, 2, 0, 3},   {4, 0, 183, 3}, {5, 2, 0, 0}};
    for (const auto &[disposition, errorOfNew, errorOfOld, size] : rows) {
        write("old", "abc");
        QFile::remove(path("new"));
        for (const char *name : {"new", "old"}) {
            const K::Dword expected = *name == 'n' ? errorOfNew : errorOfOld;
            const K::Handle file = open(name, readWrite, disposition);
            QCOMPARE(K::getLastError(), expected);
            QCOMPARE(K::closeHandle(file) != 0, expected == 0 || expected == 183);
        }
        QCOMPARE(K::Dword(read("old").size()), size);
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
    QCOMPARE(errorOf(K::setFilePointer(file, -9, nullptr, 0), K::invalidDword), 131U);
    high = 0;
    QVERIFY(K::setFilePointer(file, 0, &high, K::FileCurrent) == 5 && high == 1);
    QCOMPARE(errorOf(K::readFile(file, nullptr, 1, &count, nullptr)), 87U);

    const K::Handle reader = open("file", K::GenericRead);
    QCOMPARE(errorOf(K::writeFile(reader, "x", 1, &count, nullptr)), 5U);
    QVERIFY(K::closeHandle(file) && K::closeHandle(reader));
}

void tst_Platform::copyMoveDelete()
{
    write("a", "first");
    write("b", "second");
    const std::wstring one = at("a"), other = at("b"), in = at("Folder");
    const wchar_t *const a = one.c_str(), *const b = other.c_str(), *const folder = in.c_str();
    QCOMPARE(errorOf(K::copyFile(a, b, true)), 80U);
    QCOMPARE(read("b"), QByteArray("second"));
    QVERIFY(K::copyFile(a, b, false));
    QCOMPARE(read("b"), QByteArray("first"));
    QCOMPARE(errorOf(K::moveFile(a, b)), 183U);
    QVERIFY(K::deleteFile(a) && K::moveFile(b, at("B").c_str()));
    QCOMPARE(QDir(m_dir.path()).entryList({"a", "b"}, QDir::Files), QStringList("B"));

    QVERIFY(K::setFileAttributes(b, K::FileAttributeReadOnly));
    QCOMPARE(K::getFileAttributes(b), 1U);
    QCOMPARE(errorOf(K::deleteFile(b)), 5U);
    QCOMPARE(errorOf(open("b", K::GenericWrite), K::invalidHandle), 5U);
    QVERIFY(K::setFileAttributes(b, K::FileAttributeNormal) && K::deleteFile(b));
    QCOMPARE(errorOf(K::deleteFile(b)), 2U);

    QVERIFY(K::createDirectory(folder, nullptr));
    QCOMPARE(errorOf(K::createDirectory(folder, nullptr)), 183U);
    QCOMPARE(errorOf(K::deleteFile(folder)), 5U);
    write("Folder/x", {});
    QCOMPARE(errorOf(K::removeDirectory(folder)), 145U);
    QVERIFY(K::deleteFile(at("folder\\X").c_str()) && K::removeDirectory(folder));
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
    QCOMPARE(errorOf(K::getFileAttributes(L"P:\\pläne"), K::invalidDword), 3U);

    wchar_t before[300], *part = nullptr;
    QVERIFY(K::getCurrentDirectory(300, before));
    QVERIFY(K::setCurrentDirectory(at("PLÄNE").c_str()));
    const QString here = QDir(path("Pläne")).canonicalPath();
    const auto current = [](wchar_t *to, K::Dword size) {
        return K::getCurrentDirectory(size, to);
    };
    QCOMPARE(filled(300, current), QString("%1|%2").arg(here, QString::number(here.size())));
    const auto whole = [&](wchar_t *to, K::Dword size) {
        const K::Dword count = K::getFullPathName(L"C:x\\..\\y.txt", size, to, &part);
        return part == to + here.size() + 1 ? count : 0;
    };
    QCOMPARE(filled(300, whole), QString("%1/y.txt|%2").arg(here).arg(here.size() + 6));
    QVERIFY(K::setCurrentDirectory(before));

    const auto temporary = [](wchar_t *to, K::Dword size) { return K::getTempPath(size, to); };
    const K::Dword needed = K::getTempPath(0, nullptr);
    QCOMPARE(filled(needed - 1, temporary), QString::number(needed));
    QVERIFY(filled(needed, temporary).endsWith("/|" + QString::number(needed - 1)));
}

void tst_Platform::findFiles()
{
    for (const char *name : {"a.txt", "B.TXT", "ab.txt", "c[1].txt", "none"})
        write(name, "12345");
    K::FindData data;
    const auto find = [&](const char *pattern) {
        QString names;
        const K::Handle handle = K::findFirstFile(at(pattern).c_str(), &data);
        for (bool isFound = handle != K::invalidHandle; isFound;
             isFound = K::findNextFile(handle, &data))
            names += QString::fromWCharArray(data.fileName) + ' ';
        const QString all = names + QString::number(K::getLastError());
        return K::closeHandle(handle) || K::findClose(handle) == names.isEmpty() ? "?" : all;
    };
    QCOMPARE(find("*.txt"), "B.TXT a.txt ab.txt c[1].txt 18");
    QCOMPARE(find("?.txt"), "B.TXT a.txt 18");
    QCOMPARE(find("C[1]*"), "c[1].txt 18");
    QVERIFY(find("*.*").contains("none"));
    QCOMPARE(find("no*where"), "2");
    QCOMPARE(find("no-folder/*"), "3");
    QCOMPARE(find("none"), "none 18");
    QVERIFY(data.fileSizeLow == 5 && data.fileAttributes == K::FileAttributeNormal);
    const qint64 ticks = qint64(data.lastWriteTime.high) << 32 | data.lastWriteTime.low;
    QCOMPARE(ticks / 10000 - 11644473600000,
             QFileInfo(path("none")).lastModified().toMSecsSinceEpoch());
}

void tst_Platform::badHandlesAndPaths()
{
    const K::Handle closed = open("file");
    QVERIFY(K::closeHandle(closed));
    K::Dword count;
    K::FindData data;
    char byte;
    constexpr K::Dword none = K::invalidDword;
    using Errors = QVector<K::Dword>;
    for (const K::Handle bad : {K::Handle(0), K::invalidHandle, closed, K::Handle(3)}) {
        QCOMPARE(Errors({errorOf(K::readFile(bad, &byte, 1, &count, nullptr)),
                         errorOf(K::writeFile(bad, &byte, 1, &count, nullptr)),
                         errorOf(K::getFileSize(bad, nullptr), none),
                         errorOf(K::setFilePointer(bad, 0, nullptr, 0), none),
                         errorOf(K::closeHandle(bad)), errorOf(K::findNextFile(bad, &data)),
                         errorOf(K::findClose(bad)), errorOf(K::freeLibrary(bad))}),
                 Errors(8, 6));
    }

    const wchar_t surrogate[] = {wchar_t(0xd800), 0};
    const std::pair<const wchar_t *, K::Dword> paths[] = {
            {nullptr, 87}, {L"", 3}, {surrogate, 123}, {L"\\\\server\\share", 53}, {L"Q:\\x", 3}};
    for (const auto &[name, error] : paths) {
        QCOMPARE(Errors({errorOf(K::createFile(name, 0, 0, nullptr, 3, 0, 0), K::invalidHandle),
                         errorOf(K::findFirstFile(name, &data), K::invalidHandle),
                         errorOf(K::getFileAttributes(name), none),
                         errorOf(K::copyFile(name, L"x", 1)), errorOf(K::deleteFile(name)),
                         errorOf(K::createDirectory(name, nullptr)),
                         errorOf(K::setCurrentDirectory(name)),
                         errorOf(K::getFullPathName(name, 0, nullptr, nullptr)),
                         errorOf(K::loadLibrary(name)),
                         errorOf(K::writePrivateProfileString(L"a", L"b", L"c", name))}),
                 Errors(10, error));
    }
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
    const wchar_t *const refused[][3] = {{L"b", L"y", L"3\n[c]"}, {L"c]", L"x", L"]"},
                                         {L"b", L"", L"]"},       {L"b", L"p=q", L"]"},
                                         {L"b", L";x", L"]"},     {L"b", L"[x", L"]"}};
    const std::wstring name = at("keep.ini");
    const wchar_t *const file = name.c_str();
    for (const auto &[before, after] : rows) {
        write("keep.ini", before);
        QVERIFY(K::writePrivateProfileString(L"b", L"y", L"2", file));
        QVERIFY(K::writePrivateProfileString(L"A", L"x", nullptr, file));
        QCOMPARE(errorOf(K::getPrivateProfileInt(L" B ", L"y", 7, file), 2U), untouched);
        for (const auto &[section, key, value] : refused)
            QCOMPARE(errorOf(K::writePrivateProfileString(section, key, value, file)), 87U);
        QCOMPARE(errorOf(K::writePrivateProfileSection(L"b", L"x=1\0[c]\0", file)), 87U);
        QCOMPARE(read("keep.ini"), after);
        if (before.startsWith("[\xe4") || before.endsWith(";\xc3")) // Latin-1
            QCOMPARE(errorOf(K::writePrivateProfileString(L"b", L"y", L"\x6587", file)), 1113U);
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
    const std::pair<const char *, K::Dword> refused[] = {
            {"folder.ini", 5}, {"socket.ini", 5}, {"broken.ini", 1117}, {"no/file.ini", 3}};
    for (const auto &[name, error] : refused)
        QCOMPARE(errorOf(set(name)), error);
    QVERIFY(!QFileInfo(path("socket.ini")).isFile() && QFileInfo(path("broken.ini")).isSymLink());

    // Without a descriptor, or room for more than a byte, the file is what it was. Nobody can know then
    // that the name is taken.
    write("large", "large");
    const std::wstring large = at("large"), file = at("file.ini"), same = at("FILE.ini");
    QVector<K::Dword> errors;
    {
        const Limit files(RLIMIT_NOFILE, 0);
        errors << errorOf(set("file.ini")) << errorOf(K::moveFile(large.c_str(), same.c_str()));
    }
    {
        const Limit size(RLIMIT_FSIZE, 1);
        errors << errorOf(set("file.ini")) << errorOf(K::copyFile(large.c_str(), file.c_str(), 0));
    }
    QCOMPARE(errors, QVector<K::Dword>({4, 4, 112, 112}));
    QCOMPARE(read("file.ini"), QByteArray("[b]\ny=1\n"));
    QVERIFY(set("link.ini") && QFileInfo(path("link.ini")).isSymLink());
    QCOMPARE(read("file.ini"), QByteArray("[b]\ny=1\nx=2\n"));
}

void tst_Platform::profileBuffers()
{
    const std::wstring name = at("file.ini");
    const wchar_t *const file = name.c_str();
    write("file.ini", "[one]\na= \" q \"\nbb=-12x\n;no=1\nplain\n[two]\nc =\xc3\xa4=b;\nd=");
    const std::tuple<const wchar_t *, const wchar_t *, K::Dword, const char *> rows[] = {
            {L"ONE", L"A", 9, " q |3"},     {L"one", L"a", 3, " q|2"},
            {L"one", L"no", 9, "dflt|4"},   {L"one", nullptr, 9, "a|bb||5"},
            {L"one", nullptr, 5, "a|b||3"}, {nullptr, nullptr, 9, "one|two||8"},
            {nullptr, nullptr, 1, "|0"},    {L"ten", nullptr, 4, "||0"},
            {L"two", L"C", 9, "ä=b;|4"},    {L"two", L"d", 9, "|0"}};
    for (const auto &row : rows) {
        const auto get = [&](wchar_t *buffer, K::Dword size) {
            return K::getPrivateProfileString(std::get<0>(row), std::get<1>(row), L"dflt  ", buffer,
                                              size, file);
        };
        QCOMPARE(filled(std::get<2>(row), get), std::get<3>(row));
    }
    QCOMPARE(K::getPrivateProfileInt(L"one", L"bb", 7, file), K::Dword(-12));
    QVERIFY(K::writePrivateProfileSection(L"one", L"k=1\0l=ä\0", file));
    QCOMPARE(read("file.ini"), QByteArray("[one]\nk=1\nl=ä\n[two]\nc =ä=b;\nd="));
    QVERIFY(K::writePrivateProfileString(L"one", nullptr, nullptr, file));
    QCOMPARE(read("file.ini"), QByteArray("[two]\nc =ä=b;\nd="));
    QCOMPARE(errorOf(K::getPrivateProfileSectionNames(nullptr, 9, file)), 87U);
    QCOMPARE(errorOf(K::writePrivateProfileSection(L"a\nb", L"k=1\0", file)), 87U);
    QCOMPARE(errorOf(K::writePrivateProfileSection(L"a", L"k\n=1\0", file)), 87U);
}

void tst_Platform::codePagesMatchPython()
{
    const QJsonObject pages = python("codepages.py");
    QCOMPARE(pages.size(), 13);
    for (auto page = pages.begin(); page != pages.end(); ++page) {
        const K::Dword number = page.key().toUInt();
        QByteArray bytes = QByteArray::fromHex(page.value()[0].toString().toLatin1());
        std::wstring wide(size_t(bytes.size()), 0);
        for (const char *direction : {"there", "back"}) {
            wide.resize(size_t(K::multiByteToWideChar(number, K::MbErrInvalidChars, bytes,
                                                      bytes.size(), wide.data(), bytes.size())));
            QVERIFY2(QString::fromStdWString(wide) == page.value()[1].toString(), direction);
            QCOMPARE(K::wideCharToMultiByte(number, 0, wide.data(), int(wide.size()), bytes.data(),
                                            bytes.size(), nullptr, nullptr),
                     bytes.size());
        }
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
    QCOMPARE(errorOf(decode(437, 0, "a", 1, 8)), 87U);
    QCOMPARE(errorOf(decode(1252, 0, nullptr, 1, 8)), 87U);
    QCOMPARE(errorOf(decode(1252, 0, "a", 0, 8)), 87U);
    QCOMPARE(errorOf(decode(1252, 0, "a", 1, -1)), 87U);
    QCOMPARE(errorOf(decode(1252, 0, "ab", -1, 2)), 122U);
    QCOMPARE(errorOf(decode(65001, 1, "a", 1, 8)), 1004U);
    QCOMPARE(errorOf(decode(932, 8, "\x81", 1, 8)), 1113U);
    QCOMPARE(errorOf(decode(932, 8, "\x85\x40", 2, 8)), 1113U);
    QCOMPARE(errorOf(K::multiByteToWideChar(1252, 0, "a", 1, nullptr, 8)), 87U);

    const wchar_t surrogate[] = {wchar_t(0xdc00), 0};
    QCOMPARE(encode(65001, 0, surrogate, 8), 4);
    QCOMPARE(QByteArray(bytes), QByteArray("\xef\xbf\xbd"));
    QCOMPARE(errorOf(encode(65001, 0x80, surrogate, 8)), 1113U);
    QCOMPARE(errorOf(encode(65001, 0, surrogate, 3)), 122U);
    QCOMPARE(errorOf(encode(1252, 0x80, L"a", 8)), 1004U);
    K::Bool used = 0;
    QVERIFY(encode(1252, 0, surrogate, 8) == 2 && bytes[0] == '?');
    QCOMPARE(K::wideCharToMultiByte(1252, 0, L"\x0101", 1, bytes, 8, "_", &used), 1);
    QVERIFY(used && bytes[0] == '_'); // not the 'a' that is like it
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
    K::enterCriticalSection(&section);
    QCOMPARE(K::getLastError(), 87U);
}

void tst_Platform::environment()
{
    for (const auto &[locale, number, name] : {std::tuple(L"de_AT.UTF-8", 0x0c07, "de-AT"),
                                               {L"sw_KE.UTF-8", 0x1000, "sw-KE"},
                                               {L"C.UTF-8", 0x7f, ""}}) {
        const K::Dword size = K::Dword(qstrlen(name) + 1);
        QVERIFY(K::setEnvironmentVariable(L"LC_ALL", locale));
        QCOMPARE(K::getUserDefaultLangID(), K::Word(number));
        QCOMPARE(filled(size - 1, K::getUserDefaultLocaleName), size > 1 ? "0 E122" : "0 E87");
        QCOMPARE(filled(size, K::getUserDefaultLocaleName), QString("%1|%2").arg(name).arg(size));
    }

    const wchar_t *const name = L"OVCC_TÄST";
    const auto get = [](const wchar_t *variable, K::Dword size) {
        return filled(size, [=](wchar_t *to, K::Dword) {
            return K::getEnvironmentVariable(variable, to, size);
        });
    };
    QVERIFY(K::setEnvironmentVariable(name, L"äb") && qgetenv("OVCC_T\xc3\x84ST") == "äb");
    QCOMPARE(QStringList({get(name, 0), get(name, 2), get(name, 3)}),
             QStringList({"3", "3", "äb|2"}));
    QCOMPARE(errorOf(K::getEnvironmentVariable(name, nullptr, 3)), 87U);
    QVERIFY(K::setEnvironmentVariable(name, L""));
    QCOMPARE(QStringList({get(name, 0), get(name, 1)}), QStringList({"1", "|0"}));
    QVERIFY(K::setEnvironmentVariable(name, nullptr));
    for (const wchar_t *missing : {name, L"", L"a=b"})
        QCOMPARE(get(missing, 3), "0 E203");
    QCOMPARE(get(nullptr, 3), "0 E87");
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
    QProcess server;
    server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1366x768x24", "-noreset"});
    QTRY_VERIFY_WITH_TIMEOUT(server.canReadLine(), 30000);
    qputenv("DISPLAY", ':' + server.readLine().trimmed());
    QVERIFY(getDisplayWidth() == 1366 && getDiaplayHeight() == 768);
    server.terminate();
    QVERIFY(server.waitForFinished());
    QVERIFY(getDisplayWidth() == 0 && getDiaplayHeight() == 0);
    qunsetenv("DISPLAY");
    QCOMPARE(getDisplayWidth(), 0);
}

QTEST_GUILESS_MAIN(tst_Platform)
#include "tst_platform.moc"
