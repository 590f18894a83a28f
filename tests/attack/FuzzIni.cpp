// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FuzzSupport.h"

#include <OvCustomControl/OvKernel32.h>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextCodec>

#include <algorithm>
#include <vector>

using K = OvKernel32;

namespace {

/// What a function reads with these words: a text, or a list with a NUL behind each.
template <typename Read, typename... Words>
std::wstring whole(const std::wstring &file, Read read, Words... words)
{
    static wchar_t buffer[5000];
    return {buffer, read(words..., buffer, K::Dword(std::size(buffer)), file.c_str())};
}

/// A smaller buffer gets the start of it, in front of one NUL after a text, and two after a list.
void readInto(K::Dword size, const std::wstring &file, const wchar_t *section, const wchar_t *key)
{
    const std::wstring all = whole(file, K::getPrivateProfileString, section, key, L"none ");
    const K::Dword nuls = section && key ? 1 : 2;
    const bool isCut = size <= all.size();
    std::vector<wchar_t> buffer(size, L'#');
    const size_t count =
            K::getPrivateProfileString(section, key, L"none ", buffer.data(), size, file.c_str());
    require(count == (!isCut ? all.size() : size < nuls ? 0 : size - nuls), "it tells how much");
    require(all.compare(0, count, buffer.data(), count) == 0 && !buffer[count], "it is the start");
    require(nuls < 2 || size < 2 || !buffer[isCut || all.empty() ? count + 1 : count - 1],
            "a list ends");
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

/// All that is in sections, each entry behind the name of its section.
QStringList entriesOf(const std::wstring &file)
{
    const auto parts = [&file](auto... what) -> const QStringList {
        // Qt takes a U+FEFF in front for no part of the text. The last one is none.
        return QString::fromStdWString(L' ' + whole(file, what...)).mid(1).split(QChar(0));
    };
    QStringList names, entries;
    for (const QString &name : parts(K::getPrivateProfileSectionNames)) {
        if (names.contains(name, Qt::CaseInsensitive))
            continue;
        names.append(name);
        for (const QString &entry : parts(K::getPrivateProfileSection, name.toStdWString().c_str()))
            entries.append(name + '\n' + entry);
        entries.removeLast();
    }
    return entries;
}

/// How many lie between those that are alike at both ends, before and now.
template <typename List>
std::pair<int, int> difference(const List &old, const List &now)
{
    const auto head = std::mismatch(old.begin(), old.end(), now.begin(), now.end());
    using Back = std::reverse_iterator<typename List::const_iterator>;
    const auto tail =
            std::mismatch(Back(old.end()), Back(head.first), Back(now.end()), Back(head.second));
    return {int(tail.first.base() - head.first), int(tail.second.base() - head.second)};
}

/// Sets a key, or removes it without a value, and looks that nothing else is changed.
/// @param isWhole whether the file has no NUL and no half a character
void change(const QString &path, const wchar_t *section, const wchar_t *key, const wchar_t *value,
            bool isWhole)
{
    static const QRegularExpression quotes("^([\"'])(.*)\\1$");
    constexpr const wchar_t *none = L"\x1f"; // which is in no input
    const std::wstring file = path.toStdWString();
    const auto found = [&] { return whole(file, K::getPrivateProfileString, section, key, none); };
    const QByteArray before = contentOf(path);
    const QStringList entries = entriesOf(file);
    const int present = found() == none ? 0 : 1;
    const bool isDone = K::writePrivateProfileString(section, key, value, file.c_str());
    const QByteArray after = contentOf(path);
    require(isDone || after == before, "a failure changes nothing");
    if (!isDone || !isWhole)
        return;
    const auto [oldLines, lines] = difference(before.split('\n'), after.split('\n'));
    const bool isMarked = before.startsWith("\xef\xbb\xbf"),
               isWide = !isMarked && QTextCodec::codecForUtfText(before, nullptr);
    require(isWide || isMarked != after.startsWith("\xef\xbb\xbf") || after.startsWith(before)
                    || (oldLines <= 1 && lines <= 2),
            "the rest stays byte for byte");
    const auto [gone, added] = difference(entries, entriesOf(file));
    require(value ? gone <= present && added <= 1 : gone == present && added == 0,
            "a key is set or removed");
    if (value)
        require(QString::fromStdWString(found())
                        == QString::fromWCharArray(value).trimmed().replace(quotes, "\\2"),
                "what is written is read");
}

} // namespace

/// The content is that of a file, then a section, a key and a value, apart by a byte that is in none of
/// them.
void tryInput(Choices &choices, const QByteArray &content)
{
    static const QTemporaryDir folder;
    constexpr std::array codecs{"", "", "UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE"};
    const QTextCodec *codec = QTextCodec::codecForName(choices.of(codecs));
    const QList<QByteArray> fields = content.split('\x1f');
    const auto word = [&fields](int field) {
        return QString::fromUtf8(fields.value(field).constData()).toStdWString();
    };
    const std::wstring section = word(1), key = word(2), value = word(3);
    const bool isWhole = !fields[0].contains('\0')
                         && (codec || !QTextCodec::codecForUtfText(fields[0], nullptr));
    QFile file(folder.filePath("a.ini"));
    file.open(QFile::WriteOnly);
    file.write(codec ? QTextEncoder(codec).fromUnicode(QString::fromUtf8(fields[0])) : fields[0]);
    file.close();
    const int given = choices.below(3);
    if (choices.ConsumeBool())
        readInto(1 + K::Dword(choices.below(32)), file.fileName().toStdWString(),
                 given < 2 ? section.c_str() : nullptr, given < 1 ? key.c_str() : nullptr);
    else
        change(file.fileName(), section.c_str(), key.c_str(), given < 2 ? value.c_str() : nullptr,
               isWhole);
}
