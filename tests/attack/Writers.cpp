// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "SystemCalls.h"

#include <KcHost/KcHost.h>
#include <OvCustomControl/LayerTableWidget.h>
#include <OvCustomControl/OvKernel32.h>
#include <viewer/window/LayerStates.h>

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <functional>
#include <iostream>
#include <memory>

#include <sys/wait.h>
#include <unistd.h>

/// @file
/// Writes files, each in a process of its own that may be attacked. Reads one command a line, its fields
/// with tabs between them: what is written, the attack's way, point, error and whether it stays, a
/// value, the path. Answers with a line: the error, and the calls that there were; on "again" the same
/// process tries once more, unattacked. Then comes the signal that has ended it, or 0. The way 'l' writes as
/// often as "point" says.

namespace {

using Fields = QList<QByteArray>;

/// Returns why there was none; nothing if there was.
using Writing = std::function<QString()>;

QString told(bool isDone)
{
    return isDone ? QString() : QString::number(OvKernel32::getLastError());
}

Writing drawingWriting(const QString &path, const QString &layer)
{
    const std::shared_ptr<KcDbDatabase> drawing =
            QFileInfo::exists(path) ? KcHost::readDrawing(path) : KcHost::newDrawing();
    if (drawing)
        KcHost::addLayer(*drawing, layer);
    return [=] {
        QString error;
        const bool isDone = drawing && KcHost::writeDrawing(*drawing, path, &error);
        return isDone || !error.isEmpty() ? error : QStringLiteral("failed");
    };
}

Writing statesWriting(const QString &path, const QString &name)
{
    const auto states = std::make_shared<Tessa::LayerStates>();
    QString error;
    states->open(path, &error);
    return [=] {
        QString error;
        const bool isDone = states->save(name, {}, &error);
        return isDone || !error.isEmpty() ? error : QStringLiteral("failed");
    };
}

Writing writing(const QByteArray &what, const QString &path, const QString &value)
{
    const std::wstring file = path.toStdWString();
    if (what == "drawing")
        return drawingWriting(path, value);
    if (what == "states")
        return statesWriting(path, value);
    if (what == "ini") {
        return [=] {
            return told(OvKernel32::writePrivateProfileString(
                    L"a", L"key", value.toStdWString().c_str(), file.c_str()));
        };
    }
    if (what == "copy") {
        const std::wstring source = (path + ".source").toStdWString();
        return [=] { return told(OvKernel32::copyFile(source.c_str(), file.c_str(), 0)); };
    }
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QFileInfo(path).path());
    OvCc::LayerTableWidget::setSettingsScope({}, {}); // nothing is read
    const auto table = std::make_shared<OvCc::LayerTableWidget>();
    OvCc::LayerTableWidget::setSettingsScope(QStringLiteral("."), QFileInfo(path).baseName());
    return [=] { return table->writeSettings(), QString(); };
}

[[noreturn]] void run(const Fields &fields)
{
    ::alarm(20);
    const Writing write = writing(fields[0], QFile::decodeName(fields[6]), fields[5]);
    const Attack attack{fields[1][0], fields[2].toInt(), fields[3].toInt(), fields[4] == "1"};
    if (attack.way == 'l') {
        for (int round = 0; round < attack.point; ++round)
            write();
    } else if (!beginAttack(attack)) {
        ::abort();
    }
    const QString error = write();
    const int *calls = nullptr;
    const int count = endAttack(calls);
    std::cout << error.toStdString() << '\t';
    for (int call = 0; call < count; ++call)
        std::cout << calls[call] << ' ';
    std::cout << std::endl;
    for (std::string line; std::getline(std::cin, line) && line == "again";)
        std::cout << write().toStdString() << std::endl;
    ::_exit(0);
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    for (std::string line; std::getline(std::cin, line);) {
        const pid_t child = ::fork();
        if (child == 0)
            run(QByteArray::fromStdString(line).split('\t'));
        int status = 0;
        ::waitpid(child, &status, 0);
        std::cout << "signal " << (WIFEXITED(status) ? 0 : WTERMSIG(status)) << std::endl;
    }
}
