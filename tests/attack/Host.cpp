// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "../Changes.h"

#include <OvCustomControl/OvKernel32.h>
#include <viewer/window/LayerStates.h>

#include <QApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSettings>
#include <QUndoStack>

#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <iostream>
#include <optional>

#include <sys/wait.h>
#include <unistd.h>

/// @file
/// Does what a script asks it to, through the embedded host and the library. Each line of the standard
/// input is a command, an array of words, and each line of the output an array with what came of it; both
/// are JSON.

namespace {

/// What dxflib reads of records, by the number of groups of code 0 before their own: what all entities
/// have, and more of layers. Texts are bytes of the file.
class Reader : public DL_CreationAdapter
{
public:
    static QJsonObject read(const QString &fileName)
    {
        Reader reader;
        DL_Dxf().in(fileName.toStdString(), &reader);
        return reader.m_found;
    }

private:
    static QString text(const std::string &bytes)
    {
        return QString::fromLatin1(bytes.data(), int(bytes.size()));
    }

    /// A record has its attributes once it has ended with the head of the next one.
    void processCodeValuePair(unsigned int code, const std::string &) override
    {
        if (m_isHead && m_record > 1) {
            const DL_Attributes attributes = getAttributes();
            m_next["layer"] = text(attributes.getLayer());
            m_next["color"] = attributes.getColor();
            m_next["true"] = attributes.getColor24();
            m_next["weight"] = attributes.getWidth();
            m_next["type"] = text(attributes.getLinetype());
            m_found[QString::number(m_record - 2)] = std::exchange(m_next, {});
        }
        m_isHead = code == 0;
        m_record += int(m_isHead);
    }
    void addLayer(const DL_LayerData &layer) override
    {
        m_next = {{"name", text(layer.name)}, {"flags", layer.flags}};
    }

    int m_record = 0;
    bool m_isHead = false;
    QJsonObject m_next, m_found;
};

class Host
{
public:
    /// @return nothing or 0 if it was done, the error if it was not, or what was asked for
    QJsonValue run(const QStringList &words);

private:
    std::unique_ptr<KcDbDatabase> m_drawing;
    std::optional<KcHost::UndoGroup> m_group;
    Tessa::LayerStates m_states;
    std::unique_ptr<OvCc::LayerTableWidget> m_table;
};

/// Has a child go on and waits for it.
/// @return the child's number to itself; then to its parent the signal that has ended it, or 0
int fork()
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::alarm(20);
        return ::getpid();
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

QJsonValue Host::run(const QStringList &words)
{
    const QString word = words[0], first = words.value(1), second = words.value(2);
    const std::wstring file = first.toStdWString(), other = second.toStdWString();
    QString error;
    bool isDone = true;
    if (word == "fork")
        return fork();
    if (word == "end")
        ::_exit(0);
    if (word == "dxflib")
        return Reader::read(first);
    if (word == "open") {
        m_drawing = QFileInfo::exists(first) ? KcHost::readDrawing(first, &error)
                                             : KcHost::newDrawing();
        KcHost::setWorkingDatabase(m_drawing.get());
    } else if (word == "states") {
        m_states.open(first, &error);
    } else if (word == "save") {
        isDone = m_states.save(first, {}, &error);
    } else if (word == "copy" || word == "ini") {
        isDone = word == "copy" ? OvKernel32::copyFile(file.c_str(), other.c_str(), 0)
                                : OvKernel32::writePrivateProfileString(L"a", L"key", other.c_str(),
                                                                        file.c_str());
        error = isDone ? QString() : QString::number(OvKernel32::getLastError());
    } else if (word == "table") {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QFileInfo(first).path());
        OvCc::LayerTableWidget::setSettingsScope({}, {}); // nothing is read
        m_table = std::make_unique<OvCc::LayerTableWidget>();
        OvCc::LayerTableWidget::setSettingsScope(".", QFileInfo(first).baseName());
    } else if (word == "layout") {
        m_table->writeSettings();
    } else if (!m_drawing) {
        isDone = false;
    } else if (word == "write") {
        isDone = KcHost::writeDrawing(*m_drawing, first, &error);
    } else if (word == "group") {
        m_group.emplace(*m_drawing, word);
    } else if (word == "ungroup") {
        m_group.reset();
    } else if (word == "index") {
        KcHost::undoStack(*m_drawing)->setIndex(first.toInt());
        return KcHost::undoStack(*m_drawing)->count();
    } else {
        return change(words);
    }
    return isDone || !error.isEmpty() ? error : "failed";
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    Host host;
    for (std::string line; std::getline(std::cin, line);) {
        const QJsonDocument command = QJsonDocument::fromJson(QByteArray::fromStdString(line));
        const QJsonArray answer{host.run(command.toVariant().toStringList())};
        std::cout << QJsonDocument(answer).toJson(QJsonDocument::Compact).toStdString()
                  << std::endl;
    }
}
