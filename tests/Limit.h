// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <sys/resource.h>

/// Sets a limit of the process for as long as this lives.
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
    ~Limit() { setrlimit(m_resource, &m_before); }
    Q_DISABLE_COPY(Limit)

private:
    const __rlimit_resource m_resource;
    rlimit m_before = {};
};
