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

/// The name as the environment has it; empty, with the last error set, if there can be none.
QByteArray variableName(const wchar_t *name)
{
    if (!name || !*name || !OvCc::Kernel32::isWellFormed(name) || std::wcschr(name, L'='))
        return fail(OvKernel32::ErrorInvalidParameter, QByteArray());
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
    const QByteArray variable = variableName(name);
    if (variable.isEmpty())
        return 0;
    if (!qEnvironmentVariableIsSet(variable.constData()))
        return fail(ErrorEnvVarNotFound, 0U);
    const QString value = QString::fromUtf8(qgetenv(variable.constData()));
    return fail(ErrorSuccess, OvCc::Kernel32::copyOut(value, buffer, size));
}

OvKernel32::Bool OvKernel32::setEnvironmentVariable(const wchar_t *name, const wchar_t *value)
{
    const QByteArray variable = variableName(name);
    if (variable.isEmpty())
        return false;
    if (!value)
        return qEnvironmentVariableIsSet(variable.constData()) ? qunsetenv(variable.constData())
                                                               : fail(ErrorEnvVarNotFound, false);
    if (!OvCc::Kernel32::isWellFormed(value))
        return fail(ErrorNoUnicodeTranslation, false);
    return qputenv(variable.constData(), QString::fromWCharArray(value).toUtf8())
           || fail(ErrorNotEnoughMemory, false);
}
