// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "OvKernel32.h"

#include <map>
#include <memory>
#include <mutex>

namespace OvCc::Kernel32 {

/// The open objects of one kind. An object that is taken out while another thread uses it lives
/// until that thread is done.
template <typename Object>
class HandleTable
{
public:
    /// @param kind below 4: tables of different kinds never give out the same handle
    explicit HandleTable(OvKernel32::Handle kind)
        : m_last(kind)
    {
    }

    OvKernel32::Handle add(std::shared_ptr<Object> object)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_objects.emplace(m_last += 4, std::move(object)).first->first;
    }

    /// Null, and ErrorInvalidHandle, for an unknown handle.
    std::shared_ptr<Object> find(OvKernel32::Handle handle) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_objects.find(handle);
        if (found != m_objects.end())
            return found->second;
        OvKernel32::setLastError(OvKernel32::ErrorInvalidHandle);
        return {};
    }

    /// Takes the object out; whether it was there, with ErrorInvalidHandle if not.
    bool remove(OvKernel32::Handle handle)
    {
        const std::shared_ptr<Object> object = find(handle); // destroyed after the lock is gone
        const std::lock_guard<std::mutex> lock(m_mutex);
        return object && m_objects.erase(handle) > 0;
    }

private:
    mutable std::mutex m_mutex;
    std::map<OvKernel32::Handle, std::shared_ptr<Object>> m_objects;
    OvKernel32::Handle m_last;
};

} // namespace OvCc::Kernel32
