// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Kernel32Errors.h"
#include "Kernel32Paths.h"
#include "ReplaceFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTextCodec>
#include <QVector>

#include <algorithm>
#include <cwchar>
#include <functional>
#include <mutex>
#include <optional>

using namespace OvCc::Kernel32;
using Dword = OvKernel32::Dword;

namespace {

/// A line with its end, as it is in the file and as it reads. What is not changed goes back as it
/// came, even where it is no text in the file's encoding.
struct Line
{
    QByteArray bytes;
    QString text;
};
using Lines = QVector<Line>;

/// An INI file as its lines.
struct Profile
{
    QString path; ///< null if the last error is set; the file itself may be missing
    QTextCodec *codec = QTextCodec::codecForName("UTF-8");
    QByteArray mark;
    QString lineEnd = QStringLiteral("\r\n");
    Lines lines;
    bool isEncodable = true; ///< whether the encoding has all that was added

    QByteArray encoded(const QString &text) const
    {
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        return codec->fromUnicode(text.constData(), text.size(), &state);
    }

    QString decoded(const QByteArray &bytes) const
    {
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        return codec->toUnicode(bytes.constData(), bytes.size(), &state);
    }

    /// Where the first @p character from the byte @p from on ends; at the end if there is none.
    int endOf(char character, const QByteArray &bytes, int from = 0) const
    {
        const QByteArray wanted = encoded(QString(QLatin1Char(character)));
        int at = bytes.indexOf(wanted, from);
        while (at >= 0 && at % wanted.size() != 0)
            at = bytes.indexOf(wanted, at + 1);
        return at < 0 ? bytes.size() : at + wanted.size();
    }

    /// Half a character at the end of a broken file is filled up first.
    void append(Line &line, const QString &text)
    {
        const int unit = encoded(QStringLiteral(" ")).size();
        while (line.bytes.size() % unit != 0)
            line.bytes.append('\0');
        isEncodable = isEncodable && codec->canEncode(text);
        line.bytes += encoded(text);
        line.text = decoded(line.bytes);
    }
};

/// The lines of a section from the one after its header.
struct Range
{
    int begin, end;
};

QString named(const wchar_t *text)
{
    return QString::fromWCharArray(text).trimmed();
}

bool isHeader(const QString &line)
{
    const QString text = line.trimmed();
    return text.startsWith('[') && text.contains(']');
}

QString sectionName(const QString &line)
{
    return isHeader(line) ? line.section('[', 1).section(']', 0, 0).trimmed() : QString();
}

/// The text without the space around it; empty for a comment.
QString content(const QString &line)
{
    const QString text = line.trimmed();
    return text.startsWith(';') ? QString() : text;
}

/// The name before the equals sign; empty for another line.
QString keyName(const QString &line)
{
    const QString text = content(line);
    return text.left(std::max(int(text.indexOf('=')), 0)).trimmed();
}

QString valueText(const QString &line)
{
    return line.mid(line.indexOf('=') + 1).trimmed();
}

QString entry(const QString &line)
{
    const QString key = keyName(line);
    return key.isEmpty() ? content(line) : key + '=' + valueText(line);
}

/// What @p part makes of each line of @p range, as far as it makes something.
QStringList partsOf(const Lines &lines, Range range, QString (*part)(const QString &line))
{
    QStringList parts;
    for (int line = range.begin; line < range.end; ++line)
        parts.append(part(lines.at(line).text));
    parts.removeAll(QString());
    return parts;
}

/// Begins at 0 if there is no such section.
Range findSection(const Lines &lines, const QString &section)
{
    const auto isAnyHeader = [](const Line &line) { return isHeader(line.text); };
    for (int line = 0; line < lines.size(); ++line) {
        const QString &text = lines.at(line).text;
        if (!isHeader(text) || sectionName(text).compare(section, Qt::CaseInsensitive) != 0)
            continue;
        const auto end = std::find_if(lines.begin() + line + 1, lines.end(), isAnyHeader);
        return {line + 1, static_cast<int>(end - lines.begin())};
    }
    return {0, 0};
}

/// The line of a key, or -1.
int findKey(const Lines &lines, Range range, const QString &key)
{
    for (int line = range.begin; line < range.end; ++line) {
        const QString name = keyName(lines.at(line).text);
        if (!name.isEmpty() && name.compare(key, Qt::CaseInsensitive) == 0)
            return line;
    }
    return -1;
}

/// The whole file, empty if it is not there; nothing, with the last error set, if it can't be read.
std::optional<QByteArray> contentOf(const wchar_t *name)
{
    const Dword lastError = OvKernel32::getLastError();
    const OvKernel32::Handle file = OvKernel32::createFile(name, OvKernel32::GenericRead, 0,
                                                           nullptr, OvKernel32::OpenExisting, 0, 0);
    const bool isMissing = OvKernel32::getLastError() == OvKernel32::ErrorFileNotFound;
    if (file == OvKernel32::invalidHandle)
        return isMissing ? std::make_optional(QByteArray()) : std::nullopt;

    QByteArray bytes;
    char buffer[4096];
    Dword count = 0;
    bool isRead = true;
    do {
        isRead = OvKernel32::readFile(file, buffer, sizeof buffer, &count, nullptr);
        bytes.append(buffer, static_cast<int>(count));
    } while (isRead && count > 0);
    OvKernel32::closeHandle(file);
    return isRead ? fail(lastError, std::make_optional(bytes)) : std::nullopt;
}

/// Reads the byte order mark, or else what encoding the bytes can be in.
void findEncoding(Profile &profile, const QByteArray &bytes)
{
    if (QTextCodec *marked = QTextCodec::codecForUtfText(bytes, nullptr)) {
        profile.codec = marked;
        profile.mark = profile.encoded(QString(QChar(QChar::ByteOrderMark)));
        return;
    }
    QTextCodec::ConverterState state;
    profile.codec->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        profile.codec = QTextCodec::codecForName("ISO-8859-1"); // every byte has a meaning there
}

Profile load(const wchar_t *name)
{
    Profile profile;
    const QString path = existingPath(name);
    if (path.isNull())
        return profile;
    // A device or a pipe is not there to be replaced, and may keep its reader waiting.
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile())
        return fail(OvKernel32::ErrorAccessDenied, profile);
    std::optional<QByteArray> bytes = contentOf(name);
    if (!bytes)
        return profile;

    profile.path = path;
    findEncoding(profile, *bytes);
    bytes->remove(0, profile.mark.size());
    for (int begin = 0, end = 0; begin < bytes->size(); begin = end) {
        end = profile.endOf('\n', *bytes, begin);
        const QByteArray line = bytes->mid(begin, end - begin);
        profile.lines.append({line, profile.decoded(line)});
    }
    const QString first = profile.lines.value(0).text;
    if (first.endsWith('\n') && !first.endsWith("\r\n"))
        profile.lineEnd = QStringLiteral("\n");
    return profile;
}

void replace(Profile &profile, Range range, const QStringList &texts)
{
    Lines &lines = profile.lines;
    lines.erase(lines.begin() + range.begin, lines.begin() + range.end);
    int place = range.begin;
    if (!texts.isEmpty() && place > 0 && !lines.at(place - 1).text.endsWith('\n'))
        profile.append(lines[place - 1], profile.lineEnd);
    for (const QString &text : texts) {
        Line line;
        profile.append(line, text + profile.lineEnd);
        lines.insert(place++, line);
    }
}

Range findOrAddSection(Profile &profile, const QString &section)
{
    const int count = profile.lines.size();
    if (findSection(profile.lines, section).begin == 0)
        replace(profile, {count, count}, {'[' + section + ']'});
    return findSection(profile.lines, section);
}

void setValue(Profile &profile, const QString &section, const QString &key, const QString &value)
{
    const Range range = findOrAddSection(profile, section);
    const int place = findKey(profile.lines, range, key);
    if (place >= 0) {
        Line &line = profile.lines[place];
        line.bytes.truncate(profile.endOf('=', line.bytes));
        return profile.append(line, value + profile.lineEnd);
    }
    int end = range.end;
    while (end > range.begin && profile.lines.at(end - 1).text.trimmed().isEmpty())
        --end;
    replace(profile, {end, end}, {key + '=' + value});
}

void removeKey(Profile &profile, const QString &section, const QString &key)
{
    const int line = findKey(profile.lines, findSection(profile.lines, section), key);
    if (line >= 0)
        profile.lines.removeAt(line);
}

void removeSection(Profile &profile, const QString &section)
{
    const Range range = findSection(profile.lines, section);
    if (range.begin > 0)
        replace(profile, {range.begin - 1, range.end}, {});
}

/// What is left of a file can look like one in another encoding: that one becomes UTF-8, with a mark.
QByteArray bytesOf(const Profile &profile)
{
    QByteArray bytes = profile.mark;
    QString text;
    for (const Line &line : profile.lines) {
        bytes += line.bytes;
        text += line.text;
    }
    Profile reader;
    findEncoding(reader, bytes);
    const bool isSame = reader.codec == profile.codec && reader.mark == profile.mark;
    return isSame || reader.decoded(bytes.mid(reader.mark.size())) == text
                   ? bytes
                   : "\xef\xbb\xbf" + text.toUtf8();
}

bool save(const Profile &profile)
{
    if (!profile.isEncodable)
        return fail(OvKernel32::ErrorNoUnicodeTranslation, false);
    const QByteArray bytes = bytesOf(profile);
    const int error = OvCc::Files::replaceFile(QFile::encodeName(profile.path), bytes);
    return error == 0 || failErrno(error);
}

/// Changes the file as a whole, one thread after the other.
bool changeProfile(const wchar_t *file, const std::function<void(Profile &)> &change)
{
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    Profile profile = load(file);
    if (profile.path.isNull())
        return false;
    change(profile);
    return save(profile);
}

/// Nothing if there is no such key.
std::optional<QString> valueOf(const wchar_t *section, const wchar_t *key, const Lines &lines)
{
    const int line = findKey(lines, findSection(lines, named(section)), named(key));
    if (line < 0)
        return std::nullopt;
    const QString text = valueText(lines.at(line).text);
    const bool isQuoted = text.size() > 1 && text.front() == text.back()
                          && (text.front() == '"' || text.front() == '\'');
    return isQuoted ? text.mid(1, text.size() - 2) : text;
}

/// Copies what fits in front of @p nuls NULs: one ends a text, two end a list.
Dword copyText(const std::wstring &text, wchar_t *buffer, Dword size, Dword nuls)
{
    if (size < nuls)
        return buffer[0] = 0, 0;
    const bool isCut = text.size() >= size;
    const Dword length = isCut ? size - nuls : static_cast<Dword>(text.size());
    text.copy(buffer, length);
    std::fill_n(buffer + length, isCut || text.empty() ? nuls : 1, L'\0');
    return length;
}

Dword copyTexts(const QStringList &texts, wchar_t *buffer, Dword size)
{
    std::wstring wide;
    for (const QString &text : texts)
        wide += text.toStdWString() + L'\0';
    return copyText(wide, buffer, size, 2);
}

bool isWritable(const wchar_t *text)
{
    return !text || (OvCc::Kernel32::isWellFormed(text) && !std::wcspbrk(text, L"\r\n"));
}

/// Whether a section of that name is read as one.
bool isSection(const QString &name)
{
    return sectionName('[' + name + ']') == name;
}

/// Whether a value of that key is read as one.
bool isEntry(const QString &key, const wchar_t *value)
{
    const QString line = key + '=' + QString::fromWCharArray(value);
    return !key.isEmpty() && !isHeader(line) && keyName(line) == key;
}

} // namespace

Dword OvKernel32::getPrivateProfileString(const wchar_t *section, const wchar_t *key,
                                          const wchar_t *fallback, wchar_t *buffer, Dword size,
                                          const wchar_t *file)
{
    if (!buffer || size == 0)
        return fail(ErrorInvalidParameter, 0U);
    const Lines lines = load(file).lines;
    if (!section)
        return copyTexts(partsOf(lines, {0, int(lines.size())}, sectionName), buffer, size);
    if (!key)
        return copyTexts(partsOf(lines, findSection(lines, named(section)), keyName), buffer, size);
    const auto value = valueOf(section, key, lines);
    std::wstring text = value ? value->toStdWString() : fallback ? fallback : L"";
    while (!value && !text.empty() && text.back() == L' ')
        text.pop_back();
    return copyText(text, buffer, size, 1);
}

Dword OvKernel32::getPrivateProfileInt(const wchar_t *section, const wchar_t *key, Long fallback,
                                       const wchar_t *file)
{
    if (!section || !key)
        return fail(ErrorInvalidParameter, static_cast<Dword>(fallback));
    const auto value = valueOf(section, key, load(file).lines);
    return static_cast<Dword>(value ? std::wcstoll(value->toStdWString().c_str(), nullptr, 10)
                                    : fallback);
}

Dword OvKernel32::getPrivateProfileSection(const wchar_t *section, wchar_t *buffer, Dword size,
                                           const wchar_t *file)
{
    if (!section || !buffer || size == 0)
        return fail(ErrorInvalidParameter, 0U);
    const Lines lines = load(file).lines;
    return copyTexts(partsOf(lines, findSection(lines, named(section)), entry), buffer, size);
}

Dword OvKernel32::getPrivateProfileSectionNames(wchar_t *buffer, Dword size, const wchar_t *file)
{
    return getPrivateProfileString(nullptr, nullptr, nullptr, buffer, size, file);
}

OvKernel32::Bool OvKernel32::writePrivateProfileString(const wchar_t *section, const wchar_t *key,
                                                       const wchar_t *value, const wchar_t *file)
{
    if (!section || !isWritable(section) || !isWritable(key) || !isWritable(value))
        return fail(ErrorInvalidParameter, false);
    if (key && value && !(isSection(named(section)) && isEntry(named(key), value)))
        return fail(ErrorInvalidParameter, false);
    return changeProfile(file, [section, key, value](Profile &profile) {
        if (!key)
            removeSection(profile, named(section));
        else if (!value)
            removeKey(profile, named(section), named(key));
        else
            setValue(profile, named(section), named(key), QString::fromWCharArray(value));
    });
}

OvKernel32::Bool OvKernel32::writePrivateProfileSection(const wchar_t *section,
                                                        const wchar_t *entries, const wchar_t *file)
{
    if (!section || !isWritable(section) || (entries && !isSection(named(section))))
        return fail(ErrorInvalidParameter, false);
    QStringList texts;
    for (const wchar_t *next = entries; next && *next; next += std::wcslen(next) + 1) {
        if (!isWritable(next) || isHeader(QString::fromWCharArray(next)))
            return fail(ErrorInvalidParameter, false);
        texts.append(QString::fromWCharArray(next));
    }
    return changeProfile(file, [section, entries, &texts](Profile &profile) {
        if (entries)
            replace(profile, findOrAddSection(profile, named(section)), texts);
        else
            removeSection(profile, named(section));
    });
}
