// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FuzzSupport.h"

#include "layer/table/LayoutSettings.h"

#include <OvCustomControl/OvKernel32.h>

#include <QAction>
#include <QDir>
#include <QRegularExpression>
#include <QSettings>
#include <QTextCodec>

using K = OvKernel32;

namespace {

/// What the program under test reads: a text, or a list with a NUL behind each.
template <typename Read>
std::wstring whole(Read read)
{
    static wchar_t buffer[5000];
    return {buffer, read(buffer, K::Dword(std::size(buffer)))};
}

/// A smaller buffer gets the start of it, in front of one NUL after a text, and two after a list.
template <typename Read>
void readInto(K::Dword size, K::Dword nuls, Read read)
{
    const std::wstring all = whole(read);
    const bool isCut = size <= all.size();
    const auto buffer = exactly(std::wstring(size, L'#'), size);
    const size_t count = read(buffer.get(), size);
    require(count == (!isCut ? all.size() : size < nuls ? 0 : size - nuls), "it tells how much");
    require(all.compare(0, count, buffer.get(), count) == 0 && !buffer[count], "it is the start");
    require(nuls < 2 || size < 2 || !buffer[isCut || all.empty() ? count + 1 : count - 1],
            "a list ends");
}

QString valueOf(const std::wstring &section, const std::wstring &key, const std::wstring &file,
                const wchar_t *fallback)
{
    return QString::fromStdWString(whole([&](wchar_t *buffer, K::Dword size) {
        return K::getPrivateProfileString(section.c_str(), key.c_str(), fallback, buffer, size,
                                          file.c_str());
    }));
}

/// All that is in sections, each entry behind the name of its section.
QStringList entriesOf(const std::wstring &file)
{
    QStringList names, entries;
    const std::wstring all = whole([&](wchar_t *buffer, K::Dword size) {
        return K::getPrivateProfileSectionNames(buffer, size, file.c_str());
    });
    const QStringList sections = QString::fromStdWString(all).split(QChar(0)); // the last is none
    for (const QString &name : sections) {
        if (names.contains(name, Qt::CaseInsensitive))
            continue;
        names.append(name);
        const std::wstring found = whole([&](wchar_t *buffer, K::Dword size) {
            return K::getPrivateProfileSection(name.toStdWString().c_str(), buffer, size,
                                               file.c_str());
        });
        const QStringList lines = QString::fromStdWString(found).split(QChar(0));
        for (const QString &entry : lines)
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
void change(const QString &path, const std::wstring &section, const std::wstring &key,
            const QString &value, bool isWhole)
{
    static const QRegularExpression quotes("^([\"'])(.*)\\1$");
    constexpr const wchar_t *none = L"\x1f"; // which is in no input
    const std::wstring file = path.toStdWString();
    const QByteArray before = contentOf(path);
    const QStringList entries = entriesOf(file);
    const bool wasThere = valueOf(section, key, file, none) != QChar(0x1f);
    const bool isDone = K::writePrivateProfileString(
            section.c_str(), key.c_str(), value.isNull() ? nullptr : value.toStdWString().c_str(),
            file.c_str());
    const QByteArray after = contentOf(path);
    require(isDone || after == before, "a failure changes nothing");
    if (!isDone || !isWhole)
        return;
    const auto [oldLines, lines] = difference(before.split('\n'), after.split('\n'));
    const bool isMarked = after.startsWith("\xef\xbb\xbf") && !before.startsWith("\xef\xbb\xbf");
    const bool isWide =
            QTextCodec::codecForUtfText(before, nullptr) && !before.startsWith("\xef\xbb\xbf");
    require(isWide || isMarked || after.startsWith(before) || (oldLines <= 1 && lines <= 2),
            "the rest stays byte for byte");
    const auto [gone, added] = difference(entries, entriesOf(file));
    if (value.isNull()) {
        require(gone == int(wasThere) && added == 0, "a key is removed");
    } else {
        require(gone <= int(wasThere) && added <= 1, "a key is set");
        require(valueOf(section, key, file, none) == value.trimmed().replace(quotes, "\\2"),
                "what is written is read");
    }
}

/// Anything may be in the file of settings.
void restoreLayout(const QDir &folder, const QByteArray &bytes)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    folder.mkdir("Brevik");
    writeFile(folder.filePath("Brevik/TessaViewer.conf"), bytes);
    QAction one(nullptr), other(nullptr);
    one.setObjectName("On");
    other.setObjectName("On");
    OvCc::LayoutSettings().restore(one);
    one.setChecked(!one.isChecked());
    OvCc::LayoutSettings().save(one);
    OvCc::LayoutSettings().restore(other);
    require(other.isChecked() == one.isChecked() && other.isCheckable() == one.isCheckable(),
            "a layout is kept");
}

} // namespace

/// An input is a file, then a section, a key and a value, apart by a byte that is in none of them.
void tryInput(size_t choice, const QByteArray &input)
{
    static const QTemporaryDir folder;
    static QTextCodec *const marked[] = {
            QTextCodec::codecForName("UTF-8"), QTextCodec::codecForName("UTF-16LE"),
            QTextCodec::codecForName("UTF-16BE"), QTextCodec::codecForName("UTF-32LE")};
    const QList<QByteArray> fields = input.split('\x1f');
    const auto text = [&](int field) { return QString::fromUtf8(fields.value(field).constData()); };
    const std::wstring section = text(1).toStdWString(), key = text(2).toStdWString();
    const size_t encoding = choice / 16;
    QByteArray bytes = fields.at(0);
    bool isWhole = !bytes.contains('\0') && !QTextCodec::codecForUtfText(bytes, nullptr);
    if (encoding < std::size(marked)) {
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        const QString content = QChar(QChar::ByteOrderMark) + QString::fromUtf8(bytes);
        isWhole = !content.contains(QChar(0));
        bytes = marked[encoding]->fromUnicode(content.constData(), content.size(), &state);
    }
    if (choice == 255)
        return restoreLayout(folder.path(), bytes);
    const QString path = folder.filePath("a.ini");
    writeFile(path, bytes);
    if (choice % 16 < 8) {
        change(path, section, key, fields.size() > 3 ? text(3) + "" : QString(), isWhole);
    } else {
        readInto(1 + K::Dword(input.size()) % 32, fields.size() > 2 ? 1 : 2,
                 [&, file = path.toStdWString()](wchar_t *buffer, K::Dword size) {
                     return K::getPrivateProfileString(fields.size() > 1 ? section.c_str()
                                                                         : nullptr,
                                                       fields.size() > 2 ? key.c_str() : nullptr,
                                                       L"none ", buffer, size, file.c_str());
                 });
    }
}
