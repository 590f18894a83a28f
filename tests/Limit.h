// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <csignal>

#include <sys/resource.h>

/// Sets a limit of the process for as long as this lives; that of files is an error, no signal.
class Limit
{
public:
    Limit(__rlimit_resource resource, rlim_t value)
        : m_resource(resource)
    {
        getrlimit(resource, &m_before);
        const rlimit limit = {value, m_before.rlim_max};
        setrlimit(resource, &limit);
    }
    ~Limit()
    {
        setrlimit(m_resource, &m_before);
        std::signal(SIGXFSZ, m_onLargeFile);
    }
    Q_DISABLE_COPY(Limit)

private:
    const __rlimit_resource m_resource;
    void (*const m_onLargeFile)(int) = std::signal(SIGXFSZ, SIG_IGN);
    rlimit m_before = {};
};
