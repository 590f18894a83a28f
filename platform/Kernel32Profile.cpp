#include "Kernel32Errors.h"
#include "Kernel32Paths.h"

#include <QFile>
#include <QSaveFile>
#include <QStringList>
#include <QTextCodec>

#include <cerrno>
#include <cwchar>
#include <mutex>

using OvCc::Kernel32::existingPath;
using OvCc::Kernel32::fail;
using Dword = OvKernel32::Dword;

namespace {

/// An INI file as its lines, line ends included.
class Profile
{
public:
    explicit Profile(const wchar_t *path);

    /// Whether there is a path; the file itself may be missing.
    bool isNamed() const { return m_isNamed; }
    QStringList sections() const;
    QStringList keys(const QString &section) const;
    QStringList entries(const QString &section) const;
    /// Null if there is none.
    QString value(const QString &section, const QString &key) const;

    void setValue(const QString &section, const QString &key, const QString &value);
    void removeKey(const QString &section, const QString &key);
    void removeSection(const QString &section);
    void setEntries(const QString &section, const QStringList &entries);
    bool save() const;

private:
    /// The lines of a section from the one after its header.
    struct Range
    {
        int begin, end;
    };
    Range find(const QString &section) const;
    Range findOrAdd(const QString &section);
    int findKey(Range range, const QString &key) const;
    void insert(int line, const QString &text);

    bool m_isNamed = false;
    QString m_path;
    QTextCodec *m_codec = QTextCodec::codecForName("UTF-8");
    bool m_hasMark = false;
    QString m_lineEnd = QStringLiteral("\r\n");
    QStringList m_lines;
};

/// The name in a section's header; null for another line.
QString sectionName(const QString &line)
{
    const QString text = line.trimmed();
    const int end = text.indexOf(']');
    return text.startsWith('[') && end > 0 ? text.mid(1, end - 1).trimmed() + "" : QString();
}

bool isComment(const QString &line)
{
    return line.trimmed().startsWith(';');
}

/// The name before the equals sign; null for another line.
QString keyName(const QString &line)
{
    const int equals = line.indexOf('=');
    return equals < 0 || isComment(line) ? QString() : line.left(equals).trimmed() + "";
}

bool isSame(const QString &one, const QString &other)
{
    return !one.isNull() && one.compare(other, Qt::CaseInsensitive) == 0;
}

QString unquoted(const QString &value)
{
    const bool isQuoted = value.size() > 1 && value.front() == value.back()
                          && (value.front() == '"' || value.front() == '\'');
    return isQuoted ? value.mid(1, value.size() - 2) : value;
}

Profile::Profile(const wchar_t *path)
{
    const auto found = existingPath(path);
    m_isNamed = found.has_value();
    if (!m_isNamed)
        return;
    m_path = QString::fromStdString(found->string());
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly)) {
        OvKernel32::setLastError(OvKernel32::ErrorFileNotFound);
        return;
    }

    const QByteArray bytes = file.readAll();
    QTextCodec *marked = QTextCodec::codecForUtfText(bytes, nullptr);
    QTextCodec::ConverterState state;
    QString text = (marked ? marked : m_codec)->toUnicode(bytes.constData(), bytes.size(), &state);
    m_hasMark = marked != nullptr;
    if (marked) {
        m_codec = marked;
    } else if (state.invalidChars > 0 || state.remainingChars > 0) {
        m_codec = QTextCodec::codecForName("ISO-8859-1"); // gives every byte back as it was
        text = m_codec->toUnicode(bytes);
    }
    for (int begin = 0; begin < text.size();) {
        const int end = text.indexOf('\n', begin);
        const int next = end < 0 ? text.size() : end + 1;
        m_lines.append(text.mid(begin, next - begin));
        begin = next;
    }
    if (!m_lines.isEmpty() && m_lines.first().endsWith('\n') && !m_lines.first().endsWith("\r\n"))
        m_lineEnd = QStringLiteral("\n");
}

QStringList Profile::sections() const
{
    QStringList names;
    for (const QString &line : m_lines) {
        const QString name = sectionName(line);
        if (!name.isNull())
            names.append(name);
    }
    return names;
}

QStringList Profile::keys(const QString &section) const
{
    QStringList names;
    const Range range = find(section);
    for (int line = range.begin; line < range.end; ++line) {
        const QString name = keyName(m_lines.at(line));
        if (!name.isNull())
            names.append(name);
    }
    return names;
}

QStringList Profile::entries(const QString &section) const
{
    QStringList entries;
    const Range range = find(section);
    for (int line = range.begin; line < range.end; ++line) {
        const QString text = m_lines.at(line).trimmed();
        const QString key = keyName(text);
        if (!key.isNull())
            entries.append(key + '=' + text.mid(text.indexOf('=') + 1).trimmed());
        else if (!text.isEmpty() && !isComment(text))
            entries.append(text);
    }
    return entries;
}

QString Profile::value(const QString &section, const QString &key) const
{
    const int line = findKey(find(section), key);
    if (line < 0)
        return {};
    const QString &text = m_lines.at(line);
    return unquoted(text.mid(text.indexOf('=') + 1).trimmed()) + "";
}

void Profile::setValue(const QString &section, const QString &key, const QString &value)
{
    const Range range = findOrAdd(section);
    const int line = findKey(range, key);
    if (line >= 0) {
        const QString before = m_lines.at(line);
        m_lines[line] = before.left(before.indexOf('=') + 1) + value + m_lineEnd;
        return;
    }
    int end = range.end;
    while (end > range.begin && m_lines.at(end - 1).trimmed().isEmpty())
        --end;
    insert(end, key + '=' + value);
}

void Profile::removeKey(const QString &section, const QString &key)
{
    const int line = findKey(find(section), key);
    if (line >= 0)
        m_lines.removeAt(line);
}

void Profile::removeSection(const QString &section)
{
    const Range range = find(section);
    if (range.begin > 0)
        m_lines.erase(m_lines.begin() + range.begin - 1, m_lines.begin() + range.end);
}

void Profile::setEntries(const QString &section, const QStringList &entries)
{
    const Range range = findOrAdd(section);
    m_lines.erase(m_lines.begin() + range.begin, m_lines.begin() + range.end);
    int line = range.begin;
    for (const QString &entry : entries)
        insert(line++, entry);
}

bool Profile::save() const
{
    const QString text = m_lines.join(QString());
    if (!m_codec->canEncode(text))
        return fail(OvKernel32::ErrorNoUnicodeTranslation, false);
    QTextCodec::ConverterState state(m_hasMark ? QTextCodec::DefaultConversion
                                               : QTextCodec::IgnoreHeader);
    const QByteArray bytes = m_codec->fromUnicode(text.constData(), text.size(), &state);
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(QFile::exists(m_path) ? OvKernel32::ErrorAccessDenied
                                          : OvKernel32::ErrorPathNotFound,
                    false);
    file.write(bytes);
    return file.commit() || fail(OvKernel32::ErrorGenFailure, false);
}

Profile::Range Profile::find(const QString &section) const
{
    int begin = 0;
    while (begin < m_lines.size() && !isSame(sectionName(m_lines.at(begin)), section))
        ++begin;
    if (begin == m_lines.size())
        return {0, 0};
    int end = ++begin;
    while (end < m_lines.size() && sectionName(m_lines.at(end)).isNull())
        ++end;
    return {begin, end};
}

Profile::Range Profile::findOrAdd(const QString &section)
{
    if (find(section).begin == 0)
        insert(m_lines.size(), '[' + section + ']');
    return find(section);
}

int Profile::findKey(Range range, const QString &key) const
{
    for (int line = range.begin; line < range.end; ++line) {
        if (isSame(keyName(m_lines.at(line)), key))
            return line;
    }
    return -1;
}

void Profile::insert(int line, const QString &text)
{
    if (line > 0 && !m_lines.at(line - 1).endsWith('\n'))
        m_lines[line - 1] += m_lineEnd;
    m_lines.insert(line, text + m_lineEnd);
}

QString named(const wchar_t *text)
{
    return QString::fromWCharArray(text).trimmed();
}

Dword copyText(const QString &text, wchar_t *buffer, Dword size)
{
    const std::wstring wide = text.toStdWString();
    const Dword length = std::min(static_cast<Dword>(wide.size()), size - 1);
    wide.copy(buffer, length);
    buffer[length] = 0;
    return length;
}

Dword copyTexts(const QStringList &texts, wchar_t *buffer, Dword size)
{
    std::wstring wide;
    for (const QString &text : texts)
        wide += text.toStdWString() + L'\0';
    if (size < 2)
        return buffer[0] = 0, 0;
    const bool isCut = wide.size() >= size;
    const Dword length = isCut ? size - 2 : static_cast<Dword>(wide.size());
    wide.copy(buffer, length);
    buffer[length] = 0;
    if (isCut || length == 0)
        buffer[length + 1] = 0; // a list ends with two
    return length;
}

bool isWritable(const wchar_t *text)
{
    return !text || (OvCc::Kernel32::isWellFormed(text) && !std::wcspbrk(text, L"\r\n"));
}

/// Held from reading a file to writing it.
std::mutex &profileMutex()
{
    static std::mutex mutex;
    return mutex;
}

} // namespace

Dword OvKernel32::getPrivateProfileString(const wchar_t *section, const wchar_t *key,
                                          const wchar_t *fallback, wchar_t *buffer, Dword size,
                                          const wchar_t *file)
{
    if (!buffer || size == 0)
        return fail(ErrorInvalidParameter, 0U);
    const Profile profile(file);
    if (!section)
        return copyTexts(profile.sections(), buffer, size);
    if (!key)
        return copyTexts(profile.keys(named(section)), buffer, size);
    QString value = profile.value(named(section), named(key));
    if (value.isNull() && fallback) {
        value = QString::fromWCharArray(fallback);
        while (value.endsWith(' '))
            value.chop(1);
    }
    return copyText(value, buffer, size);
}

Dword OvKernel32::getPrivateProfileInt(const wchar_t *section, const wchar_t *key, Long fallback,
                                       const wchar_t *file)
{
    if (!section || !key)
        return fail(ErrorInvalidParameter, static_cast<Dword>(fallback));
    const QString value = Profile(file).value(named(section), named(key));
    return static_cast<Dword>(value.isNull() ? fallback : wtoi64(value.toStdWString().c_str()));
}

Dword OvKernel32::getPrivateProfileSection(const wchar_t *section, wchar_t *buffer, Dword size,
                                           const wchar_t *file)
{
    if (!section || !buffer || size == 0)
        return fail(ErrorInvalidParameter, 0U);
    return copyTexts(Profile(file).entries(named(section)), buffer, size);
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
    const std::lock_guard<std::mutex> lock(profileMutex());
    Profile profile(file);
    if (!profile.isNamed())
        return false;
    if (!key)
        profile.removeSection(named(section));
    else if (!value)
        profile.removeKey(named(section), named(key));
    else
        profile.setValue(named(section), named(key), QString::fromWCharArray(value));
    return profile.save();
}

OvKernel32::Bool OvKernel32::writePrivateProfileSection(const wchar_t *section,
                                                        const wchar_t *entries, const wchar_t *file)
{
    if (!section || !isWritable(section))
        return fail(ErrorInvalidParameter, false);
    QStringList lines;
    for (; entries && *entries; entries += std::wcslen(entries) + 1) {
        if (!isWritable(entries))
            return fail(ErrorInvalidParameter, false);
        lines.append(QString::fromWCharArray(entries));
    }
    const std::lock_guard<std::mutex> lock(profileMutex());
    Profile profile(file);
    if (!profile.isNamed())
        return false;
    if (entries)
        profile.setEntries(named(section), lines);
    else
        profile.removeSection(named(section));
    return profile.save();
}
