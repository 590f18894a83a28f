// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Kernel32Errors.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <chrono>
#include <cwchar>
#include <mutex>
#include <thread>

using OvCc::Kernel32::fail;

namespace {

/// Null, with the last error set, for a section that is not there.
std::recursive_mutex *mutexOf(const OvKernel32::CriticalSection *section)
{
    if (section && section->mutex)
        return static_cast<std::recursive_mutex *>(section->mutex);
    return fail(OvKernel32::ErrorInvalidParameter, nullptr);
}

/// The name as the environment has it; empty if it can have none of that name.
QByteArray variableName(const wchar_t *name)
{
    if (!name || !OvCc::Kernel32::isWellFormed(name) || std::wcschr(name, L'='))
        return {};
    return QString::fromWCharArray(name).toUtf8();
}

} // namespace

void OvKernel32::initializeCriticalSection(CriticalSection *section)
{
    if (section)
        section->mutex = new std::recursive_mutex; // until deleteCriticalSection()
    else
        setLastError(ErrorInvalidParameter);
}

void OvKernel32::enterCriticalSection(CriticalSection *section)
{
    if (auto *mutex = mutexOf(section))
        mutex->lock();
}

void OvKernel32::leaveCriticalSection(CriticalSection *section)
{
    if (auto *mutex = mutexOf(section))
        mutex->unlock();
}

void OvKernel32::deleteCriticalSection(CriticalSection *section)
{
    if (auto *mutex = mutexOf(section)) {
        delete mutex;
        section->mutex = nullptr;
    }
}

OvKernel32::Long OvKernel32::interlockedIncrement(volatile Long *value)
{
    return value ? __atomic_add_fetch(value, 1, __ATOMIC_SEQ_CST) : fail(ErrorInvalidParameter, 0);
}

OvKernel32::Long OvKernel32::interlockedDecrement(volatile Long *value)
{
    return value ? __atomic_sub_fetch(value, 1, __ATOMIC_SEQ_CST) : fail(ErrorInvalidParameter, 0);
}

OvKernel32::Dword OvKernel32::getTickCount()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<Dword>(now / std::chrono::milliseconds(1));
}

void OvKernel32::sleep(Dword milliseconds)
{
    do {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    } while (milliseconds == infinite);
}

void OvKernel32::getLocalTime(SystemTime *time)
{
    if (!time)
        return setLastError(ErrorInvalidParameter);
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    const QTime clock = now.time();
    const auto word = [](int number) { return static_cast<Word>(number); };
    *time = {word(date.year()),    word(date.month()), word(date.dayOfWeek() % 7),
             word(date.day()),     word(clock.hour()), word(clock.minute()),
             word(clock.second()), word(clock.msec())};
}

OvKernel32::Dword OvKernel32::getEnvironmentVariable(const wchar_t *name, wchar_t *buffer,
                                                     Dword size)
{
    if (!name)
        return fail(ErrorInvalidParameter, 0U);
    const QByteArray variable = variableName(name);
    if (!qEnvironmentVariableIsSet(variable.constData()))
        return fail(ErrorEnvVarNotFound, 0U);
    return OvCc::Kernel32::copyOut(QString::fromUtf8(qgetenv(variable.constData())), buffer, size);
}

OvKernel32::Bool OvKernel32::setEnvironmentVariable(const wchar_t *name, const wchar_t *value)
{
    const QByteArray variable = variableName(name);
    if (variable.isEmpty())
        return fail(ErrorInvalidParameter, false);
    if (!value)
        return qEnvironmentVariableIsSet(variable.constData()) ? qunsetenv(variable.constData())
                                                               : fail(ErrorEnvVarNotFound, false);
    if (!OvCc::Kernel32::isWellFormed(value))
        return fail(ErrorNoUnicodeTranslation, false);
    return qputenv(variable.constData(), QString::fromWCharArray(value).toUtf8())
           || fail(ErrorNotEnoughMemory, false);
}
