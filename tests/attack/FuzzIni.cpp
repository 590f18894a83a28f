// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FuzzSupport.h"

#include "layer/table/LayoutSettings.h"

#include <OvCustomControl/OvKernel32.h>

#include <QAction>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <map>

using K = OvKernel32;

namespace {

struct AnyCase
{
    bool operator()(const QString &one, const QString &other) const
    {
        return one.compare(other, Qt::CaseInsensitive) < 0;
    }
};
using Entries = std::map<QString, QString, AnyCase>;
using Sections = std::map<QString, Entries, AnyCase>;

K::Dword sizeOfBuffers = 1;

/// Reads into a buffer of that size, and compares with what a large one gets.
QString readExactly(const wchar_t *section, const wchar_t *key, const std::wstring &file)
{
    static wchar_t large[10000];
    const auto read = [&](wchar_t *buffer, K::Dword size) {
        return K::getPrivateProfileString(section, key, L"none ", buffer, size, file.c_str());
    };
    const K::Dword all = read(large, 10000), size = sizeOfBuffers, nuls = section && key ? 1 : 2;
    const bool isCut = size <= all;
    const auto buffer = exactly(std::wstring(size, L'#'), size);
    const K::Dword count = read(buffer.get(), size);
    require(count == (!isCut ? all : size < nuls ? 0 : size - nuls), "it tells how much it is");
    require(std::equal(large, large + count, buffer.get()) && !buffer[count], "it is the start");
    require(nuls < 2 || size < 2 || !buffer[isCut || !all ? count + 1 : count - 1], "a list ends");
    return QString::fromWCharArray(large, int(all));
}

QStringList listOf(const QString &list)
{
    return list.split(QChar(0), Qt::SkipEmptyParts);
}

Sections sectionsIn(const std::wstring &file)
{
    Sections sections;
    const QStringList names = listOf(readExactly(nullptr, nullptr, file));
    for (const QString &name : names) {
        const std::wstring section = name.toStdWString();
        Entries &entries = sections[name];
        const QStringList keys = listOf(readExactly(section.c_str(), nullptr, file));
        for (const QString &key : keys)
            entries[key] = readExactly(section.c_str(), key.toStdWString().c_str(), file);
    }
    return sections;
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

/// Whether what lies between the lines that are alike at both ends is one line, and one or two now.
bool isOneChange(const QByteArray &before, const QByteArray &after)
{
    const QList<QByteArray> old = before.split('\n'), now = after.split('\n');
    const auto head = std::mismatch(old.begin(), old.end(), now.begin(), now.end());
    using Back = std::reverse_iterator<QList<QByteArray>::const_iterator>;
    const auto tail =
            std::mismatch(Back(old.end()), Back(head.first), Back(now.end()), Back(head.second));
    return tail.first.base() - head.first <= 1 && tail.second.base() - head.second <= 2;
}

/// Sets a key, or removes it without a value, and looks that nothing else is changed.
void change(const QString &path, const QString &section, const QString &key, const QString &value)
{
    const std::wstring file = path.toStdWString();
    const QByteArray before = content(path);
    Sections expected = sectionsIn(file);
    const bool isDone = K::writePrivateProfileString(
            section.toStdWString().c_str(), key.toStdWString().c_str(),
            value.isNull() ? nullptr : value.toStdWString().c_str(), file.c_str());
    const QByteArray after = content(path);
    require(isDone || after == before, "a failure changes nothing");
    const bool isWide = before.startsWith("\xff\xfe") || before.startsWith("\xfe\xff");
    const bool isMarked = after.startsWith("\xef\xbb\xbf") && !before.startsWith("\xef\xbb\xbf");
    require(isWide || isMarked || after.startsWith(before) || isOneChange(before, after),
            "the rest stays byte for byte");
    // Other names read as something else.
    static const QRegularExpression plain("^[^]\\[;=\\s]+$"), quotes("^([\"'])(.*)\\1$");
    if (!isDone || !plain.match(section).hasMatch() || !plain.match(key).hasMatch())
        return;
    Sections found = sectionsIn(file);
    if (!value.isNull())
        expected[section][key] = value.trimmed().replace(quotes, "\\2");
    for (Sections *sections : {&expected, &found}) {
        if (value.isNull())
            (*sections)[section].erase(key); // one that is there twice is there once now
    }
    require(found == expected, "what is written is read, and the rest is as before");
}

/// Anything may be in the file of settings.
void restoreLayout(const QByteArray &bytes)
{
    static const QTemporaryDir folder(quickFolder() + "/settings-XXXXXX");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    QDir(folder.path()).mkdir("Brevik");
    QFile file(folder.filePath("Brevik/TessaViewer.conf"));
    require(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size(), "it is there");
    file.close();
    QAction one(nullptr), other(nullptr);
    for (QAction *action : {&one, &other})
        action->setObjectName("On");
    OvCc::LayoutSettings().restore(one);
    one.setChecked(!one.isChecked());
    OvCc::LayoutSettings().save(one);
    OvCc::LayoutSettings().restore(other);
    require(other.isChecked() == one.isChecked() && other.isCheckable() == one.isCheckable(),
            "a layout is kept");
}

QByteArray makeInput(QRandomGenerator &random)
{
    static const char *const lines[] = {"[a]",       "[ B ] x",        "[\xc3\xa4]", "x=1",
                                        "X = \"2\"", "; [a]=1",        "",           "y=\xe4",
                                        "no sign",   "On\\isChecked=x"};
    static const char *const names[] = {"a", "b",  "\xc3\xa4", " A ", "x",
                                        "y", "c=", ";d",       "",    "'\xe6\x96\x87'"};
    static const char *const marks[] = {"", "", "", "\xef\xbb\xbf", "\xff\xfe"};
    const auto oneOf = [&](auto &list) { return list[random.bounded(int(std::size(list)))]; };
    QByteArray input(oneOf(marks));
    for (int count = random.bounded(10); count > 0; --count)
        input += oneOf(lines) + QByteArray(random.bounded(9) ? "\r\n" : "\n");
    if (input.startsWith('\xff')) {
        const QString text = QString::fromLatin1(input.mid(2));
        input.append(reinterpret_cast<const char *>(text.utf16()), 2 * text.size());
    }
    for (int count = random.bounded(7); count > 0; --count)
        input += '\x1f' + QByteArray(oneOf(names));
    return input + char(random.bounded(256));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return writeCorpus(*argc, *argv, makeInput);
}

/// An input is a file, then sections, keys and values, apart by a byte that is in none of them.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QTemporaryDir folder(quickFolder() + "/ini-XXXXXX");
    if (size < 1 || size > 1024)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size) - 1);
    sizeOfBuffers = 1 + data[size - 1] % 32;
    const QList<QByteArray> fields = bytes.split('\x1f');
    if (fields.size() == 1 && data[size - 1] % 16 == 0)
        restoreLayout(bytes);
    QFile file(folder.filePath("a.ini"));
    require(file.open(QFile::WriteOnly) && file.write(fields.at(0)) >= 0, "the file is there");
    file.close();
    for (int at = 1; at + 1 < fields.size() && at < 9; at += 3) {
        const QByteArray value = fields.value(at + 2); // none removes the key
        change(file.fileName(), QString::fromUtf8(fields.at(at).constData()),
               QString::fromUtf8(fields.at(at + 1).constData()),
               at + 2 < fields.size() ? QString::fromUtf8(value.constData()) + "" : QString());
    }
    return 0;
}
